// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "archive/archive.h"

#include "account/licencegate.h"
#include "archive/archivehandler.h"
#include "archive/archivejob.h"
#include "archive/archiverequest.h"
#include "base/guiscale.h"
#include "base/messageboxcustom.h"
#include "base/programdata.h"
#include "results/resultopener.h"
#include "service/missingffmpeg.h"

#include <QDebug>
#include <QDir>
#include <QPointer>

Archive::Archive(ProgramData &store)
    : ViewWindow(tr("TEKO Archive"), QUrl(QStringLiteral("qrc:/qml/Archive.qml")), QSize(540, 400),
                 Sizing::Resizable)
    , m_store(store)
    , m_account(store)
    , m_memory(store)
{
    connectRoot();
    resize(540, 500);
}

void Archive::connectRoot()
{
    connectToView(SIGNAL(loaded()), SIGNAL(loaded()));
    connectToView(SIGNAL(updateFiles(QVariant)), SIGNAL(updateFiles(QVariant)));
    connectToView(SIGNAL(changeButtons(int, QString, QString)),
                  SIGNAL(changeButtons(int, QString, QString)));
    connectView(SIGNAL(cancel()), SLOT(cancel()));
    connectView(SIGNAL(unlockFullAccess()), SIGNAL(unlockFullAccess()));
    connectView(SIGNAL(openFolder()), SLOT(openFolder()));
    connectView(SIGNAL(getFullFile(int)), SLOT(getFullFile(int)));
    connectView(SIGNAL(changedFormat(int, QString)), SLOT(changedFormat(int, QString)));
    connectView(SIGNAL(operateFile(int, bool, QString)), SLOT(operateFile(int, bool, QString)));
}

void Archive::openWindow()
{
    qInfo() << "Archive::openWindow";
    applyScale(usableGuiScale(m_store.guiScale()));
    setViewProperty("isProcessing", true);
    // Another user may have signed in since.
    takeRecords({});
    emit updateFiles(rows());
    show();
    raise();
    emit loaded();
    loadArchiveFiles();
}

void Archive::loadArchiveFiles()
{
    qInfo() << "Archive::loadArchiveFiles";
    m_loading = std::make_unique<QObject>();
    const QPointer<QObject> loading(m_loading.get());
    const ArchiveAnswer answer = fetchArchive(m_account, m_store.user().hash);
    if (!loading)
        return;
    takeRecords(answer.records);
    emit updateFiles(rows());
    setViewProperty("isProcessing", false);
    if (!answer.error.isEmpty())
        refuse(tr("Archive Error"), answer.error);
}

void Archive::takeRecords(const QVariantList &reply)
{
    const ArchiveRecords records = archiveRecords(reply);
    m_files = records.usable;
    if (records.leftOut > 0)
        qInfo() << "Archive: records left out:" << records.leftOut << records.problems;
}

QVariantList Archive::rows() const
{
    const QString folder = m_store.defaultPathSave();
    const bool isDemoUser = runMode(m_store.user()) == QStringLiteral("demo");
    QVariantList rows;
    rows.reserve(m_files.size());
    for (const ArchiveRecord &record : m_files)
        rows << archiveRow(record, pathsOf(record, folder, record.extension), isDemoUser,
                           isFileHere);
    return rows;
}

ResultPaths Archive::pathsOf(const ArchiveRecord &record, const QString &folder,
                             const QString &extension) const
{
    if (record.id != 0 && canNameFiles(record)) {
        if (const auto saved = m_memory.find(record.id, extension, folder))
            return *saved;
    }
    return archivePaths(folder, record, extension);
}

void Archive::changedFormat(int id, QString format)
{
    qInfo() << "Archive::changedFormat" << id << format;
    const ArchiveRecord *record = usableRecord(id);
    if (!record)
        return;
    const ResultPaths paths = pathsOf(*record, m_store.defaultPathSave(), format);
    emit changeButtons(id, buttonOf(paths.main, isFileHere), buttonOf(paths.mix, isFileHere));
}

