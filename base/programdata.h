// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/serviceendpoints.h"
#include "base/settingskeys.h"
#include "base/userrecord.h"

#include <QSettings>
#include <QString>

#include <functional>
#include <optional>

class QObject;

/// The process-wide program data store: settings with their defaults, standard folders, signed-in
/// user. Creation is safe from any thread; everything else belongs to the GUI thread.
class ProgramData
{
public:
    using EndpointSource = std::function<ServiceEndpoints()>;
    /// Calls back from the event loop, unless the context is destroyed first.
    using StartWaiter = std::function<void(QObject *context, std::function<void()> started)>;

    /// The store, created at the first call and never destroyed.
    static ProgramData &instance();

    /// For tools with a settings file of their own; the program itself uses instance().
    explicit ProgramData(const QString &settingsFile);

    ProgramData(const ProgramData &) = delete;
    ProgramData &operator=(const ProgramData &) = delete;

    /// For writers, and for keys without a getter.
    [[nodiscard]] QSettings &settings() { return m_settings; }
    /// Writes pending changes to the file; false when that failed and the file is unchanged.
    [[nodiscard]] bool saveSettings();

    /// The folder "TEKO" in the documents or else the local data location; empty while neither
    /// exists.
    [[nodiscard]] QString appFolder() const;
    /// Whether there was no application folder when the program started, so that the settings file
    /// is outside of it: saved values are not found by later runs, or cannot be written at all.
    [[nodiscard]] bool isFirstSession() const { return m_isFirstSession; }

    [[nodiscard]] QString defaultVideoPlayer() const;
    [[nodiscard]] QString defaultAudioPlayer() const;
    [[nodiscard]] QString defaultVideoFormat() const;
    [[nodiscard]] QString defaultAudioFormat() const;
    [[nodiscard]] QString defaultInstrument() const;

    /// A folder that exists now (one missing level is made), or empty when it is not available. A
    /// default is not available without an application folder.
    [[nodiscard]] QString defaultPathSave() const;
    [[nodiscard]] QString defaultPathOpen() const;
    [[nodiscard]] QString defaultPathLogs() const;
    [[nodiscard]] QString defaultPathTemp() const;

    /// Any key as text, empty when it is missing.
    [[nodiscard]] QString stringValue(const QString &key) const;
    /// The interface scale as stored: 1 when missing, 0 when it is not a number.
    [[nodiscard]] double guiScale() const;
    /// Whether the next run writes a log. False in a first session, which cannot store it.
    [[nodiscard]] bool isLoggingEnabled() const;

    [[nodiscard]] const UserRecord &user() const { return m_user; }
    void setUser(const UserRecord &user) { m_user = user; }

    [[nodiscard]] const AccessCredentials &access() const { return m_access; }
    void setAccess(const AccessCredentials &access) { m_access = access; }

    /// The fixed text under which the account side seals the credentials file.
    [[nodiscard]] const QString &credentialsText() const { return m_credentialsText; }

    /// Calls the source each time and never blocks: empty while an embedded service is starting.
    [[nodiscard]] ServiceEndpoints endpoints() const;
    void setEndpointSource(EndpointSource source) { m_endpointSource = std::move(source); }

    /// Identifies the service: its address, or empty for the embedded one, whose address changes at
    /// each start.
    [[nodiscard]] QString serviceName() const;

    /// Calls back once, from the event loop, unless the context is destroyed first: immediately, or
    /// as soon as an embedded service listens or has failed.
    void whenServiceStarted(QObject *context, std::function<void()> started) const;
    void setStartWaiter(StartWaiter waiter) { m_startWaiter = std::move(waiter); }

    /// The log of the service of this computer; empty when another service is configured.
    [[nodiscard]] const QString &embeddedServiceLog() const { return m_embeddedServiceLog; }
    void setEmbeddedServiceLog(const QString &path) { m_embeddedServiceLog = path; }

    /// Empty while no embedded service is ready.
    [[nodiscard]] const std::optional<LocalAccount> &localAccount() const { return m_local; }
    void setLocalAccount(std::optional<LocalAccount> account) { m_local = std::move(account); }

private:
    [[nodiscard]] QString text(const SettingsKey &key) const;
    [[nodiscard]] QString folder(const SettingsKey &key) const;

    const QString m_credentialsText;
    const bool m_isFirstSession;
    UserRecord m_user;
    mutable QSettings m_settings;
    AccessCredentials m_access;
    EndpointSource m_endpointSource;
    StartWaiter m_startWaiter;
    std::optional<LocalAccount> m_local;
    QString m_embeddedServiceLog;
};

/// "%1/TEKO" of the documents location, where the application folder belongs.
[[nodiscard]] QString documentsAppFolder();
/// "%1/TEKO" of the local data location, the second choice.
[[nodiscard]] QString localDataAppFolder();
