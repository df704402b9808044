// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/filedialogs.h"
#include "base/viewwindow.h"

#include <QVariantMap>

class ProgramData;

/// The settings window: shows the stored values in its view and stores the user's changes. A failed
/// save is reported in a message box. GUI thread only.
class Settings final : public ViewWindow
{
    Q_OBJECT

public:
    /// The store must outlive the window.
    explicit Settings(ProgramData &store, FileDialogs dialogs = FileDialogs::system());

    /// Shows the window with the stored values.
    void openWindow();

    /// Reads the values that the view edits from the store.
    void loadProgramSettings();

    /// Where a sibling program is installed; empty when it is in none of the usual places.
    [[nodiscard]] QString findAppPath(const QString &name) const;

signals:
    /// The window has closed.
    void showParent();
    /// The values to show, a map by settings key.
    void setProgramSettings(QVariant data);
    /// The window is shown.
    void loaded();
    /// No program was found: the box of "audio" or "video" is reset to the system's player.
    void resetOpening(QString field);
    /// The user has chosen this folder for that settings key.
    void updatePathField(QString path, QString key);

public slots:
    /// Applies and stores the interface scale.
    void saveScf(double scf);
    /// Closes the window without storing.
    void cancel();
    /// Removes all edited values and the scale from the settings file and shows the defaults.
    void defaultSettings();
    /// Finds the program of the player with the display name `key`, asking the user for its path if
    /// necessary, and stores it. Emits resetOpening(field) when there is none.
    void checkPathIsExisted(QString key, const QString &field);
    /// Lets the user choose a folder, starting at `path`; emits updatePathField() for a new one.
    void chooseNewPath(const QString &settingsKey, const QString &path);
    /// Stores the changed values of a map by settings key and closes the window. When saving fails,
    /// the window stays open.
    void save(const QVariant &values);

protected:
    void windowClosed() override;

private:
    void connectRoot();
    [[nodiscard]] QString findNewest(const QString &key) const;
    [[nodiscard]] QVariantMap storedSettings() const;
    void showStoredSettings();
    void showScale(double scf);

    ProgramData &m_store;
    const FileDialogs m_dialogs;
    QVariantMap m_programSettings; ///< the values that the view was given
};
