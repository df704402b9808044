// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

class QObject;

/// Makes the backend elements known to QML; comes before the application object.
void registerBackendTypes();

/// Opens a file as soon as somebody is signed in, and only once. The main view owns the backend and
/// the account element.
void openOnceSignedIn(const QObject &mainView, const QString &file);

/// Everything between the application object and its end: style, settings, log, folders, embedded
/// service, main view and event loop. A file given on the command line is opened in place of the
/// main window. Returns the process's exit code; a start that fails has shown the user why.
int runProgram(const QStringList &arguments);
