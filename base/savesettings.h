// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QVariantMap>

class ProgramData;

/// Changes settings and saves them; an invalid value removes its key. When that fails, shows the
/// user why and sets the values back, but for a first session, in which they hold until the program
/// ends. Returns whether they were saved. GUI thread only.
bool saveOrShowError(ProgramData &store, const QVariantMap &changes);
