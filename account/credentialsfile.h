// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "account/credentials.h"

/// The file "credentials.dat" in a folder, sealed with a key. Only its owner may read it.
class CredentialsFile final
{
public:
    /// Without a folder nothing is kept.
    CredentialsFile(const QString &folder, const QByteArray &key);

    /// What was kept; nothing while there is no file. A file that cannot be used is logged and set
    /// aside as "credentials.dat.damaged".
    [[nodiscard]] std::optional<Credentials> read() const;

    /// Replaces the file as a whole; false, with the old file untouched and a line in the log, when
    /// that cannot be done.
    bool write(const Credentials &credentials) const;

    /// write() that rather loses the old file than keep what it holds.
    void overwrite(const Credentials &credentials) const;

private:
    [[nodiscard]] bool replaceWith(const QByteArray &content) const;
    void setAside() const;

    const QString m_path;
    const QByteArray m_key;
};
