// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/childlifetime.h"

#include <QProcess>

/// These systems cannot kill a child together with its parent. QProcess kills its child when the
/// program exits normally; after a crash ffmpeg finishes its file and exits.
void bindLifetimeToParent(QProcess &) { }
