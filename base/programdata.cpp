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
    // On the very first run there is no application folder yet and this is "/teko.ini", on purpose.
    // Left alive at exit: destructors of static objects may still log.
    static auto *store = new ProgramData(QStringLiteral("%1/teko.ini").arg(currentAppFolder()));
    return *store;
}

ProgramData::ProgramData(const QString &settingsFile)
    : m_credentialsText(QStringLiteral("TEKO credentials, sealed for this machine"))
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
    return m_settings.value("default_video_player", QStringLiteral("Default Video Player"))
        .toString();
}

QString ProgramData::defaultAudioPlayer() const
{
    return m_settings.value("default_audio_player", QStringLiteral("Default Audio Player"))
        .toString();
}

QString ProgramData::defaultVideoFormat() const
{
    return m_settings.value("default_video_format", QStringLiteral("none")).toString();
}

QString ProgramData::defaultAudioFormat() const
{
    return m_settings.value("default_audio_format", QStringLiteral("none")).toString();
}

QString ProgramData::defaultInstrument() const
{
    return m_settings.value("default_instrument", QStringLiteral("none")).toString();
}

QString ProgramData::defaultPathSave() const
{
    return folder(QStringLiteral("default_path_save"), QStringLiteral("Save"));
}

QString ProgramData::defaultPathOpen() const
{
    return folder(QStringLiteral("default_path_open"), QStringLiteral("Audio"));
}

QString ProgramData::defaultPathLogs() const
{
    return folder(QStringLiteral("default_path_logs"), QStringLiteral("Logs"));
}

QString ProgramData::defaultPathTemp() const
{
    return folder(QStringLiteral("default_path_temp"), QStringLiteral("Temp"));
}

QString ProgramData::stringValue(const QString &key) const
{
    return m_settings.value(key).toString();
}

double ProgramData::guiScale() const
{
    return m_settings.value("settings_gui_scale", QStringLiteral("1")).toDouble();
}

ServiceEndpoints ProgramData::endpoints() const
{
    return m_endpointSource ? m_endpointSource() : ServiceEndpoints();
}

void ProgramData::whenServiceStarted(QObject *context, std::function<void()> started) const
{
    if (m_startWaiter)
        m_startWaiter(context, std::move(started));
    else
        QMetaObject::invokeMethod(context, std::move(started), Qt::QueuedConnection);
}

QString ProgramData::folder(const QString &key, const QString &name) const
{
    const QString standard = QStringLiteral("%1/%2").arg(appFolder(), name);
    const QString path = m_settings.value(key, standard).toString();
    if (!path.isEmpty() && !QFileInfo::exists(path))
        QDir().mkdir(path);
    return QFileInfo::exists(path) ? path : QString();
}
