// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "account/accountclient.h"
#include "archive/archivehandler.h"
#include "archive/archiverecord.h"
#include "base/viewwindow.h"
#include "results/resultmemory.h"

#include <memory>

class ProgramData;
struct ArchiveJob;

/// The Archive window: lists the results that the service keeps for the user, plays those that are
/// on disk and gets the others in the format that is chosen. GUI thread only.
class Archive final : public ViewWindow
{
    Q_OBJECT

public:
    /// The store must outlive the window.
    explicit Archive(ProgramData &store);

    /// Shows the window and loads the list. The caller's event loop is nested until the service has
    /// answered or the window is closed.
    void openWindow();

    /// Loads the list anew, waiting in the same way. A failure is reported in a message box.
    void loadArchiveFiles();

signals:
    /// The window has closed.
    void showParent();
    void unlockFullAccess();
    void loaded();
    /// The rows of the list, each a map.
    void updateFiles(QVariant files);
    /// The user wants the whole of an earlier demo result; id is the service's number of it.
    void reProcessDemo(QString filePath, QString instrument, QString extension, int id);
    void changeButtons(int row, QString instrument, QString mix);

public slots:
    void cancel();
    void openFolder();
    void finishConverting();
    /// Rows count as in the last updateFiles(), extensions are lower case.
    void operateFile(int id, bool isMix, QString newExtension);
    void changedFormat(int id, QString format);
    void getFullFile(int id);

protected:
    void windowClosed() override;

private:
    void connectRoot();
    void takeRecords(const QVariantList &reply);
    [[nodiscard]] QVariantList rows() const;
    /// The record of a row whose files may be named after it, or null.
    [[nodiscard]] const ArchiveRecord *usableRecord(int row) const;
    /// Where a record's results lie in a format: where this installation has saved them, or else
    /// under the record's name.
    [[nodiscard]] ResultPaths pathsOf(const ArchiveRecord &record, const QString &folder,
                                      const QString &extension) const;
    void carryOut(const ArchiveJob &job, const ArchiveRecord &record, bool isMix);
    [[nodiscard]] ArchiveHandler &handler();
    /// Shows the user when it is not.
    [[nodiscard]] bool isKnownToService(const ArchiveRecord &record);
    /// Empty when the folder is not available, which the user is shown then.
    [[nodiscard]] QString saveFolderOrShowError();
    void refuseMissingVideo(const QString &extension, const ArchiveRecord &record);
    void refuse(const QString &title, const QString &text);

    ProgramData &m_store;
    AccountClient m_account;
    ResultMemory m_memory;
    std::unique_ptr<ArchiveHandler> m_handler; ///< made when it is first needed
    QList<ArchiveRecord> m_files;
    std::unique_ptr<QObject> m_loading; ///< gone once the answer is no longer wanted
    int m_pendingRow = -1;
    QString m_pendingExtension;
};
