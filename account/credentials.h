// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// What is kept of the last sign-in. A password is never part of it.
struct Credentials
{
    QString publicKey; ///< names this installation
    QString email;
    QString hash; ///< empty: nobody is signed in
    QString accessToken;
    bool hasSignedOut = false; ///< on the user's own wish
    QString service; ///< the address that all this is for; empty: the service of this computer

    bool operator==(const Credentials &) const = default;
};

/// The key for credentials on one machine, made of a fixed text and the machine's unique id.
[[nodiscard]] QByteArray credentialsKey(const QString &text, const QByteArray &machineId);

/// Credentials as only the holder of the key can read them.
[[nodiscard]] QByteArray sealCredentials(const Credentials &credentials, const QByteArray &key);

/// Nothing when the bytes were not sealed with this key, whole, by sealCredentials().
[[nodiscard]] std::optional<Credentials> openCredentials(const QByteArray &sealed,
                                                         const QByteArray &key);
