// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/// The name filters of the file dialog; the first shows everything that can be opened.
[[nodiscard]] QString mediaFileFilter();
