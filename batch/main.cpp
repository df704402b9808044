// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/application.h"
#include "batch/batch.h"
#include "batch/console.h"

#include <QApplication>

int main(int argc, char **argv)
{
    quietPlatform();
    nameApplication();
    if (!hasDisplay() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return runBatch(QApplication::arguments());
}
