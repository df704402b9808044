// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

class ProgramData;

/// Sets the names of organisation and application, which folders are called after. Comes before
/// everything else.
void nameApplication();

/// Sends the log to a file if the settings say so, and returns whether they do. Decided once a run.
bool setUpLogging(ProgramData &store);

/// Writes version, system and memory to the log.
void logSystemHeader();
