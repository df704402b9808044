// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/userrecord.h"

#include <QSettings>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

class QObject;

/// Where the outside world is. An empty URL means: not available.
struct ServiceEndpoints
{
    QUrl base; ///< the processing service, without a trailing slash
    QUrl connectivity; ///< answers HTTP 204 while the service can be reached
    QUrl website; ///< the maker's web site, without a trailing slash

    bool operator==(const ServiceEndpoints &) const = default;
};

/// The account that the embedded service keeps for whoever uses this machine.
struct LocalAccount
{
    QString email;
    QString hash;

    bool operator==(const LocalAccount &) const = default;
};

/// The process-wide program data store: settings with their defaults, standard folders, signed-in
/// user. Creation is safe from any thread; everything else belongs to the GUI thread.
class ProgramData
{
public:
    using EndpointSource = std::function<ServiceEndpoints()>;
    /// Calls back from the event loop, unless the context dies first.
    using StartWaiter = std::function<void(QObject *context, std::function<void()> started)>;

    /// The store, created at the first call and never destroyed.
    static ProgramData &instance();

    /// For tools with a settings file of their own; the program itself uses instance().
    explicit ProgramData(const QString &settingsFile);

    ProgramData(const ProgramData &) = delete;
    ProgramData &operator=(const ProgramData &) = delete;

    /// For writers, and for keys without a getter.
    [[nodiscard]] QSettings &settings() { return m_settings; }
    /// Writes what was set so far to the file; false when that failed and the file is as it was.
    [[nodiscard]] bool saveSettings();

    /// The folder "TEKO" in the documents or else the local data location; empty while neither
    /// exists.
    [[nodiscard]] QString appFolder() const;

    [[nodiscard]] QString defaultVideoPlayer() const;
    [[nodiscard]] QString defaultAudioPlayer() const;
    [[nodiscard]] QString defaultVideoFormat() const;
    [[nodiscard]] QString defaultAudioFormat() const;
    [[nodiscard]] QString defaultInstrument() const;

    /// A folder that exists now (one missing level is made), or empty when it is not available.
    [[nodiscard]] QString defaultPathSave() const;
    [[nodiscard]] QString defaultPathOpen() const;
    [[nodiscard]] QString defaultPathLogs() const;
    [[nodiscard]] QString defaultPathTemp() const;

    /// Any key as text, empty when it is missing.
    [[nodiscard]] QString stringValue(const QString &key) const;
    /// The interface scale as stored: 1 when missing, 0 when it is not a number.
    [[nodiscard]] double guiScale() const;

    [[nodiscard]] const UserRecord &user() const { return m_user; }
    void setUser(const UserRecord &user) { m_user = user; }

    [[nodiscard]] const AccessCredentials &access() const { return m_access; }
    void setAccess(const AccessCredentials &access) { m_access = access; }

    /// The fixed text under which the account side seals the credentials file.
    [[nodiscard]] const QString &credentialsText() const { return m_credentialsText; }

    /// Asks the source at each call, and never waits: while an embedded service is starting, there
    /// is no address.
    [[nodiscard]] ServiceEndpoints endpoints() const;
    void setEndpointSource(EndpointSource source) { m_endpointSource = std::move(source); }

    /// Calls back once, from the event loop and unless the context dies first: at once, or as soon
    /// as an embedded service listens or has failed.
    void whenServiceStarted(QObject *context, std::function<void()> started) const;
    void setStartWaiter(StartWaiter waiter) { m_startWaiter = std::move(waiter); }

    /// Nothing while no embedded service has announced itself.
    [[nodiscard]] const std::optional<LocalAccount> &localAccount() const { return m_local; }
    void setLocalAccount(std::optional<LocalAccount> account) { m_local = std::move(account); }

private:
    [[nodiscard]] QString folder(const QString &key, const QString &name) const;

    const QString m_credentialsText;
    UserRecord m_user;
    mutable QSettings m_settings;
    AccessCredentials m_access;
    EndpointSource m_endpointSource;
    StartWaiter m_startWaiter;
    std::optional<LocalAccount> m_local;
};

/// "%1/TEKO" of the documents location, where the application folder belongs.
[[nodiscard]] QString documentsAppFolder();
/// "%1/TEKO" of the local data location, the second choice.
[[nodiscard]] QString localDataAppFolder();
