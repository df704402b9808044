// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/saveortell.h"

#include "base/messageboxcustom.h"
#include "base/programdata.h"

#include <QCoreApplication>
#include <QDir>

bool saveOrTell(ProgramData &store)
{
    if (store.saveSettings())
        return true;
    const QString file = QDir::toNativeSeparators(store.settings().fileName());
    MessageBoxCustom::critical(QCoreApplication::translate("Settings", "Option Settings"),
                               QCoreApplication::translate(
                                   "Settings", "The settings could not be saved to the file:\n\n%1")
                                   .arg(file));
    return false;
}
