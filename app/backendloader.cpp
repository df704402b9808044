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
#include "base/homewindow.h"
#include "base/messageboxcustom.h"
#include "base/programdata.h"
#include "base/savesettings.h"
#include "processing/fileprocessing.h"
#include "settings/settings.h"

#include <QDebug>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QUrl>

namespace {

/// The window that contains an element.
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
    , m_temporaryFolder(m_store.defaultPathTemp())
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
    const QString file = dialog.selectedFiles().constFirst();
    // Not the dialog's own folder: a path may be typed.
    m_lastOpenFolder = QFileInfo(file).absolutePath();
    loadFile(file);
}

HomeWindow *BackendLoader::home()
{
    if (QWindow *window = m_home ? nullptr : windowAround(this))
        m_home = new HomeWindow(window);
    return m_home;
}

void BackendLoader::takeScale()
{
    emit scfChanged(usableGuiScale(m_store.guiScale()));
    if (home())
        home()->keepOnScreen();
}

FileProcessing &BackendLoader::processing()
{
    if (m_processing)
        return *m_processing;
    m_processing = std::make_unique<FileProcessing>(m_store);
    m_processing->setHome(home());
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
    m_account->setHome(home());
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
    // Not while offline, when the daily limit is reached, or superseded by another action.
    if (open(filePath))
        emit runFromDemo();
}

void BackendLoader::openSettingsWindow()
{
    qInfo() << "BackendLoader::openSettingsWindow";
    if (!m_settings) {
        m_settings = std::make_unique<Settings>(m_store);
        m_settings->setHome(home());
        connect(m_settings.get(), &Settings::showParent, this, &BackendLoader::afterSettings);
    }
    emit hideMainWindow();
    m_settings->openWindow();
}

void BackendLoader::afterSettings()
{
    qInfo() << "BackendLoader::afterSettings";
    takeScale();
    emit showMainWindow();
}

Archive &BackendLoader::archive()
{
    if (m_archive)
        return *m_archive;
    m_archive = std::make_unique<Archive>(m_store);
    m_archive->setHome(home());
    connect(m_archive.get(), &Archive::showParent, this, &BackendLoader::showMainWindow);
    connect(m_archive.get(), &Archive::unlockFullAccess, this, &BackendLoader::unlockFullAccess);
    connect(m_archive.get(), &Archive::reProcessDemo, this,
            [this](const QString &filePath, const QString &instrument, const QString &extension,
                   int id) {
                m_demo.id = id;
                // Hidden, since closing would bring the main window back.
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
    qInfo() << "BackendLoader::onCompleted";
    emit scfChanged(usableGuiScale(m_store.guiScale()));
}

void BackendLoader::clearMemory()
{
    qInfo() << "BackendLoader::clearMemory";
    if (m_processing)
        m_processing->removeUploadedFile();
    m_temporaryFolder.clear();
}

void BackendLoader::openUrl(QString url)
{
    qInfo() << "BackendLoader::openUrl" << url;
    QDesktopServices::openUrl(webPage(url, m_store.endpoints()));
}

void BackendLoader::checkForUpdates()
{
    qInfo() << "BackendLoader::checkForUpdates";
}

void BackendLoader::showLogs()
{
    qInfo() << "BackendLoader::showLogs";
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
    qInfo() << "BackendLoader::resetScf";
    if (!saveOrShowError(m_store, {{SettingsKeys::guiScale.name, {}}}))
        takeScale();
}

void BackendLoader::showInitialMessage()
{
    qInfo() << "BackendLoader::showInitialMessage";
    MessageBoxCustom::information(tr("Welcome"), welcomeText(m_store.user()));
}

void BackendLoader::toggleLogging(bool active)
{
    qInfo() << "BackendLoader::toggleLogging" << active;
    saveOrShowError(m_store, {{SettingsKeys::logging.name, active}});
}

bool BackendLoader::getLoggingStatus()
{
    qInfo() << "BackendLoader::getLoggingStatus";
    return m_store.isLoggingEnabled();
}
