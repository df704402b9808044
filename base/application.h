// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

class ProgramData;

/// Sets the organisation and application names, from which Qt derives folders. Call it before
/// anything else.
void nameApplication();

/// Redirects the log to a file if the settings say so. Call once.
void setUpLogging(const ProgramData &store);

/// Writes version, system and memory to the log.
void logSystemHeader();
