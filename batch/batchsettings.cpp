// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "batch/batchsettings.h"

#include "base/settingskeys.h"

#include <QSettings>

void applyBatchOptions(const BatchOptions &options, const QSettings &user, QSettings &call)
{
    const QStringList keys = user.allKeys();
    for (const QString &key : keys)
        call.setValue(key, user.value(key));
    const auto choose = [&](const SettingsKey &key, const QString &value) {
        if (!value.isEmpty())
            call.setValue(key.name, value);
    };
    choose(SettingsKeys::instrument, options.instrument);
    choose(SettingsKeys::videoFormat, options.format);
    choose(SettingsKeys::audioFormat, options.format);
    choose(SettingsKeys::saveFolder, options.saveFolder);
}
