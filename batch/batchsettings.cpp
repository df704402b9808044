// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "batch/batchsettings.h"

#include <QSettings>

void applyBatchOptions(const BatchOptions &options, const QSettings &user, QSettings &call)
{
    const QStringList keys = user.allKeys();
    for (const QString &key : keys)
        call.setValue(key, user.value(key));
    const auto choose = [&](const char *key, const QString &value) {
        if (!value.isEmpty())
            call.setValue(QLatin1String(key), value);
    };
    choose("default_instrument", options.instrument);
    choose("default_video_format", options.format);
    choose("default_audio_format", options.format);
    choose("default_path_save", options.saveFolder);
}
