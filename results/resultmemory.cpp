// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "results/resultmemory.h"

#include "base/programdata.h"

#include <QFileInfo>
#include <QUrl>

#include <algorithm>

namespace {

constexpr qsizetype maxKeys = 2000;

/// A path with another extension and, above 0, a number.
QString variantOf(const QString &path, const QString &extension, int number)
{
    const QFileInfo file(path);
    const QString suffix = number > 0 ? QStringLiteral(" (%1)").arg(number) : QString();
    return file.path() + u'/' + file.completeBaseName() + suffix + u'.' + extension;
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
    return ResultPaths{pathOf(jobId, main, extension), pathOf(jobId, mix, extension)};
}

QString ResultMemory::pathOf(int jobId, const QString &saved, const QString &extension) const
{
    QString path = variantOf(saved, extension, 0);
    for (int number = 1; path != saved && isAnothers(jobId, path); ++number)
        path = variantOf(saved, extension, number);
    return path;
}

bool ResultMemory::isAnothers(int jobId, const QString &path) const
{
    const QStringList own{key(jobId, "main"), key(jobId, "mix")};
    const QStringList keys = m_file.allKeys();
    return std::any_of(keys.begin(), keys.end(), [&](const QString &each) {
        return !own.contains(each) && m_file.value(each).toString() == path;
    });
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
