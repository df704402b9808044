// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "settings/settings.h"

#include "base/guiscale.h"
#include "base/programdata.h"
#include "base/savesettings.h"
#include "settings/siblingprograms.h"

#include <QDebug>
#include <QDir>
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

// A value that the user did not change is not stored if it differs from the file: an empty field
// may stand for a folder that is temporarily unavailable, and another running program may have
// stored a new value.
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
    showStoredSettings();
    show();
    raise();
    emit loaded();
}

void Settings::showStoredSettings()
{
    loadProgramSettings();
    showScale(m_store.guiScale());
    emit setProgramSettings(QVariant(m_programSettings));
}

void Settings::loadProgramSettings()
{
    m_programSettings = storedSettings();
}

QVariantMap Settings::storedSettings() const
{
    using namespace SettingsKeys;
    return {{openFolder.name, QDir::toNativeSeparators(m_store.defaultPathOpen())},
            {saveFolder.name, QDir::toNativeSeparators(m_store.defaultPathSave())},
            {videoFormat.name, m_store.defaultVideoFormat()},
            {audioFormat.name, m_store.defaultAudioFormat()},
            {instrument.name, m_store.defaultInstrument()},
            {videoPlayer.name, m_store.defaultVideoPlayer()},
            {audioPlayer.name, m_store.defaultAudioPlayer()}};
}

void Settings::saveScf(double scf)
{
    qInfo() << "Settings::saveScf" << scf;
    showScale(scf);
    if (!saveOrShowError(m_store, {{SettingsKeys::guiScale.name, scf}}))
        showScale(m_store.guiScale());
}

void Settings::showScale(double scf)
{
    const double usable = usableGuiScale(scf);
    applyScale(usable);
    setViewProperty("storedScf", usable);
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
    QVariantMap removed{{SettingsKeys::guiScale.name, {}}};
    for (const SettingsKey &key : SettingsKeys::edited)
        removed.insert(key.name, {});
    saveOrShowError(m_store, removed);
    showStoredSettings();
}

void Settings::save(const QVariant &values)
{
    qInfo() << "Settings::save";
    m_store.settings().sync();
    const QVariantMap stored = storedSettings();
    QVariantMap changes;
    const QVariantMap map = mapFromView(values);
    for (auto entry = map.begin(); entry != map.end(); ++entry) {
        const QString &key = entry.key();
        if (isToStore(entry->toString(), m_programSettings.value(key), stored.value(key)))
            changes.insert(key, entry.value());
    }
    // After a failed save the window keeps the input, except in a first session, which can never
    // save it.
    if (saveOrShowError(m_store, changes) || m_store.isFirstSession())
        closeWindow();
}

void Settings::chooseNewPath(const QString &settingsKey, const QString &path)
{
    qInfo() << "Settings::chooseNewPath" << settingsKey;
    const QString chosen =
        QDir::toNativeSeparators(m_dialogs.chooseFolder(tr("Please Select a new folder"), path));
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
    saveOrShowError(m_store, {{key, path}});
}
