#include "display/MonitorPicture.h"
#include "display/SpinnerPainter.h"

#include <QElapsedTimer>
#include <QPainter>
#include <QtTest>

/// The ring that turns while the live display waits for samples.
class MonitorSpinnerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void spinnerTurnsWhileThereAreNoSamples()
    {
        MonitorPicture monitor;
        monitor.show();
        const QImage before = monitor.take();
        QVERIFY(countOther(before, before.rect(), Qt::white) > 1000);
        // One step of the event loop lets the timer tick once at most, however slow the machine is.
        QElapsedTimer clock;
        clock.start();
        while (monitor.display.spinnerIndex() == 0 && clock.elapsed() < 5000)
            QCoreApplication::processEvents();
        const int index = monitor.display.spinnerIndex();
        QCOMPARE(index, 9);
        // The turn is seen with the next redraw only.
        QCOMPARE(monitor.take(), before);
        monitor.display.refresh();
        QVERIFY(monitor.take() != before);
        QTRY_VERIFY(monitor.display.spinnerIndex() < index);
    }

    void spinnerGoesWithTheFirstSample()
    {
        MonitorPicture monitor;
        monitor.show();
        monitor.add(1, 0);
        monitor.display.refresh();
        const int index = monitor.display.spinnerIndex();
        const QImage image = monitor.take();
        const QRect middle(image.width() / 2 - monitor.scale.px(30.0), 0, monitor.scale.px(60.0),
                           image.height());
        QCOMPARE(countOther(image, middle, Qt::white), 0);
        QTest::qWait(450);
        QCOMPARE(monitor.display.spinnerIndex(), index);
    }

    void spinnerIsARingOfTenSectors()
    {
        QImage image(200, 100, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        paintSpinner(painter, PageScale::of(image.size(), 50.0, 1.0), 2);
        painter.end();
        QVERIFY(isColor(image, 100, 50, Qt::white));
        QCOMPARE(countOther(image, QRect(0, 0, 70, 100), Qt::white), 0);
        QCOMPARE(countOther(image, QRect(0, 0, 200, 20), Qt::white), 0);
        const auto greyOf = [&](int sector) {
            const double angle = qDegreesToRadians(sector * 36.0 + 15.0);
            return image.pixelColor(qRound(100 + 22 * std::cos(angle)), qRound(50 - 22 * std::sin(angle)))
                .red();
        };
        for (int sector = 0; sector < spinnerSectors; ++sector)
            QVERIFY(std::abs(greyOf(sector) - (sector == 2 ? 191 : 223)) <= 1);
        // Between two sectors lies a gap of six degrees.
        const double gap = qDegreesToRadians(33.0);
        QVERIFY(isColor(image, qRound(100 + 28 * std::cos(gap)), qRound(50 - 28 * std::sin(gap)), Qt::white));
    }
};

QTEST_MAIN(MonitorSpinnerTest)
#include "MonitorSpinnerTest.moc"
