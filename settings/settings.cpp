// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "settings/settings.h"

#include "base/guiscale.h"
#include "base/programdata.h"
#include "base/saveortell.h"
#include "settings/siblingprograms.h"

#include <QDebug>
#include <QFile>
#include <QJSValue>
#include <QQuickItem>

#include <algorithm>

namespace {

// A map from the view arrives as a script value.
QVariantMap mapFromView(const QVariant &data)
{
    if (data.metaType() == QMetaType::fromType<QJSValue>())
        return data.value<QJSValue>().toVariant().toMap();
    return data.toMap();
}

// What the user left alone is stored only while that changes nothing: an empty field stands for a
// folder that is not available now and may be tomorrow, and another running program may have stored
// something else since.
bool isToStore(const QString &value, const QVariant &shown, const QVariant &stored)
{
    return value != shown.toString() || (!value.isEmpty() && value == stored.toString());
}

} // namespace

Settings::Settings(ProgramData &store, FileDialogs dialogs)
    : ViewWindow(tr("Option Settings"), QUrl(QStringLiteral("qrc:/qml/Settings.qml")),
                 QSize(540, 670), Sizing::Fixed)
    , m_store(store)
    , m_dialogs(std::move(dialogs))
{
    connectRoot();
}

void Settings::connectRoot()
{
    connectToView(SIGNAL(setProgramSettings(QVariant)), SIGNAL(setProgramSettings(QVariant)));
    connectToView(SIGNAL(loaded()), SIGNAL(loaded()));
    connectToView(SIGNAL(resetOpening(QString)), SIGNAL(resetOpening(QString)));
    connectToView(SIGNAL(updatePathField(QString, QString)),
                  SIGNAL(updatePathField(QString, QString)));
    connectView(SIGNAL(saveScf(double)), SLOT(saveScf(double)));
    connectView(SIGNAL(cancel()), SLOT(cancel()));
    connectView(SIGNAL(defaultSettings()), SLOT(defaultSettings()));
    connectView(SIGNAL(chooseNewPath(QString, QString)), SLOT(chooseNewPath(QString, QString)));
    connectView(SIGNAL(checkPathIsExisted(QString, QString)),
                SLOT(checkPathIsExisted(QString, QString)));
    connectView(SIGNAL(save(QVariant)), SLOT(save(QVariant)));
}

void Settings::openWindow()
{
    qInfo() << "Settings::openWindow";
    m_store.settings().sync();
    loadProgramSettings();
    applyScale(usableGuiScale(m_store.guiScale()));
    emit setProgramSettings(QVariant(m_programSettings));
    show();
    raise();
    emit loaded();
}

void Settings::loadProgramSettings()
{
    m_programSettings = storedSettings();
}

QVariantMap Settings::storedSettings() const
{
    return {
        {QStringLiteral("default_path_open"), m_store.defaultPathOpen()},
        {QStringLiteral("default_path_save"), m_store.defaultPathSave()},
        {QStringLiteral("default_video_format"), m_store.defaultVideoFormat()},
        {QStringLiteral("default_audio_format"), m_store.defaultAudioFormat()},
        {QStringLiteral("default_instrument"), m_store.defaultInstrument()},
        {QStringLiteral("default_video_player"), m_store.defaultVideoPlayer()},
        {QStringLiteral("default_audio_player"), m_store.defaultAudioPlayer()},
    };
}

void Settings::saveScf(double scf)
{
    qInfo() << "Settings::saveScf" << scf;
    m_store.settings().setValue("settings_gui_scale", scf);
    applyScale(usableGuiScale(scf));
    saveOrTell(m_store);
}

void Settings::cancel()
{
    qInfo() << "Settings::cancel";
    closeWindow();
}

void Settings::windowClosed()
{
    emit showParent();
}

void Settings::defaultSettings()
{
    qInfo() << "Settings::defaultSettings";
    for (const char *key : {"default_path_open", "default_path_save", "default_video_format",
                            "default_audio_format", "default_instrument", "default_video_player",
                            "default_audio_player", "settings_gui_scale"})
        m_store.settings().remove(QLatin1String(key));
    loadProgramSettings();
    emit setProgramSettings(QVariant(m_programSettings));
    applyScale(usableGuiScale(m_store.guiScale()));
    saveOrTell(m_store);
}

void Settings::save(const QVariant &values)
{
    qInfo() << "Settings::save";
    m_store.settings().sync();
    const QVariantMap stored = storedSettings();
    const QVariantMap map = mapFromView(values);
    for (auto entry = map.begin(); entry != map.end(); ++entry) {
        const QString &key = entry.key();
        if (isToStore(entry->toString(), m_programSettings.value(key), stored.value(key)))
            m_store.settings().setValue(key, entry.value());
    }
    if (saveOrTell(m_store))
        closeWindow();
}

void Settings::chooseNewPath(const QString &settingsKey, const QString &path)
{
    qInfo() << "Settings::chooseNewPath" << settingsKey;
    const QString chosen = m_dialogs.chooseFolder(tr("Please Select a new folder"), path);
    if (!chosen.isEmpty() && chosen != path)
        emit updatePathField(chosen, settingsKey);
}

QString Settings::findAppPath(const QString &name) const
{
    const QStringList candidates = siblingCandidates(name);
    const auto found =
        std::ranges::find_if(candidates, [](const QString &path) { return QFile::exists(path); });
    return found == candidates.end() ? QString() : *found;
}

QString Settings::findNewest(const QString &key) const
{
    const QStringList versions = siblingVersions(key);
    for (const QString &version : versions) {
        if (QString path = findAppPath(version); !path.isEmpty())
            return path;
    }
    return {};
}

void Settings::checkPathIsExisted(QString key, const QString &field)
{
    qInfo() << "Settings::checkPathIsExisted" << key << field;
    const QString name = key;
    key.remove(QLatin1Char(' '));
    if (key == QStringLiteral("DefaultAudioPlayer") || key == QStringLiteral("DefaultVideoPlayer"))
        return;
    if (const QString stored = m_store.stringValue(key); !stored.isEmpty() && QFile::exists(stored))
        return;
    QString path = findNewest(key);
    if (path.isEmpty()) {
        path = m_dialogs.chooseFile(tr("Please select where %1 installed").arg(name),
                                    QStringLiteral("C:/Program Files/"),
                                    tr("%1 exe file (*.exe)").arg(name));
    }
    if (!QFile::exists(path)) {
        emit resetOpening(field);
        return;
    }
    m_store.settings().setValue(key, path);
    saveOrTell(m_store);
}
