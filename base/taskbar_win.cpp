// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/taskbar.h"

#include <QWidget>

#include <qt_windows.h>

#include <shobjidl.h>

namespace {

// The installer gives its menu entry the same name.
constexpr const wchar_t *groupName = L"DravoSoftware.TEKO";

constexpr ULONGLONG fullBar = 100;

} // namespace

struct TaskbarProgress::Bar
{
    explicit Bar(const QWidget &owner)
        : window(owner)
    {
        // Qt has made the thread ready for such objects.
        if (FAILED(CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER,
                                    IID_PPV_ARGS(&list)))) {
            list = nullptr;
        } else if (FAILED(list->HrInit())) {
            list->Release();
            list = nullptr;
        }
    }
    Bar(const Bar &) = delete;
    Bar &operator=(const Bar &) = delete;
    ~Bar()
    {
        if (list)
            list->Release();
    }

    // A hidden window has no button.
    [[nodiscard]] bool isShown() const { return list && window.isVisible(); }
    [[nodiscard]] HWND handle() const { return reinterpret_cast<HWND>(window.winId()); }

    const QWidget &window;
    ITaskbarList3 *list = nullptr;
};

void prepareForWindows()
{
    // A thread that renders is still in the destructors of its own objects, under a lock, when the
    // end of the program kills it: MinGW's run-time then waits for that lock for ever.
    if (qEnvironmentVariableIsEmpty("QSG_RENDER_LOOP"))
        qputenv("QSG_RENDER_LOOP", "basic");
    SetCurrentProcessExplicitAppUserModelID(groupName);
}

TaskbarProgress::TaskbarProgress(const QWidget &window)
    : m_bar(std::make_unique<Bar>(window))
{ }

TaskbarProgress::~TaskbarProgress() = default;

void TaskbarProgress::showPercent(double percent)
{
    if (m_bar->isShown())
        m_bar->list->SetProgressValue(m_bar->handle(), ULONGLONG(percent), fullBar);
}

void TaskbarProgress::showBusy()
{
    if (m_bar->isShown())
        m_bar->list->SetProgressState(m_bar->handle(), TBPF_INDETERMINATE);
}

void TaskbarProgress::hide()
{
    if (m_bar->isShown())
        m_bar->list->SetProgressState(m_bar->handle(), TBPF_NOPROGRESS);
}
