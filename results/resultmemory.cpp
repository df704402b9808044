// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "results/resultmemory.h"

#include "base/programdata.h"

#include <QFileInfo>
#include <QUrl>

namespace {

constexpr qsizetype maxKeys = 2000;

QString withExtension(const QString &path, const QString &extension)
{
    const QFileInfo file(path);
    return QStringLiteral("%1/%2.%3").arg(file.path(), file.completeBaseName(), extension);
}

} // namespace

ResultMemory::ResultMemory(const ProgramData &store)
    : m_store(store)
    , m_file(store.appFolder() + QStringLiteral("/results.ini"), QSettings::IniFormat)
{ }

void ResultMemory::remember(int jobId, const ResultPaths &paths)
{
    if (m_store.appFolder().isEmpty())
        return;
    if (m_file.allKeys().size() >= maxKeys)
        forgetRemovedResults();
    m_file.setValue(key(jobId, "main"), paths.main);
    m_file.setValue(key(jobId, "mix"), paths.mix);
    m_file.sync();
}

std::optional<ResultPaths> ResultMemory::find(int jobId, const QString &extension) const
{
    const QString main = m_file.value(key(jobId, "main")).toString();
    const QString mix = m_file.value(key(jobId, "mix")).toString();
    if (main.isEmpty() || mix.isEmpty() || !QFileInfo::exists(QFileInfo(main).path()))
        return {};
    return ResultPaths{withExtension(main, extension), withExtension(mix, extension)};
}

QString ResultMemory::key(int jobId, const char *which) const
{
    // An address has slashes, which separate groups in a settings file.
    const QString service = QString::fromLatin1(QUrl::toPercentEncoding(m_store.serviceName()));
    return QStringLiteral("%1/%2/%3")
        .arg(service.isEmpty() ? QStringLiteral("local") : service)
        .arg(jobId)
        .arg(QLatin1String(which));
}

void ResultMemory::forgetRemovedResults()
{
    const QStringList keys = m_file.allKeys();
    for (const QString &each : keys) {
        if (!QFileInfo::exists(m_file.value(each).toString()))
            m_file.remove(each);
    }
}
