// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/messagewatcher.h"
#include "batch/batchoptions.h"
#include "batch/progressreport.h"
#include "processing/fileprocessing.h"

#include <QTextStream>

class QEventLoop;

/// Processes files one after the other through the processing window, as a user would. GUI thread
/// only.
class BatchRunner final : public QObject
{
    Q_OBJECT

public:
    /// The store holds this call's settings and must outlive the runner.
    explicit BatchRunner(ProgramData &store);

    /// Runs all files and returns the exit code. Result paths go to standard output, everything
    /// else to standard error. A file that fails does not stop the next ones.
    [[nodiscard]] int run(const QStringList &files);

    /// Cancels the file that is being processed and skips the rest.
    void interrupt();

private slots:
    void layerChanged();
    void showProgress();

private:
    [[nodiscard]] bool runFile(const QString &file);
    [[nodiscard]] bool fail(const QString &file, const QString &why);
    [[nodiscard]] QString refusedBeforehand(const QString &file) const;
    void waitForEnd();
    [[nodiscard]] QString layer() const;

    void clearProgress();
    void watchView();

    ProgramData &m_store;
    MessageWatcher m_messages;
    FileProcessing m_window;
    QTextStream m_results;
    QTextStream m_notes;
    const bool m_isTerminal;
    QEventLoop *m_loop = nullptr;
    QString m_file;
    QString m_message;
    QString m_lastStage;
    bool m_isClosed = false;
    bool m_isInterrupted = false;
};
