// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/frozenfile.h"

#include <QFileInfo>

FrozenFile::FrozenFile(const QString &path, QObject *parent)
    : QIODevice(parent)
    , m_file(path)
{ }

bool FrozenFile::open(OpenMode mode)
{
    if (mode != ReadOnly || !QFileInfo(m_file).isFile() || !m_file.open(ReadOnly | Unbuffered)) {
        setErrorString(m_file.errorString());
        return false;
    }
    m_size = m_file.size();
    return QIODevice::open(ReadOnly | Unbuffered);
}

bool FrozenFile::seek(qint64 position)
{
    return position <= m_size && QIODevice::seek(position) && m_file.seek(position);
}

bool FrozenFile::reset()
{
    return !m_wasRead && seek(0);
}

void FrozenFile::release()
{
    m_file.close();
}

qint64 FrozenFile::readData(char *data, qint64 maxSize)
{
    m_wasRead = m_wasRead || maxSize > 0;
    const qint64 wanted = qMin(maxSize, m_size - pos());
    if (wanted <= 0)
        return 0;
    // A request that was aborted may still call read().
    if (!m_file.isOpen())
        return fail(tr("The file is no longer being read."));
    const qint64 got = m_file.read(data, wanted);
    if (got < 0)
        return fail(m_file.errorString());
    if (got == 0)
        return fail(tr("The file became shorter while it was being read."));
    // On Windows an open file cannot be removed, and the reply may take long.
    if (pos() + got == m_size)
        m_file.close();
    return got;
}

qint64 FrozenFile::writeData(const char *, qint64)
{
    return -1;
}

qint64 FrozenFile::fail(const QString &reason)
{
    m_hasFailed = true;
    setErrorString(reason);
    return -1;
}
