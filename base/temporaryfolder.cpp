// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/temporaryfolder.h"

#include <QDir>
#include <QUuid>

namespace {

QString lockName(const QString &id)
{
    return QStringLiteral(".teko-%1.lock").arg(id);
}

} // namespace

TemporaryFolder::TemporaryFolder(const QString &path)
    : m_path(path)
    , m_lock(path + u'/' + lockName(QUuid::createUuid().toString(QUuid::Id128)))
{
    // Never too old: only the end of its program makes a lock void.
    m_lock.setStaleLockTime(0);
    if (!m_path.isEmpty())
        m_lock.tryLock(0);
}

void TemporaryFolder::clear()
{
    m_lock.unlock();
    if (m_path.isEmpty() || isUsedByOthers())
        return;
    const QDir folder(m_path);
    const QStringList names =
        folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &name : names)
        QFile::remove(folder.filePath(name));
}

bool TemporaryFolder::isUsedByOthers() const
{
    const QDir folder(m_path);
    const QStringList locks =
        folder.entryList({lockName(QStringLiteral("*"))}, QDir::Files | QDir::Hidden);
    for (const QString &name : locks) {
        // The lock of a program that has crashed can be taken, and is removed by that.
        QLockFile lock(folder.filePath(name));
        lock.setStaleLockTime(0);
        if (!lock.tryLock(0) && lock.error() == QLockFile::LockFailedError)
            return true;
    }
    return false;
}
