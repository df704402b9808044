// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/childprocess.h"

#include "localservice/platform/childguardian_unix.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace localservice {

namespace {

constexpr int pollMilliseconds = 20;

// Both ends are closed with the object, and in programs that a child executes.
class Pipe
{
public:
    Pipe()
    {
        if (pipe(m_ends.data()) != 0)
            return;
        for (const int end : m_ends)
            fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;
    ~Pipe()
    {
        closeReader();
        closeWriter();
    }

    [[nodiscard]] bool isOpen() const { return reader() >= 0 && writer() >= 0; }
    [[nodiscard]] int reader() const { return m_ends[0]; }
    [[nodiscard]] int writer() const { return m_ends[1]; }
    void closeReader() { closeEnd(m_ends[0]); }
    void closeWriter() { closeEnd(m_ends[1]); }

private:
    static void closeEnd(int &end)
    {
        if (end >= 0)
            close(end);
        end = -1;
    }

    std::array<int, 2> m_ends = {-1, -1};
};

// Waits briefly for output. False: the output is closed.
bool forwardOutput(int output, const OutputHandler &onOutput)
{
    pollfd source = {output, POLLIN, 0};
    if (poll(&source, 1, pollMilliseconds) <= 0)
        return true;
    std::array<char, 4096> bytes{};
    const ssize_t got = read(output, bytes.data(), bytes.size());
    if (got > 0)
        onOutput({bytes.data(), static_cast<std::size_t>(got)});
    return got > 0 || (got < 0 && errno == EINTR);
}

ChildResult resultOf(pid_t guardian, bool cancelled)
{
    int status = 0;
    while (waitpid(guardian, &status, 0) < 0) {
        if (errno != EINTR)
            return ChildResult::Failed;
    }
    if (!WIFEXITED(status))
        return ChildResult::Failed;
    switch (WEXITSTATUS(status)) {
    case 0:
        return ChildResult::Succeeded;
    case guardianNotStarted:
        return ChildResult::NotStarted;
    case guardianCancelled:
        // Shells use the same code.
        return cancelled ? ChildResult::Cancelled : ChildResult::Failed;
    default:
        return ChildResult::Failed;
    }
}

} // namespace

ChildResult runChild(const std::vector<std::string> &words, const std::atomic<bool> &cancelled,
                     const OutputHandler &onOutput)
{
    std::vector<char *> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string &word : words)
        arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);
    Pipe output;
    Pipe lifeline;
    if (!output.isOpen() || !lifeline.isOpen())
        return ChildResult::NotStarted;
    const pid_t guardian = fork();
    if (guardian == 0)
        guardChild(arguments.data(), lifeline.reader(), output.writer());
    if (guardian < 0)
        return ChildResult::NotStarted;
    lifeline.closeReader();
    output.closeWriter();
    while (forwardOutput(output.reader(), onOutput)) {
        if (cancelled)
            lifeline.closeWriter();
    }
    return resultOf(guardian, cancelled);
}

} // namespace localservice
