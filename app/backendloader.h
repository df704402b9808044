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

/// The main view's backend: chooses the input file, opens the other windows and implements the help
/// menu. Each window's controller is created on first use and lives as long as this object.
/// GUI thread only.
class BackendLoader : public QObject
{
    Q_OBJECT

public:
    explicit BackendLoader(QObject *parent = nullptr);
    /// Closes the log.
    ~BackendLoader() override;

signals:
    /// The processing window is open for the demo that reProcessDemo() is about.
    void runFromDemo();
    void hideMainWindow();
    void showMainWindow();
    /// The user wants a subscription.
    void callSubscriptionCreating();
    /// The interface scale to use from now on, 0.6 to 1.5.
    void scfChanged(double scf);

public slots:
    /// Lets the user choose a media file and loads it.
    void selectFile();
    /// Applies the stored scale and shows the main window, after the settings window has closed.
    void afterSettings();
    /// Emits callSubscriptionCreating().
    void unlockFullAccess();
    /// Processes an earlier demo result again, in full.
    void reProcessDemo(QString filePath, QString instrument, QString extension);
    /// Opens the processing window for a file in place of the main window.
    void loadFile(QString path);
    /// Each opens its window in place of the main window.
    void openMyAccountWindow();
    void openSettingsWindow();
    void openArchive();
    /// Emits the stored scale, once the main view is complete.
    void onCompleted();
    /// Removes the uploaded file from the service, waiting a few seconds at most, and all files
    /// from the temporary folder, unless another running program uses it.
    void clearMemory();
    /// Opens a page in the browser; see webPage().
    void openUrl(QString url);
    /// Logs the call only.
    void checkForUpdates();
    /// Shows the folder of the log files.
    void showLogs();
    /// Signs the user out here and at the service; no account is used automatically from now on.
    void logout();
    /// Stores the default scale and emits it.
    void resetScf();
    /// Welcomes the signed-in user and says what their licence allows.
    void showInitialMessage();
    /// Stores whether the next run writes a log.
    void toggleLogging(bool active);
    /// Whether the next run writes a log.
    [[nodiscard]] bool getLoggingStatus();

private:
    /// loadFile() with the return value of FileProcessing::openWindow().
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
