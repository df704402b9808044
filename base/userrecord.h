// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QVariantMap>

/// The signed-in user as the service describes it; all fields empty or 0 while nobody is signed in.
struct UserRecord
{
    struct Subscription
    {
        qint32 id = 0; ///< 0: no subscription
        QString added;
        QString period;
        QString version;
        QString type;
        qint32 expired = 0;

        bool operator==(const Subscription &) const = default;
    };

    qint32 userId = 0;
    QString name;
    QString email;
    QString hash;
    Subscription subscription;

    /// Reads the service's reply map; a missing key or a wrong type leaves the field empty or 0.
    [[nodiscard]] static UserRecord fromMap(const QVariantMap &map);

    bool operator==(const UserRecord &) const = default;
};

/// Credentials sent with the hash; set by account/.
struct AccessCredentials
{
    QString publicKey;
    QString accessToken;
    bool hasSignedOut = false; ///< signed out explicitly: do not sign in automatically

    bool operator==(const AccessCredentials &) const = default;
};
