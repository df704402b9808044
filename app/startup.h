// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

class QObject;

/// Registers the backend elements with QML. Call before the application object is created.
void registerBackendTypes();

/// Opens a file once, as soon as a user is signed in. The main view owns the backend and the
/// account element.
void openOnceSignedIn(const QObject &mainView, const QString &file);

/// Runs the program within an existing application object: style, settings, log, folders, embedded
/// service, main view and event loop. A file given on the command line is opened in place of the
/// main window. Returns the process's exit code; a failed start was reported in a message box.
int runProgram(const QStringList &arguments);
