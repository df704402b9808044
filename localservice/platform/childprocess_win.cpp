// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/childprocess.h"

#include <windows.h>

#include <chrono>
#include <filesystem>

namespace localservice {

namespace {

    constexpr DWORD kLookMilliseconds = 20;

    // A word as CommandLineToArgvW() reads it back.
    std::wstring quoted(const std::wstring &word)
    {
        std::wstring result = L"\"";
        std::size_t backslashes = 0;
        for (const wchar_t c : word) {
            if (c == L'"')
                result.append(backslashes + 1, L'\\');
            backslashes = c == L'\\' ? backslashes + 1 : 0;
            result += c;
        }
        result.append(backslashes, L'\\');
        return result + L"\"";
    }

    std::wstring wide(const std::string &utf8)
    {
        return std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).wstring();
    }

    std::wstring commandLine(const std::vector<std::string> &words)
    {
        std::wstring line;
        for (const std::string &word : words)
            line += (line.empty() ? L"" : L" ") + quoted(wide(word));
        return line;
    }

    // A job object ends all its processes when its last handle closes, also when the service
    // crashes.
    HANDLE lastingAsLongAsWeDo()
    {
        const HANDLE job = CreateJobObjectW(nullptr, nullptr);
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
        return job;
    }

    ChildEnd waitFor(HANDLE process, const std::atomic<bool> &cancelled)
    {
        while (WaitForSingleObject(process, kLookMilliseconds) == WAIT_TIMEOUT) {
            if (cancelled)
                return ChildEnd::Cancelled;
        }
        DWORD code = 1;
        GetExitCodeProcess(process, &code);
        return code == 0 ? ChildEnd::Succeeded : ChildEnd::Failed;
    }

} // namespace

ChildEnd runChild(const std::vector<std::string> &words, const std::atomic<bool> &cancelled)
{
    std::wstring line = commandLine(words);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION child = {};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE,
                        CREATE_SUSPENDED | CREATE_NO_WINDOW, nullptr, nullptr, &startup, &child))
        return ChildEnd::NotStarted;
    const HANDLE job = lastingAsLongAsWeDo();
    AssignProcessToJobObject(job, child.hProcess);
    ResumeThread(child.hThread);
    const ChildEnd end = waitFor(child.hProcess, cancelled);
    CloseHandle(job);
    CloseHandle(child.hThread);
    CloseHandle(child.hProcess);
    return end;
}

} // namespace localservice
