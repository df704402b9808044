// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/childlifetime.h"

#include <QProcess>

#include <memory>

#include <qt_windows.h>

namespace {

using Handle = std::unique_ptr<void, decltype(&CloseHandle)>;

/// A job whose members die with its last handle, and that handle closes with this program.
std::shared_ptr<void> endingJob()
{
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    if (!job)
        return {};
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return {job, CloseHandle};
}

void join(void *job, qint64 processId)
{
    const Handle child(OpenProcess(PROCESS_SET_QUOTA | PROCESS_TERMINATE, FALSE, DWORD(processId)),
                       CloseHandle);
    if (!child || !AssignProcessToJobObject(job, child.get()))
        qWarning("A child process could not be tied to the program: error %lu", GetLastError());
}

} // namespace

void bindLifetimeToParent(QProcess &process)
{
    process.setCreateProcessArgumentsModifier(
        [](QProcess::CreateProcessArguments *arguments) { arguments->flags |= CREATE_NO_WINDOW; });
    if (const std::shared_ptr<void> job = endingJob())
        QObject::connect(&process, &QProcess::started, &process,
                         [&process, job] { join(job.get(), process.processId()); });
}
