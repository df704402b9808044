// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/credentialsfile.h"

#include <QDebug>
#include <QFile>
#include <QSaveFile>

namespace {

/// Far more than credentials need.
constexpr qint64 maxBytes = 0x10000;

QString pathIn(const QString &folder)
{
    return folder.isEmpty() ? QString() : folder + QStringLiteral("/credentials.dat");
}

} // namespace

CredentialsFile::CredentialsFile(const QString &folder, const QByteArray &key)
    : m_path(pathIn(folder))
    , m_key(key)
{ }

std::optional<Credentials> CredentialsFile::read() const
{
    QFile file(m_path);
    if (m_path.isEmpty() || !file.exists())
        return {};
    std::optional<Credentials> credentials;
    if (file.open(QIODevice::ReadOnly))
        credentials = openCredentials(file.read(maxBytes), m_key);
    file.close();
    if (!credentials)
        setAside();
    return credentials;
}

void CredentialsFile::setAside() const
{
    const QString aside = m_path + QStringLiteral(".damaged");
    QFile::remove(aside);
    const bool isMoved = QFile::rename(m_path, aside);
    qCritical().noquote() << "The credentials file cannot be used"
                          << (isMoved ? "and is kept aside:" : "and cannot be moved away:")
                          << m_path;
}

bool CredentialsFile::write(const Credentials &credentials) const
{
    if (!m_path.isEmpty() && replaceWith(sealCredentials(credentials, m_key)))
        return true;
    qCritical().noquote() << "The credentials file cannot be written:" << m_path;
    return false;
}

void CredentialsFile::overwrite(const Credentials &credentials) const
{
    if (write(credentials) || m_path.isEmpty() || !QFile::remove(m_path))
        return;
    // Removing the old file has made room on a full disk.
    write(credentials);
}

bool CredentialsFile::replaceWith(const QByteArray &content) const
{
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly)
        || !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner))
        return false;
    // commit() alone reports success for an unflushed file on a full disk (QTBUG-75077).
    return file.write(content) == content.size() && file.flush() && file.commit();
}
