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
    , m_lockName(lockName(QUuid::createUuid().toString(QUuid::Id128)))
    , m_lock(path + u'/' + m_lockName)
{
    if (m_path.isEmpty())
        return;
    // Never too old: only the end of its program makes a lock void.
    m_lock.setStaleLockTime(0);
    m_lock.tryLock(0);
    removeFiles();
}

void TemporaryFolder::clear()
{
    removeFiles();
    m_lock.unlock();
}

void TemporaryFolder::removeFiles() const
{
    if (m_path.isEmpty() || isUsedByOthers())
        return;
    const QDir folder(m_path);
    const QStringList names =
        folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        if (name != m_lockName)
            QFile::remove(folder.filePath(name));
    }
}

bool TemporaryFolder::isUsedByOthers() const
{
    const QDir folder(m_path);
    QStringList locks =
        folder.entryList({lockName(QStringLiteral("*"))}, QDir::Files | QDir::Hidden);
    locks.removeOne(m_lockName);
    for (const QString &name : std::as_const(locks)) {
        // The lock of a program that has crashed can be taken, and is removed by that.
        QLockFile lock(folder.filePath(name));
        lock.setStaleLockTime(0);
        if (!lock.tryLock(0) && lock.error() == QLockFile::LockFailedError)
            return true;
    }
    return false;
}
