// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/filedialogs.h"
#include "base/viewwindow.h"

#include <QVariantMap>

class ProgramData;

/// The settings window: shows the stored values in its view and writes back what the user chose. A
/// value that cannot be stored is reported in a message box. GUI thread only.
class Settings final : public ViewWindow
{
    Q_OBJECT

public:
    /// The store must outlive the window.
    explicit Settings(ProgramData &store, FileDialogs dialogs = FileDialogs::system());

    /// Shows the window with what the store holds now.
    void openWindow();

    /// Reads what the view edits from the store.
    void loadProgramSettings();

    /// Where a sibling program is installed; empty when it is in none of the usual places.
    [[nodiscard]] QString findAppPath(const QString &name) const;

signals:
    /// The window has closed.
    void showParent();
    void setProgramSettings(QVariant data);
    void loaded();
    /// No program was found: the box of "audio" or else of "video" goes back to the system's
    /// player.
    void resetOpening(QString field);
    void updatePathField(QString path, QString key);

public slots:
    void saveScf(double scf);
    void cancel();
    void defaultSettings();
    /// Makes sure that a player which the user picked can be found, asking them where it is if need
    /// be.
    void checkPathIsExisted(QString key, const QString &field);
    void chooseNewPath(const QString &settingsKey, const QString &path);
    /// Stores what the user chose and closes the window, which stays when that fails.
    void save(const QVariant &values);

protected:
    void windowClosed() override;

private:
    void connectRoot();
    [[nodiscard]] QString findNewest(const QString &key) const;
    [[nodiscard]] QVariantMap storedSettings() const;
    void showStoredSettings();

    ProgramData &m_store;
    const FileDialogs m_dialogs;
    QVariantMap m_programSettings; ///< what the view was given
};
