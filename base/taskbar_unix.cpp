// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/taskbar.h"

struct TaskbarProgress::Bar
{
};

// The desktop groups windows by the name of the program's entry.
void prepareForWindows() { }

TaskbarProgress::TaskbarProgress(const QWidget &) { }

TaskbarProgress::~TaskbarProgress() = default;

void TaskbarProgress::showPercent(double) { }

void TaskbarProgress::showBusy() { }

void TaskbarProgress::hide() { }
