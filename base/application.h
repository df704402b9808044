// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

class ProgramData;

/// Sets the names of organisation and application, which folders are called after. Comes before
/// everything else.
void nameApplication();

/// Sends the log to a file if the settings say so. Decided once a run.
void setUpLogging(const ProgramData &store);

/// Writes version, system and memory to the log.
void logSystemHeader();
