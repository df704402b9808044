// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

class ProcessingView;
class ProgramData;
class QObject;
class TekoServer;

// The checks while a file is opened. Each waits in a local event loop, shows a message box when it
// finds something, and returns whether the window must close then. Destroying `opening` ends both:
// then they return false, and the caller may be gone.

/// Whether the service cannot be reached.
[[nodiscard]] bool closesOffline(TekoServer &server, const ProgramData &store,
                                 const QObject *opening);
/// Whether no more files may be processed today; only while the user still chooses an instrument.
[[nodiscard]] bool closesAtFilesLimit(TekoServer &server, const ProgramData &store,
                                      const ProcessingView &view, const QObject *opening);
