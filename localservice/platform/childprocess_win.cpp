// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/platform/childprocess.h"

#include "localservice/base/paths.h"

#include <algorithm>
#include <array>
#include <memory>

#include <windows.h>

namespace localservice {

namespace {

constexpr DWORD pollMilliseconds = 20;
constexpr DWORD endMilliseconds = 5000;

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

std::wstring commandLine(const std::vector<std::string> &words)
{
    std::wstring line;
    for (const std::string &word : words)
        line += (line.empty() ? L"" : L" ") + quoted(pathFromUtf8(word).wstring());
    return line;
}

using Handle = std::unique_ptr<void, decltype(&CloseHandle)>;

// A job object ends all its processes when its last handle closes, also when the service
// crashes.
Handle makeKillOnCloseJob()
{
    Handle job(CreateJobObjectW(nullptr, nullptr), CloseHandle);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

// A handle that children inherit; null when it cannot be had.
Handle openNull()
{
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    const HANDLE file =
        CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    &inherited, OPEN_EXISTING, 0, nullptr);
    return {file == INVALID_HANDLE_VALUE ? nullptr : file, CloseHandle};
}

// The pipe that the child's output comes through: the end for this program, and the inherited one.
struct OutputPipe
{
    OutputPipe()
    {
        SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
        HANDLE ends[2] = {nullptr, nullptr};
        if (!CreatePipe(&ends[0], &ends[1], &inherited, 0))
            return;
        reader.reset(ends[0]);
        writer.reset(ends[1]);
        SetHandleInformation(reader.get(), HANDLE_FLAG_INHERIT, 0);
    }

    Handle reader{nullptr, CloseHandle};
    Handle writer{nullptr, CloseHandle};
};

// What has arrived by now.
void forwardOutput(HANDLE reader, const OutputHandler &onOutput)
{
    char bytes[4096];
    DWORD available = 0;
    while (PeekNamedPipe(reader, nullptr, 0, nullptr, &available, nullptr) && available > 0) {
        DWORD got = 0;
        if (!ReadFile(reader, bytes, std::min<DWORD>(available, sizeof bytes), &got, nullptr))
            return;
        onOutput({bytes, got});
    }
}

// The child's standard handles, and at the same time all that it inherits: the service's files
// and connections are not the program's.
class Streams
{
public:
    explicit Streams(HANDLE output)
        : m_input(openNull())
        , m_handles{m_input.get(), output}
    {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        m_space.resize(size);
        m_startup.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_space.data());
        InitializeProcThreadAttributeList(m_startup.lpAttributeList, 1, 0, &size);
        UpdateProcThreadAttribute(m_startup.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST,
                                  m_handles.data(), sizeof m_handles, nullptr, nullptr);
        m_startup.StartupInfo.cb = sizeof m_startup;
        m_startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
        m_startup.StartupInfo.hStdInput = m_input.get();
        m_startup.StartupInfo.hStdOutput = output;
        m_startup.StartupInfo.hStdError = output;
    }
    Streams(const Streams &) = delete;
    Streams &operator=(const Streams &) = delete;
    ~Streams() { DeleteProcThreadAttributeList(m_startup.lpAttributeList); }

    STARTUPINFOW *startup() { return &m_startup.StartupInfo; }

private:
    Handle m_input;
    std::array<HANDLE, 2> m_handles;
    std::vector<char> m_space;
    STARTUPINFOEXW m_startup = {};
};

ChildResult waitFor(HANDLE process, HANDLE output, const std::atomic<bool> &cancelled,
                    const OutputHandler &onOutput)
{
    while (WaitForSingleObject(process, pollMilliseconds) == WAIT_TIMEOUT) {
        forwardOutput(output, onOutput);
        if (cancelled)
            return ChildResult::Cancelled;
    }
    forwardOutput(output, onOutput);
    DWORD code = 1;
    GetExitCodeProcess(process, &code);
    return code == 0 ? ChildResult::Succeeded : ChildResult::Failed;
}

} // namespace

ChildResult runChild(const std::vector<std::string> &words, const std::atomic<bool> &cancelled,
                     const OutputHandler &onOutput)
{
    std::wstring line = commandLine(words);
    OutputPipe output;
    Streams streams(output.writer.get());
    PROCESS_INFORMATION child = {};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE,
                        CREATE_SUSPENDED | CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT, nullptr,
                        nullptr, streams.startup(), &child))
        return ChildResult::NotStarted;
    output.writer.reset();
    const Handle process(child.hProcess, CloseHandle);
    const Handle thread(child.hThread, CloseHandle);
    const Handle job = makeKillOnCloseJob();
    AssignProcessToJobObject(job.get(), process.get());
    ResumeThread(thread.get());
    const ChildResult result = waitFor(process.get(), output.reader.get(), cancelled, onOutput);
    // The job ends the others when it closes here, but its own process only if it could join.
    if (result == ChildResult::Cancelled) {
        TerminateProcess(process.get(), 1);
        // Only then are its files free to be deleted.
        WaitForSingleObject(process.get(), endMilliseconds);
    }
    return result;
}

} // namespace localservice
