// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <vector>

namespace {

const QString root = TEKO_ROOT;
const QStringList buttons{
    "Help",   "My Account",    "Select File", "guitar", "Select File Small", "Select Instrument",
    "vocals", "Output Format", "Settings",    "piano",  "archive",           "home",
    "bass",   "open in",       "drums"};
const QStringList eyes{"password-visible", "password-hidden"};
const QStringList emblems{"audio", "video", "play", "download", "lock", "process"};

QString pathOf(const QString &picture)
{
    return root + "icons/" + picture + ".svg";
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
    void pictureIsWhole_data()
    {
        QStringList names = emblems;
        for (const char *state : {"-U", "-F", "-D", "-X"}) {
            for (const QString &name : state == QByteArray("-X") ? buttons : buttons + eyes)
                names << name + state;
        }
        addNames(names);
    }

    void pictureIsWhole()
    {
        QFETCH(QString, name);
        QSvgRenderer renderer(pathOf(name));
        QVERIFY(renderer.isValid());
        const bool wide = name.startsWith("My Account");
        QCOMPARE(renderer.defaultSize(), wide ? QSize(640, 128) : QSize(128, 128));

        // Seen through a window that is 10 units larger on each side, nothing may show in the
        // margin.
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

    void statesDifferWithoutColour_data() { addNames(buttons + eyes); }

    void statesDifferWithoutColour()
    {
        QFETCH(QString, name);
        const Tones normal = tonesOf(name + "-U");
        QVERIFY(tonesOf(name + "-F").mean >= normal.mean + 25);
        QVERIFY(tonesOf(name + "-D").mean <= normal.mean - 15);
        if (buttons.contains(name))
            QVERIFY(tonesOf(name + "-X").range <= normal.range * 7 / 10);
    }

    void progressTileJoinsItself()
    {
        const QImage tile(root + "icons/progress-item.png");
        QVERIFY(!tile.isNull());
        QCOMPARE(tile.width() * 26, tile.height() * 32);
        int inside = 0;
        for (int x = 1; x < tile.width(); ++x)
            inside = std::max(inside, columnStep(tile, x - 1, x));
        QVERIFY(inside > 0);
        QVERIFY(columnStep(tile, tile.width() - 1, 0) <= inside);
    }

    void programIconHasEverySize()
    {
        QImageReader reader(root + "packaging/teko.ico");
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
        QVERIFY(QSvgRenderer(root + "packaging/teko.svg").isValid());
    }
};

TEKO_TEST_MAIN(IconsTest)
#include "tst_icons.moc"
