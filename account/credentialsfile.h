// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "account/credentials.h"

/// The file "credentials.dat" in a folder, sealed with a key. Only its owner may read it.
class CredentialsFile final
{
public:
    /// With an empty folder nothing is stored.
    CredentialsFile(const QString &folder, const QByteArray &key);

    /// The stored credentials; empty when there is no file. A file that cannot be used is logged
    /// and renamed to "credentials.dat.damaged".
    [[nodiscard]] std::optional<Credentials> read() const;

    /// Replaces the file atomically. On failure logs it, leaves the old file and returns false.
    bool write(const Credentials &credentials) const;

    /// Like write(), but deletes the old file on failure.
    void overwrite(const Credentials &credentials) const;

private:
    [[nodiscard]] bool replaceWith(const QByteArray &content) const;
    void setAside() const;

    const QString m_path;
    const QByteArray m_key;
};
