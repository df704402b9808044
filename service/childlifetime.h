// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

class QProcess;

/// Ties a process to this one, so that it is killed when this program exits or crashes. Call it
/// before the process is started, in the thread that starts it; that thread must outlive the
/// process. On Windows the child also gets no console window of its own.
void bindLifetimeToParent(QProcess &process);
