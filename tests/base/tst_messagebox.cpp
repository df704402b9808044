// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/messageboxcustom.h"
#include "base/windowplace.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>

class TestMessageBox : public TestCase
{
    Q_OBJECT

private slots:
    /// A service may answer anything; a box shows it letter by letter.
    void showsPlainText()
    {
        QTimer::singleShot(0, this, [] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QVERIFY(box);
            QCOMPARE(box->textFormat(), Qt::PlainText);
            QCOMPARE(box->font().family(), "Segoe UI");
            QCOMPARE(box->font().pixelSize(), 12);
            QCOMPARE(box->icon(), QMessageBox::Critical);
            box->done(QMessageBox::Ok);
        });
        QCOMPARE(MessageBoxCustom::critical("Title", "<b>No</b> <img src=\"http://x/y\">"),
                 QMessageBox::Ok);
    }

    void places_data()
    {
        const Rows<QRect, QPoint> add;
        add("over the middle", QRect(400, 400, 200, 200), QPoint(350, 375));
        add("not beyond the right edge", QRect(900, 400, 200, 200), QPoint(700, 375));
        add("not above the top", QRect(400, 0, 200, 20), QPoint(350, 10));
        add("its title bar in reach", QRect(0, 900, 10, 10), QPoint(0, 750));
    }

    /// Where a window of 300 × 250 comes on a screen of 1000 × 990 below a panel.
    void places()
    {
        const auto [other, place] = fetchRow<QRect, QPoint>();
        const QRect space(0, 10, 1000, 990);
        QCOMPARE(placeOver(other, QSize(300, 250), space), place);
        QCOMPARE(placeWithin(QRect(5, 5, 2000, 2000), space), QPoint(0, 10));
    }
};

TEKO_TEST(TestMessageBox)
#include "tst_messagebox.moc"
