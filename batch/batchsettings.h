// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "batch/batchoptions.h"

class QSettings;

/// Copies the user's settings for one call and overrides them with its options.
void applyBatchOptions(const BatchOptions &options, const QSettings &user, QSettings &call);
