// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/backendloader.h"

#include "account/accountclient.h"
#include "account/licencegate.h"
#include "account/myaccount.h"
#include "account/signout.h"
#include "app/mediafilter.h"
#include "app/webpage.h"
#include "archive/archive.h"
#include "base/guiscale.h"
#include "base/messageboxcustom.h"
#include "base/programdata.h"
#include "base/saveortell.h"
#include "processing/fileprocessing.h"
#include "settings/settings.h"

#include <QDebug>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QUrl>

namespace {

/// The window that an element stands in.
QWindow *windowAround(QObject *element)
{
    for (QObject *object = element; object; object = object->parent()) {
        if (auto *window = qobject_cast<QWindow *>(object))
            return window;
    }
    return nullptr;
}

} // namespace

BackendLoader::BackendLoader(QObject *parent)
    : QObject(parent)
    , m_store(ProgramData::instance())
    , m_signOff(std::make_unique<AccountClient>(m_store))
    , m_lastOpenFolder(m_store.defaultPathOpen())
{ }

BackendLoader::~BackendLoader()
{
    m_account.reset();
    m_archive.reset();
    m_processing.reset();
    qDebug("LOG_CLOSE");
}

void BackendLoader::selectFile()
{
    qInfo() << "BackendLoader::selectFile";
    QFileDialog dialog(nullptr, tr("Please choose a media file"), m_lastOpenFolder,
                       mediaFileFilter());
    dialog.setWindowFlags(dialog.windowFlags() | Qt::WindowStaysOnTopHint);
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    m_lastOpenFolder = dialog.directory().absolutePath();
    loadFile(dialog.selectedFiles().constFirst());
}

FileProcessing &BackendLoader::processing()
{
    if (m_processing)
        return *m_processing;
    m_processing = std::make_unique<FileProcessing>(m_store);
    m_processing->setHome(windowAround(this));
    connect(m_processing.get(), &FileProcessing::showParent, this, &BackendLoader::showMainWindow);
    connect(m_processing.get(), &FileProcessing::openAnotherFile, this, &BackendLoader::selectFile);
    connect(this, &BackendLoader::runFromDemo, m_processing.get(),
            [this] { m_processing->runFromDemo(m_demo.instrument, m_demo.extension, m_demo.id); });
    return *m_processing;
}

MyAccount &BackendLoader::account()
{
    if (m_account)
        return *m_account;
    m_account = std::make_unique<MyAccount>(m_store);
    m_account->setHome(windowAround(this));
    connect(m_account.get(), &MyAccount::showParent, this, &BackendLoader::showMainWindow);
    connect(m_account.get(), &MyAccount::unlockFullAccess, this, &BackendLoader::unlockFullAccess);
    return *m_account;
}

void BackendLoader::loadFile(QString path)
{
    open(path);
}

bool BackendLoader::open(const QString &path)
{
    qInfo() << "BackendLoader::loadFile" << path;
    FileProcessing &window = processing();
    emit hideMainWindow();
    return window.openWindow(path);
}

void BackendLoader::reProcessDemo(QString filePath, QString instrument, QString extension)
{
    qInfo() << "BackendLoader::reProcessDemo" << filePath;
    m_demo.instrument = instrument;
    m_demo.extension = extension;
    // Not while the service is out of reach or allows no further file today, nor when the user was
    // quicker: the window then works for something else.
    if (open(filePath))
        emit runFromDemo();
}

void BackendLoader::openSettingsWindow()
{
    qInfo() << "BackendLoader::openSettingsWindow";
    if (!m_settings) {
        m_settings = std::make_unique<Settings>(m_store);
        m_settings->setHome(windowAround(this));
        connect(m_settings.get(), &Settings::showParent, this, &BackendLoader::afterSettings);
    }
    emit hideMainWindow();
    m_settings->openWindow();
}

void BackendLoader::afterSettings()
{
    emit scfChanged(usableGuiScale(m_store.guiScale()));
    emit showMainWindow();
}

Archive &BackendLoader::archive()
{
    if (m_archive)
        return *m_archive;
    m_archive = std::make_unique<Archive>(m_store);
    m_archive->setHome(windowAround(this));
    connect(m_archive.get(), &Archive::showParent, this, &BackendLoader::showMainWindow);
    connect(m_archive.get(), &Archive::unlockFullAccess, this, &BackendLoader::unlockFullAccess);
    connect(m_archive.get(), &Archive::reProcessDemo, this,
            [this](const QString &filePath, const QString &instrument, const QString &extension,
                   int id) {
                m_demo.id = id;
                // Not closed, which would bring the main window back: the processing window
                // follows.
                m_archive->hide();
                reProcessDemo(filePath, instrument, extension);
            });
    return *m_archive;
}

void BackendLoader::openArchive()
{
    qInfo() << "BackendLoader::openArchive";
    Archive &window = archive();
    emit hideMainWindow();
    window.openWindow();
}

void BackendLoader::openMyAccountWindow()
{
    qInfo() << "BackendLoader::openMyAccountWindow";
    MyAccount &window = account();
    emit hideMainWindow();
    window.openWindow();
}

void BackendLoader::unlockFullAccess()
{
    qInfo() << "BackendLoader::unlockFullAccess";
    emit callSubscriptionCreating();
}

void BackendLoader::onCompleted()
{
    emit scfChanged(usableGuiScale(m_store.guiScale()));
}

void BackendLoader::clearMemory()
{
    qInfo() << "BackendLoader::clearMemory";
    if (m_processing)
        m_processing->removeUploadedFile();
    const QString folder = m_store.defaultPathTemp();
    if (folder.isEmpty())
        return;
    const QStringList names = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System
                                                     | QDir::NoDotAndDotDot);
    for (const QString &name : names)
        QFile::remove(folder + QLatin1Char('/') + name);
}

void BackendLoader::openUrl(QString url)
{
    qInfo() << "BackendLoader::openUrl" << url;
    QDesktopServices::openUrl(webPage(url, m_store.endpoints()));
}

void BackendLoader::checkForUpdates() { }

void BackendLoader::showLogs()
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(m_store.defaultPathLogs()));
}

void BackendLoader::logout()
{
    qInfo() << "BackendLoader::logout";
    if (m_processing)
        m_processing->forgetUploadedFile();
    signOut(m_store, *m_signOff);
}

void BackendLoader::resetScf()
{
    m_store.settings().remove("settings_gui_scale");
    saveOrTell(m_store);
}

void BackendLoader::showInitialMessage()
{
    qInfo() << "BackendLoader::showInitialMessage";
    MessageBoxCustom::information(tr("Welcome"), welcomeText(m_store.user()));
}

void BackendLoader::toggleLogging(bool active)
{
    m_store.settings().setValue("APP_LOGFILE_ENABLED", active);
    saveOrTell(m_store);
}

bool BackendLoader::getLoggingStatus()
{
    return m_store.settings().value("APP_LOGFILE_ENABLED").toBool();
}
