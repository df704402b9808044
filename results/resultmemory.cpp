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

QString movedTo(const QString &folder, const QString &path)
{
    return folder + u'/' + QFileInfo(path).fileName();
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

std::optional<ResultPaths> ResultMemory::find(int jobId, const QString &extension,
                                              const QString &folder) const
{
    const QString main = m_file.value(key(jobId, "main")).toString();
    const QString mix = m_file.value(key(jobId, "mix")).toString();
    if (main.isEmpty() || mix.isEmpty())
        return {};
    const bool isThere = QFileInfo::exists(main) || QFileInfo::exists(mix);
    return ResultPaths{pathOf(jobId, isThere ? main : movedTo(folder, main), extension),
                       pathOf(jobId, isThere ? mix : movedTo(folder, mix), extension)};
}

QString ResultMemory::pathOf(int jobId, const QString &wanted, const QString &extension) const
{
    QString path = variantOf(wanted, extension, 0);
    for (int number = 1; isAnothers(jobId, path); ++number)
        path = variantOf(wanted, extension, number);
    return path;
}

bool ResultMemory::isAnothers(int jobId, const QString &path) const
{
    const auto isHere = [&](const QString &each) { return m_file.value(each).toString() == path; };
    const QStringList own{key(jobId, "main"), key(jobId, "mix")};
    const QStringList keys = m_file.allKeys();
    return std::none_of(own.begin(), own.end(), isHere)
        && std::any_of(keys.begin(), keys.end(), isHere);
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
