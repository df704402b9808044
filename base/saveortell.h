// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

class ProgramData;

/// Saves the settings; when that fails, tells the user in a message box and returns false.
bool saveOrTell(ProgramData &store);
