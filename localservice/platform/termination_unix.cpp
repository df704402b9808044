// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/termination.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace localservice {

namespace {

std::array<int, 2> signalPipe = {-1, -1};

void onSignal(int)
{
    const int kept = errno;
    const char byte = 0;
    // The pipe does not block: when it is full, the end is already announced.
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
    errno = kept;
}

// Reads what there is; returns whether the input has ended.
bool inputHasEnded()
{
    std::array<char, 512> ignored{};
    const ssize_t got = read(STDIN_FILENO, ignored.data(), ignored.size());
    return got == 0 || (got < 0 && errno != EINTR && errno != EAGAIN);
}

} // namespace

Termination::Termination(bool watchInput)
    : m_watchInput(watchInput)
{
    if (pipe(signalPipe.data()) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    for (const int end : signalPipe) {
        fcntl(end, F_SETFL, O_NONBLOCK);
        fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    std::signal(SIGPIPE, SIG_IGN);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaction(number, &action, nullptr);
    // Ctrl+C reaches the program at the other end of the input as well, which has work left for the
    // service.
    if (m_watchInput)
        std::signal(SIGINT, SIG_IGN);
}

Termination::~Termination()
{
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        std::signal(number, SIG_DFL);
    for (int &end : signalPipe) {
        close(end);
        end = -1;
    }
}

void Termination::wait()
{
    std::array<pollfd, 2> sources = {pollfd{signalPipe[0], POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
    for (;;) {
        const int ready = poll(sources.data(), m_watchInput ? 2 : 1, -1);
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready < 0 || sources[0].revents != 0)
            return;
        if (sources[1].revents != 0 && inputHasEnded())
            return;
    }
}

} // namespace localservice
