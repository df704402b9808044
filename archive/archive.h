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
/// on disk and fetches the others in the chosen format. GUI thread only.
class Archive final : public ViewWindow
{
    Q_OBJECT

public:
    /// The store must outlive the window.
    explicit Archive(ProgramData &store);

    /// Shows the window and loads the list. Runs a nested event loop until the service has answered
    /// or the window is closed.
    void openWindow();

    /// Reloads the list, waiting in the same way. A failure is reported in a message box.
    void loadArchiveFiles();

signals:
    /// The window has closed.
    void showParent();
    /// The user wants a subscription.
    void unlockFullAccess();
    /// The window is shown.
    void loaded();
    /// The rows of the list, each a map.
    void updateFiles(QVariant files);
    /// The user wants an earlier demo result processed in full; id is the service's number of it.
    void reProcessDemo(QString filePath, QString instrument, QString extension, int id);
    /// The icons of a row's two buttons, "play" or "download", have changed.
    void changeButtons(int row, QString instrument, QString mix);

    // In the slots, id is an index into the rows of the last updateFiles(); extensions are lower
    // case.
public slots:
    /// Closes the window.
    void cancel();
    /// Shows the folder for saved files.
    void openFolder();
    /// Updates the buttons of the row that was last played, downloaded or converted.
    void finishConverting();
    /// Plays a result, or downloads or converts it first.
    void operateFile(int id, bool isMix, QString newExtension);
    /// Updates the row's buttons for a newly chosen format.
    void changedFormat(int id, QString format);
    /// Emits reProcessDemo() for a demo result, or reports why it cannot be processed.
    void getFullFile(int id);

protected:
    void windowClosed() override;

private:
    void connectRoot();
    void takeRecords(const QVariantList &reply);
    [[nodiscard]] QVariantList rows() const;
    /// The record of a row, or null when it cannot name files.
    [[nodiscard]] const ArchiveRecord *usableRecord(int row) const;
    /// The paths of a record's results in a format: those that this installation has saved, or else
    /// those by the record's name.
    [[nodiscard]] ResultPaths pathsOf(const ArchiveRecord &record, const QString &folder,
                                      const QString &extension) const;
    void carryOut(const ArchiveJob &job, const ArchiveRecord &record, bool isMix);
    [[nodiscard]] ArchiveHandler &handler();
    /// Reports an error when it is not.
    [[nodiscard]] bool isKnownToService(const ArchiveRecord &record);
    /// Reports an error and returns empty when the folder is not available.
    [[nodiscard]] QString saveFolderOrShowError();
    void refuseMissingVideo(const QString &extension, const ArchiveRecord &record);
    void refuse(const QString &title, const QString &text);

    ProgramData &m_store;
    AccountClient m_account;
    ResultMemory m_memory;
    std::unique_ptr<ArchiveHandler> m_handler; ///< created on first use
    QList<ArchiveRecord> m_files;
    std::unique_ptr<QObject> m_loading; ///< reset when loading is cancelled
    int m_pendingRow = -1;
    QString m_pendingExtension;
};
