// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

class QProcess;

/// Ties a process to this one, so that it ends when this program dies in whatever way. Call it
/// before the process is started, in the thread that starts it; that thread must outlive the
/// process. On Windows the child gets no console window of its own either.
void bindLifetimeToParent(QProcess &process);
