// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/support/testmain.h"

#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <vector>

namespace {

const QString root = QStringLiteral(TEKO_ROOT);
const QStringList fourStates{QStringLiteral("-U"), QStringLiteral("-F"), QStringLiteral("-D"),
                             QStringLiteral("-X")};
const QStringList buttons{QStringLiteral("Help"),
                          QStringLiteral("My Account"),
                          QStringLiteral("Select File"),
                          QStringLiteral("guitar"),
                          QStringLiteral("Select File Small"),
                          QStringLiteral("Select Instrument"),
                          QStringLiteral("vocals"),
                          QStringLiteral("Output Format"),
                          QStringLiteral("Settings"),
                          QStringLiteral("piano"),
                          QStringLiteral("archive"),
                          QStringLiteral("home"),
                          QStringLiteral("bass"),
                          QStringLiteral("open in"),
                          QStringLiteral("drums")};
const QStringList eyes{QStringLiteral("password-visible"), QStringLiteral("password-hidden")};
const QStringList emblems{QStringLiteral("audio"), QStringLiteral("video"),
                          QStringLiteral("play"),  QStringLiteral("download"),
                          QStringLiteral("lock"),  QStringLiteral("process")};

QString pathOf(const QString &picture)
{
    return root + QStringLiteral("icons/") + picture + QStringLiteral(".svg");
}

QImage rendered(QSvgRenderer &renderer, QSize size, const QColor &ground)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(ground);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

/// What tells states apart without colour, at the size of the smallest button on the windows' dark
/// blue.
struct Tones
{
    int mean;
    int range;
};

Tones tonesOf(const QString &picture)
{
    QSvgRenderer renderer(pathOf(picture));
    const QImage image = rendered(renderer, QSize(30, 30), QColor(0x04, 0x2c, 0x58))
                             .convertToFormat(QImage::Format_Grayscale8);
    std::vector<int> tones;
    for (int y = 0; y < image.height(); ++y)
        tones.insert(tones.end(), image.scanLine(y), image.scanLine(y) + image.width());
    const auto [darkest, lightest] = std::ranges::minmax(tones);
    return {std::accumulate(tones.begin(), tones.end(), 0) / int(tones.size()), lightest - darkest};
}

/// Largest difference of a colour channel between two columns of an image.
int columnStep(const QImage &image, int left, int right)
{
    int step = 0;
    for (int y = 0; y < image.height(); ++y) {
        const QColor a = image.pixelColor(left, y);
        const QColor b = image.pixelColor(right, y);
        step = std::max({step, std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                         std::abs(a.blue() - b.blue())});
    }
    return step;
}

} // namespace

class IconsTest : public TestCase
{
    Q_OBJECT

private slots:
    void pictureIsWhole_data();
    void pictureIsWhole();
    void statesDifferWithoutColour_data();
    void statesDifferWithoutColour();
    void progressTileJoinsItself();
    void programIconHasEverySize();
};

void IconsTest::pictureIsWhole_data()
{
    QTest::addColumn<QString>("picture");
    const auto add = [](const QString &picture) { QTest::newRow(qPrintable(picture)) << picture; };
    for (const QString &state : fourStates) {
        for (const QString &name : buttons)
            add(name + state);
    }
    for (const QString &state : fourStates.first(3)) {
        for (const QString &name : eyes)
            add(name + state);
    }
    for (const QString &name : emblems)
        add(name);
}

void IconsTest::pictureIsWhole()
{
    QFETCH(QString, picture);
    QSvgRenderer renderer(pathOf(picture));
    QVERIFY(renderer.isValid());
    const bool wide = picture.startsWith(QStringLiteral("My Account"));
    QCOMPARE(renderer.defaultSize(), wide ? QSize(640, 128) : QSize(128, 128));

    // Seen through a window that is 10 units larger on each side, nothing may show in the margin.
    const QSize larger = renderer.defaultSize() + QSize(20, 20);
    renderer.setViewBox(QRect(QPoint(-10, -10), larger));
    QImage image = rendered(renderer, larger, Qt::transparent);
    QImage empty(larger, image.format());
    empty.fill(Qt::transparent);
    QVERIFY(image != empty);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.fillRect(image.rect().adjusted(10, 10, -10, -10), Qt::transparent);
    painter.end();
    QCOMPARE(image, empty);
}

void IconsTest::statesDifferWithoutColour_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("states");
    for (const QString &name : buttons)
        QTest::newRow(qPrintable(name)) << name << fourStates;
    for (const QString &name : eyes)
        QTest::newRow(qPrintable(name)) << name << fourStates.first(3);
}

void IconsTest::statesDifferWithoutColour()
{
    QFETCH(QString, name);
    QFETCH(QStringList, states);
    const Tones normal = tonesOf(name + states[0]);
    QVERIFY(tonesOf(name + states[1]).mean >= normal.mean + 25);
    QVERIFY(tonesOf(name + states[2]).mean <= normal.mean - 15);
    if (states.size() > 3)
        QVERIFY(tonesOf(name + states[3]).range <= normal.range * 7 / 10);
}

void IconsTest::progressTileJoinsItself()
{
    const QImage tile(root + QStringLiteral("icons/progress-item.png"));
    QVERIFY(!tile.isNull());
    QCOMPARE(tile.width() * 26, tile.height() * 32);
    int inside = 0;
    for (int x = 1; x < tile.width(); ++x)
        inside = std::max(inside, columnStep(tile, x - 1, x));
    QVERIFY(inside > 0);
    QVERIFY(columnStep(tile, tile.width() - 1, 0) <= inside);
}

void IconsTest::programIconHasEverySize()
{
    QImageReader reader(root + QStringLiteral("packaging/teko.ico"));
    QList<int> widths;
    for (int i = 0; i < reader.imageCount(); ++i) {
        QVERIFY(reader.jumpToImage(i));
        const QImage image = reader.read();
        QCOMPARE(image.width(), image.height());
        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
        QVERIFY(image.pixelColor(image.width() / 2, image.height() / 4).red() > 200);
        widths << image.width();
    }
    QCOMPARE(widths, (QList<int>{16, 24, 32, 48, 64, 128, 256}));
    QVERIFY(QSvgRenderer(root + QStringLiteral("packaging/teko.svg")).isValid());
}

TEKO_TEST_MAIN(IconsTest)
#include "tst_icons.moc"
