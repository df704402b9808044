// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/childprocess.h"

#include "localservice/platform/parentdeath.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace localservice {

namespace {

constexpr int execFailed = 127;
constexpr int maxFiles = 4096;
constexpr std::chrono::milliseconds pollInterval{20};

// Between fork and exec only calls that are safe after a fork of a threaded program.
[[noreturn]] void execChild(char *const *arguments)
{
    setpgid(0, 0);
    dieWithParent();
    const int nothing = open("/dev/null", O_RDONLY);
    dup2(nothing, STDIN_FILENO);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    // The service's files and connections are not the program's.
    for (int file = STDERR_FILENO + 1; file < maxFiles; ++file)
        close(file);
    std::signal(SIGPIPE, SIG_DFL);
    execvp(arguments[0], arguments);
    _exit(execFailed);
}

ChildResult resultOf(int status)
{
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
        return ChildResult::Succeeded;
    const bool missing = WIFEXITED(status) && WEXITSTATUS(status) == execFailed;
    return missing ? ChildResult::NotStarted : ChildResult::Failed;
}

} // namespace

ChildResult runChild(const std::vector<std::string> &words, const std::atomic<bool> &cancelled)
{
    std::vector<char *> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string &word : words)
        arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0)
        execChild(arguments.data());
    if (child < 0)
        return ChildResult::NotStarted;
    setpgid(child, child);
    for (;;) {
        int status = 0;
        const pid_t ended = waitpid(child, &status, WNOHANG);
        if (ended == child)
            return resultOf(status);
        if (ended < 0 && errno != EINTR)
            return ChildResult::Failed;
        if (cancelled) {
            kill(-child, SIGKILL);
            waitpid(child, &status, 0);
            return ChildResult::Cancelled;
        }
        std::this_thread::sleep_for(pollInterval);
    }
}

} // namespace localservice
