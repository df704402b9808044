// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/support/testmain.h"

#include <QApplication>
#include <QQuickStyle>
#include <QtQuickTest>

// The views are tested as the program shows them: in its style and out of its resources.
int main(int argc, char **argv)
{
    const ScratchHome home;
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    const QApplication app(argc, argv);
    return quick_test_main(argc, argv, "views", TEKO_QML_TESTS);
}
