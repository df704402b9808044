// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/termination.h"

#include <windows.h>

#include <thread>

namespace localservice {

namespace {

HANDLE endEvent = nullptr;
bool isEndOfInputAwaited = false;

// Runs on a thread of its own.
BOOL WINAPI onConsoleEvent(DWORD event)
{
    // The program at the other end of the input hears it as well, and has work left for the
    // service before it ends the input.
    if (!isEndOfInputAwaited)
        SetEvent(endEvent);
    // With any other event the system ends the program as soon as this returns, or a few
    // seconds later.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        WaitForSingleObject(GetCurrentProcess(), INFINITE);
    return TRUE;
}

void readInputToItsEnd()
{
    char ignored[512];
    DWORD got = 0;
    while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), ignored, sizeof ignored, &got, nullptr)
           && got > 0) { }
    SetEvent(endEvent);
}

} // namespace

Termination::Termination(bool watchInput)
    : m_watchInput(watchInput)
{
    endEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    isEndOfInputAwaited = watchInput;
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
    // The read cannot be called off; the thread ends with the process.
    if (m_watchInput)
        std::thread(readInputToItsEnd).detach();
}

// The event stays: the reading thread may still set it.
Termination::~Termination()
{
    SetConsoleCtrlHandler(onConsoleEvent, FALSE);
}

void Termination::wait()
{
    WaitForSingleObject(endEvent, INFINITE);
}

} // namespace localservice
