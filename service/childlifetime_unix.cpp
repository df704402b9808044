// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/childlifetime.h"

#include <QProcess>

/// These systems have no request to be ended with a parent. QProcess ends its child when the
/// program leaves in order; after a crash ffmpeg finishes the file at hand and ends by itself.
void bindLifetimeToParent(QProcess &) { }
