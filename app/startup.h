// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

class ProgramData;

/// Names the program; comes before everything else.
void nameApplication();

/// Makes the backend elements known to QML; comes before the application object.
void registerBackendTypes();

/// Sends the log to a file if the settings say so. Decided once a run.
void setUpLogging(ProgramData &store);

/// Writes version, system and memory to the log.
void logSystemHeader();

/// Everything between the application object and its end: style, settings, log, folders, embedded
/// service, main view and event loop. A file given on the command line is opened at once. Returns
/// the process's exit code; a start that fails has told the user why.
int runProgram(const QStringList &arguments);
