// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QVariantMap>

class ProgramData;

/// Changes settings and saves them; an invalid value removes its key. On failure, shows the user
/// why and restores the values, except in a first session, in which they apply until the program
/// exits. Returns whether they were saved. GUI thread only.
bool saveOrShowError(ProgramData &store, const QVariantMap &changes);
