// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/savesettings.h"

#include "base/messageboxcustom.h"
#include "base/programdata.h"

#include <QCoreApplication>
#include <QDir>

namespace {

struct SaveSettings
{
    Q_DECLARE_TR_FUNCTIONS(SaveSettings)
};

void apply(QSettings &settings, const QVariantMap &values)
{
    for (auto entry = values.begin(); entry != values.end(); ++entry) {
        if (entry->isValid())
            settings.setValue(entry.key(), *entry);
        else
            settings.remove(entry.key());
    }
}

QString failureText(const ProgramData &store, const QString &file)
{
    const QString text = SaveSettings::tr("The settings could not be saved to the file:\n\n%1")
                             .arg(QDir::toNativeSeparators(file));
    if (!store.isFirstSession())
        return text;
    return text + QStringLiteral("\n\n")
        + SaveSettings::tr(
               "At the very first start there is no folder for them yet. Choices in the "
               "settings hold until TEKO ends; from the next start on they can be saved.");
}

} // namespace

bool saveOrShowError(ProgramData &store, const QVariantMap &changes)
{
    QSettings &settings = store.settings();
    QVariantMap before;
    for (auto entry = changes.begin(); entry != changes.end(); ++entry)
        before.insert(entry.key(), settings.value(entry.key()));
    apply(settings, changes);
    if (store.saveSettings())
        return true;
    if (!store.isFirstSession())
        apply(settings, before);
    MessageBoxCustom::critical(SaveSettings::tr("Option Settings"),
                               failureText(store, settings.fileName()));
    return false;
}
