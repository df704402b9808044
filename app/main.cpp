// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "app/startup.h"
#include "base/application.h"

#include <QApplication>

int main(int argc, char **argv)
{
    nameApplication();
    registerBackendTypes();
    QApplication app(argc, argv);
    return runProgram(QApplication::arguments());
}
