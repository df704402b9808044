// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/childguardian_unix.h"

#include "localservice/platform/processtree.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <initializer_list>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace localservice {

namespace {

constexpr int maxFiles = 4096;
constexpr int pollMilliseconds = 20;
constexpr int graceMilliseconds = 5000;
constexpr int lifelineFile = STDERR_FILENO + 1;
constexpr int failed = 1;

void closeFilesFrom(int first)
{
    for (int file = first; file < maxFiles; ++file)
        close(file);
}

[[noreturn]] void execChild(char *const *arguments)
{
    setpgid(0, 0);
    dieWithParent();
    closeFilesFrom(lifelineFile);
    for (const int number : {SIGPIPE, SIGINT, SIGTERM, SIGHUP})
        std::signal(number, SIG_DFL);
    execvp(arguments[0], arguments);
    _exit(guardianNotStarted);
}

// The service's files and connections are not the program's; and a pipe of another guardian, kept
// open here, would never show the service's end.
void keepOnly(int lifeline, int output)
{
    const int nothing = open("/dev/null", O_RDONLY);
    dup2(nothing, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    dup2(lifeline, lifelineFile);
    closeFilesFrom(lifelineFile + 1);
}

bool lifelineIsCut()
{
    pollfd source = {lifelineFile, POLLIN, 0};
    return poll(&source, 1, pollMilliseconds) > 0;
}

// Whether the program has ended.
bool collect(pid_t program, int &status)
{
    return waitpid(program, &status, WNOHANG) == program;
}

[[noreturn]] void endWith(int code)
{
    // The service waits for the end of the output.
    killChildren();
    _exit(code);
}

[[noreturn]] void cancel(pid_t program)
{
    kill(-program, SIGTERM);
    int status = 0;
    for (int waited = 0; waited < graceMilliseconds && !collect(program, status);
         waited += pollMilliseconds)
        poll(nullptr, 0, pollMilliseconds);
    kill(-program, SIGKILL);
    endWith(guardianCancelled);
}

} // namespace

void guardChild(char *const *arguments, int lifeline, int output)
{
    // The service decides when the program ends, not a signal to all processes.
    setpgid(0, 0);
    // Nor does whoever kills all processes of the service's name.
    renameProcess("teko-guardian");
    adoptOrphans();
    keepOnly(lifeline, output);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        std::signal(number, SIG_IGN);
    const pid_t program = fork();
    if (program == 0)
        execChild(arguments);
    if (program < 0)
        _exit(guardianNotStarted);
    setpgid(program, program);
    int status = 0;
    while (!collect(program, status)) {
        if (lifelineIsCut())
            cancel(program);
    }
    kill(-program, SIGKILL);
    endWith(WIFEXITED(status) ? WEXITSTATUS(status) : failed);
}

} // namespace localservice
