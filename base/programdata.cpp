// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/programdata.h"

#include "base/settingsfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMetaObject>
#include <QStandardPaths>

namespace {

QString folderOf(QStandardPaths::StandardLocation location)
{
    return QStringLiteral("%1/%2").arg(QStandardPaths::writableLocation(location),
                                       QCoreApplication::applicationName());
}

QString currentAppFolder()
{
    for (const QString &candidate : {documentsAppFolder(), localDataAppFolder()}) {
        if (QFileInfo::exists(candidate))
            return candidate;
    }
    return {};
}

} // namespace

QString documentsAppFolder()
{
    return folderOf(QStandardPaths::DocumentsLocation);
}

QString localDataAppFolder()
{
    return folderOf(QStandardPaths::AppLocalDataLocation);
}

ProgramData &ProgramData::instance()
{
    // On the very first run the path is "/teko.ini": the store, which decides about logging, is
    // created before the application folder. Later runs have the file in that folder.
    // Never destroyed: destructors of static objects may still log.
    static auto *store = new ProgramData(QStringLiteral("%1/teko.ini").arg(currentAppFolder()));
    return *store;
}

ProgramData::ProgramData(const QString &settingsFile)
    : m_credentialsText(QStringLiteral("TEKO credentials, sealed for this machine"))
    , m_isFirstSession(QFileInfo(settingsFile).dir().isRoot())
    , m_settings(settingsFile, QSettings::IniFormat)
{
    keepDamagedSettings(settingsFile);
}

bool ProgramData::saveSettings()
{
    return writeSettings(m_settings);
}

QString ProgramData::appFolder() const
{
    return currentAppFolder();
}

QString ProgramData::defaultVideoPlayer() const
{
    return text(SettingsKeys::videoPlayer);
}

QString ProgramData::defaultAudioPlayer() const
{
    return text(SettingsKeys::audioPlayer);
}

QString ProgramData::defaultVideoFormat() const
{
    return text(SettingsKeys::videoFormat);
}

QString ProgramData::defaultAudioFormat() const
{
    return text(SettingsKeys::audioFormat);
}

QString ProgramData::defaultInstrument() const
{
    return text(SettingsKeys::instrument);
}

QString ProgramData::defaultPathSave() const
{
    return folder(SettingsKeys::saveFolder);
}

QString ProgramData::defaultPathOpen() const
{
    return folder(SettingsKeys::openFolder);
}

QString ProgramData::defaultPathLogs() const
{
    return folder(SettingsKeys::logFolder);
}

QString ProgramData::defaultPathTemp() const
{
    return folder(SettingsKeys::tempFolder);
}

QString ProgramData::stringValue(const QString &key) const
{
    return m_settings.value(key).toString();
}

double ProgramData::guiScale() const
{
    return text(SettingsKeys::guiScale).toDouble();
}

bool ProgramData::isLoggingEnabled() const
{
    const auto &[name, fallback] = SettingsKeys::logging;
    return !isFirstSession() && m_settings.value(name, fallback).toBool();
}

ServiceEndpoints ProgramData::endpoints() const
{
    return m_endpointSource ? m_endpointSource() : ServiceEndpoints();
}

QString ProgramData::serviceName() const
{
    return m_local ? QString() : endpoints().base.toString();
}

void ProgramData::whenServiceStarted(QObject *context, std::function<void()> started) const
{
    if (m_startWaiter)
        m_startWaiter(context, std::move(started));
    else
        QMetaObject::invokeMethod(context, std::move(started), Qt::QueuedConnection);
}

QString ProgramData::text(const SettingsKey &key) const
{
    return m_settings.value(key.name, key.fallback).toString();
}

QString ProgramData::folder(const SettingsKey &key) const
{
    const QString parent = appFolder();
    // Without an application folder a default would be "/Temp", which must not be emptied.
    const QString standard = parent.isEmpty() ? QString() : parent + u'/' + key.fallback;
    const QString path =
        QDir::fromNativeSeparators(m_settings.value(key.name, standard).toString());
    if (!path.isEmpty() && !QFileInfo::exists(path))
        QDir().mkdir(path);
    return QFileInfo::exists(path) ? path : QString();
}
