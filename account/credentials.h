// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The stored part of the last sign-in, without the password.
struct Credentials
{
    QString publicKey; ///< identifies this installation
    QString email;
    QString hash; ///< empty: nobody is signed in
    QString accessToken;
    bool hasSignedOut = false; ///< signed out explicitly: do not sign in automatically
    QString service; ///< address of the service; empty: the embedded one

    bool operator==(const Credentials &) const = default;
};

/// The key for credentials on one machine, derived from a fixed text and the machine's unique id.
[[nodiscard]] QByteArray credentialsKey(const QString &text, const QByteArray &machineId);

/// The credentials encrypted with the key.
[[nodiscard]] QByteArray sealCredentials(const Credentials &credentials, const QByteArray &key);

/// Decrypts the result of sealCredentials(). Empty for another key and for damaged bytes.
[[nodiscard]] std::optional<Credentials> openCredentials(const QByteArray &sealed,
                                                         const QByteArray &key);