void Archive::operateFile(int id, bool isMix, QString newExtension)
{
    qInfo() << "Archive::operateFile" << id << isMix << newExtension;
    const ArchiveRecord *record = usableRecord(id);
    if (!record)
        return;
    const QString folder = saveFolderOrShowError();
    if (folder.isEmpty())
        return;
    m_pendingRow = id;
    m_pendingExtension = newExtension;
    // A file may have been added or removed since the row was shown.
    finishConverting();
    const ResultPaths stored = pathsOf(*record, folder, record->extension);
    const ResultPaths target = pathsOf(*record, folder, newExtension);
    carryOut(archiveJob(*record, isMix ? stored.mix : stored.main, isMix ? target.mix : target.main,
                        isFileHere),
             *record, isMix);
}

void Archive::carryOut(const ArchiveJob &job, const ArchiveRecord &record, bool isMix)
{
    // Before a download that would be lost.
    if (job.needsConversion() && isFfmpegMissing())
        return showMissingFfmpeg();
    switch (job.action) {
    case ArchiveJob::Action::Play:
        openInPlayer(m_store, job.target);
        break;
    case ArchiveJob::Action::Refuse:
        refuseMissingVideo(m_pendingExtension, record);
        break;
    case ArchiveJob::Action::Download:
        if (isKnownToService(record)) {
            handler().openWindow(job.stored, job.target, record.localFilePath);
            handler().download(record.id, isMix);
        }
        break;
    case ArchiveJob::Action::Convert:
        handler().openWindow(job.stored, job.target, record.localFilePath);
        handler().convert();
        break;
    }
}

bool Archive::isKnownToService(const ArchiveRecord &record)
{
    if (record.id == 0)
        refuse(tr("Archive Error"),
               tr("The service reported no number for this file, so that it cannot be fetched."));
    return record.id != 0;
}

ArchiveHandler &Archive::handler()
{
    if (!m_handler) {
        m_handler = std::make_unique<ArchiveHandler>(m_store);
        m_handler->setHome(new HomeWindow(windowHandle()));
        connect(m_handler.get(), &ArchiveHandler::finishWork, this, &Archive::finishConverting);
        connect(m_handler.get(), &ArchiveHandler::ended, this, &Archive::finishConverting);
    }
    return *m_handler;
}

void Archive::finishConverting()
{
    changedFormat(m_pendingRow, m_pendingExtension);
}

void Archive::getFullFile(int id)
{
    qInfo() << "Archive::getFullFile" << id;
    const ArchiveRecord *record = usableRecord(id);
    if (!record || !isKnownToService(*record))
        return;
    const FullRun run = fullRun(*record, m_store.defaultAudioFormat(), isFileHere);
    if (run.lacksVideo)
        refuseMissingVideo(run.extension, *record);
    else
        emit reProcessDemo(run.source, record->instrument, run.extension, record->id);
}

void Archive::openFolder()
{
    qInfo() << "Archive::openFolder";
    if (const QString folder = saveFolderOrShowError(); !folder.isEmpty())
        openFolderInBrowser(folder);
}

void Archive::cancel()
{
    qInfo() << "Archive::cancel";
    closeWindow();
}

void Archive::windowClosed()
{
    m_loading.reset();
    m_account.abort();
    if (m_handler)
        m_handler->closeWindow();
    emit showParent();
}

const ArchiveRecord *Archive::usableRecord(int row) const
{
    if (row < 0 || row >= m_files.size() || !canNameFiles(m_files[row]))
        return nullptr;
    return &m_files[row];
}

QString Archive::saveFolderOrShowError()
{
    QString folder = m_store.defaultPathSave();
    if (folder.isEmpty())
        refuse(tr("Archive Error"),
               tr("The folder for saved files cannot be used.\nPlease choose another one in the "
                  "settings."));
    return folder;
}

void Archive::refuseMissingVideo(const QString &extension, const ArchiveRecord &record)
{
    refuse(tr("File Format Error"),
           tr("Cannot download and convert file to %1, because original video file is "
              "missed:\n\n%2")
               .arg(extension, QDir::toNativeSeparators(record.localFilePath)));
}

void Archive::refuse(const QString &title, const QString &text)
{
    qCritical() << "Archive" << text;
    MessageBoxCustom::critical(title, text);
}
