#include "display/GridPainter.h"
#include "display/MonitorPicture.h"

#include <QtTest>

class GridPainterTest : public QObject
{
    Q_OBJECT

    /// Paper of 4 pixels a millimetre on a plain screen.
    static QImage grid(GridStyle style, double ratio, const QColor& color = Qt::red)
    {
        QPixmap pixmap(static_cast<int>(200 * ratio), static_cast<int>(100 * ratio));
        pixmap.setDevicePixelRatio(ratio);
        const auto scale = PageScale::of(pixmap.size(), 50.0 * ratio, ratio);
        paintGrid(pixmap, scale, style, {Qt::white, color});
        return pixmap.toImage();
    }

private Q_SLOTS:
    void dottedPaperHasPointsEveryMillimetre()
    {
        const QImage image = grid(GridStyle::dotted, 1.0);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const bool line = x % 20 == 0 || y % 20 == 0;
                const bool point = x % 4 == 0 && y % 4 == 0;
                QCOMPARE(isColor(image, x, y, Qt::red), line || point);
            }
        }
    }

    void pictureKeepsItsDevicePixelRatio()
    {
        QPixmap pixmap(300, 150);
        pixmap.setDevicePixelRatio(1.5);
        paintGrid(pixmap, PageScale::of(pixmap, 1.5), GridStyle::dotted, {Qt::white, Qt::red});
        QCOMPARE(pixmap.devicePixelRatio(), 1.5);
    }

    void denseScreensHaveCrispLinesAtTheSamePlaces_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::newRow("1") << 1.0;
        QTest::newRow("1.5") << 1.5;
        QTest::newRow("2") << 2.0;
    }

    /// Every pixel is paper or line, nothing is blurred between them.
    void denseScreensHaveCrispLinesAtTheSamePlaces()
    {
        QFETCH(double, ratio);
        const QImage image = grid(GridStyle::dotted, ratio);
        QCOMPARE(countColor(image, image.rect(), Qt::red) + countColor(image, image.rect(), Qt::white),
                 image.width() * image.height());
        for (int line = 0; line * 20 * ratio < image.width(); ++line) {
            const QRect column(static_cast<int>(line * 20 * ratio), 0, 1, image.height());
            QCOMPARE(countColor(image, column, Qt::red), image.height());
        }
    }

    /// 96 dots per inch give no whole number of pixels per millimetre: steps add up as doubles.
    void linesKeepTrueOverTheWholeWidth()
    {
        QPixmap pixmap(1920, 20);
        const auto scale = PageScale::of(pixmap.size(), 1920 * 25.4 / 96.0, 1.0);
        paintGrid(pixmap, scale, GridStyle::dotted, {Qt::white, Qt::red});
        const QImage image = pixmap.toImage();
        // 50 cm from the left.
        const int x = static_cast<int>(500 / 25.4 * 96.0);
        QCOMPARE(countColor(image, QRect(x - 1, 1, 3, 17), Qt::red), 17);
    }

    void ruledPaperHasFineAndHeavyLines()
    {
        const QImage image = grid(GridStyle::ruled, 1.0, QColor(100, 0, 0));
        const int y = 10;
        // Darkness of a line is what it takes from the green of the paper, over the pixels it touches.
        const auto darkness = [&](int x) {
            int sum = 0;
            for (int at = std::max(x - 1, 0); at <= x + 1; ++at)
                sum += 255 - image.pixelColor(at, y).green();
            return sum;
        };
        QVERIFY(darkness(44) > 100);
        QVERIFY(darkness(48) > 100);
        QVERIFY(darkness(40) > darkness(44) * 3 / 2);
        QCOMPARE(image.pixelColor(46, y), QColor(Qt::white));
    }

    void emptyPictureIsLeftAlone()
    {
        QPixmap pixmap;
        paintGrid(pixmap, PageScale::of(pixmap, 1.0), GridStyle::dotted, {Qt::white, Qt::red});
        QVERIFY(pixmap.isNull());
    }
};

QTEST_MAIN(GridPainterTest)
#include "GridPainterTest.moc"
