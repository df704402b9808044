// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/temporaryfolder.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

class AccountClient;
class Archive;
class FileProcessing;
class HomeWindow;
class MyAccount;
class ProgramData;
class Settings;

/// The main view's backend: chooses the input file, opens the other windows and carries out the
/// help menu. Each window's controller is made at its first use and lives as long as this object.
/// GUI thread only.
class BackendLoader : public QObject
{
    Q_OBJECT

public:
    explicit BackendLoader(QObject *parent = nullptr);
    /// Closes the log.
    ~BackendLoader() override;

signals:
    void runFromDemo();
    void hideMainWindow();
    void showMainWindow();
    void callSubscriptionCreating();
    void scfChanged(double scf);

public slots:
    /// Lets the user choose a media file and loads it.
    void selectFile();
    void afterSettings();
    /// Leads the user to a subscription.
    void unlockFullAccess();
    /// Processes an earlier demo result again, in full.
    void reProcessDemo(QString filePath, QString instrument, QString extension);
    /// Opens the processing window for a file in place of the main window.
    void loadFile(QString path);
    void openMyAccountWindow();
    void openSettingsWindow();
    void openArchive();
    void onCompleted();
    /// Removes the uploaded file from the service, for which it waits a little, and all files from
    /// the temporary folder, unless another running program works there.
    void clearMemory();
    void openUrl(QString url);
    void checkForUpdates();
    void showLogs();
    /// Forgets the session on this computer, and lets the service do so; no account is used unasked
    /// from now on.
    void logout();
    void resetScf();
    /// Welcomes the signed-in user and says what their licence allows.
    void showInitialMessage();
    void toggleLogging(bool active);
    [[nodiscard]] bool getLoggingStatus();

private:
    /// loadFile(), which returns whether the window waits for what is to be done with the file.
    bool open(const QString &path);
    /// The window that this element stands in; null where there is none.
    [[nodiscard]] HomeWindow *home();
    void takeScale();
    [[nodiscard]] FileProcessing &processing();
    [[nodiscard]] MyAccount &account();
    [[nodiscard]] Archive &archive();

    struct DemoRun
    {
        QString instrument;
        QString extension;
        int id = 0;
    };

    ProgramData &m_store;
    TemporaryFolder m_temporaryFolder;
    std::unique_ptr<AccountClient> m_signOff; ///< ends sessions at the service
    std::unique_ptr<FileProcessing> m_processing;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<MyAccount> m_account;
    std::unique_ptr<Archive> m_archive;
    QPointer<HomeWindow> m_home;
    QString m_lastOpenFolder;
    DemoRun m_demo;
};
