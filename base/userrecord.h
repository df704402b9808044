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

/// What the service wants to see beside the user's hash; empty until the account side fills it.
struct AccessCredentials
{
    QString publicKey;
    QString accessToken;
    bool hasSignedOut = false; ///< by the user's wish: no account is used unasked

    bool operator==(const AccessCredentials &) const = default;
};
