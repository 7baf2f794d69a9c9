#include "display/BeatPainter.h"
#include "display/DisplaySignal.h"
#include "display/PaintCounter.h"
#include "display/QBeatDisplay.h"

#include <QPainter>
#include <QtTest>

namespace {

/// Times of the four cursors in use on the average beat, R at 0.45 s.
void place(QBeatDisplay& display)
{
    display.setCursorPosition(pOnCursor, 0.24);
    display.setCursorPosition(qrsOnCursor, 0.41);
    display.setCursorPosition(qrsOffCursor, 0.51);
    display.setCursorPosition(tOffCursor, 0.83);
    display.refresh();
}

void moveTo(QBeatDisplay& display, int x, Qt::MouseButtons buttons = Qt::NoButton)
{
    QMouseEvent event(QEvent::MouseMove, QPointF(x, 200), Qt::NoButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(&display, &event);
}

int xOf(const QBeatDisplay& display, int cursor)
{
    return display.width() * display.cursorPosition(cursor);
}

/// Pixels of the picture that are of that colour, in the logical column `x`.
int countInColumn(const QImage& image, double ratio, int x, QColor color)
{
    int found = 0;
    for (int y = 0; y < image.height(); ++y)
        found += image.pixelColor(int(x * ratio), y) == color;
    return found;
}

/// Dark pixels of a row high above the middle, where only R comes.
int countAroundR(const QImage& image, double ratio)
{
    int found = 0;
    for (int x = int(340 * ratio); x < int(380 * ratio); ++x)
        found += image.pixelColor(x, int(45 * ratio)).lightness() < 100;
    return found;
}

bool isWhite(const QImage& image)
{
    QImage white(image.size(), image.format());
    white.setDevicePixelRatio(image.devicePixelRatio());
    white.fill(Qt::white);
    return image == white;
}

} // namespace

class BeatDisplayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void picturesAreMadeInDevicePixels();
    void withoutBeatNothingIsDrawn();
    void beatTakenAwayLeavesNothing();
    void beatTakenAwayLetsTheCursorGo();
    void withoutSizeNothingIsDrawn();
    void unknownLeadShowsAFlatLine();
    void leadIsDrawnAtOnce();
    void cursorIsDrawnOverTheMiddleThird();
    void hoverCatchesWithinThreePixels();
    void caughtCursorTurnsRedAndTheMouseToAHorizontalArrow();
    void hiddenCursorIsNotCaught();
    void lowerIndexOfTwoIsCaught();
    void dragMovesTheCaughtCursorAndTellsEachStep();
    void dragStopsAtTheEdges();
    void dragKeepsItsCursorOverOthers();
    void dragWithoutACaughtCursorMovesNothing();
    void pressAndReleaseDoNothing();
    void hoverWithoutBeatCatchesNothing();
    void positionAloneChangesNoPicture();
    void hiddenDisplayShowsWhatWasRefreshedWhenItAppears();
    void positionOfNoCursorIsIgnored();
    void resizeKeepsTheCursorsInPlace();
    void measurementsShowOnThePicture();
    void gridIsAnchoredInTheMiddle();

private:
    QImage picture() { return m_display->grab().toImage().convertToFormat(QImage::Format_RGB32); }

    std::unique_ptr<TInt16Signal> m_signal;
    std::unique_ptr<TAverageBeat> m_beat;
    std::unique_ptr<QBeatDisplay> m_display;
};

void BeatDisplayTest::init()
{
    m_signal = display_signal::steadySignal(12, 3, {1.0, 0.2});
    m_beat = display_signal::averageOf(m_signal.get());
    m_display = std::make_unique<QBeatDisplay>();
    m_display->resize(800, 400);
    m_display->setAverageBeat(m_beat.get());
    place(*m_display);
    m_display->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_display.get()));
}

void BeatDisplayTest::cleanup()
{
    if (const auto folder = qEnvironmentVariable("VELANTOR_PICTURES"); m_display && !folder.isEmpty())
        picture().save(
            QStringLiteral("%1/beat-%2.png").arg(folder, QString::fromLatin1(QTest::currentTestFunction())));
    m_display.reset();
    m_beat.reset();
    m_signal.reset();
}

void BeatDisplayTest::picturesAreMadeInDevicePixels()
{
    const QPixmap shown = m_display->grab();
    QCOMPARE(shown.devicePixelRatio(), m_display->devicePixelRatioF());
    QCOMPARE(shown.size(), (QSizeF(800, 400) * m_display->devicePixelRatioF()).toSize());
    QVERIFY(!isWhite(picture()));
}

void BeatDisplayTest::withoutBeatNothingIsDrawn()
{
    QBeatDisplay display;
    display.resize(300, 200);
    place(display);
    QVERIFY(isWhite(display.grab().toImage().convertToFormat(QImage::Format_RGB32)));
}

void BeatDisplayTest::beatTakenAwayLeavesNothing()
{
    m_display->setAverageBeat(nullptr);
    QVERIFY(isWhite(picture()));
}

void BeatDisplayTest::withoutSizeNothingIsDrawn()
{
    m_display->resize(0, 0);
    m_display->refresh();
    moveTo(*m_display, 0);
    QCOMPARE(m_display->activeCursor(), -1);
    QBeatDisplay thin;
    thin.resize(1, 400);
    thin.setAverageBeat(m_beat.get());
    QCOMPARE(thin.grab().height(), int(400 * thin.devicePixelRatioF()));
}

void BeatDisplayTest::unknownLeadShowsAFlatLine()
{
    m_display->setChannel(99);
    QCOMPARE(m_display->channel(), 99);
    const QImage image = picture();
    const double ratio = image.devicePixelRatio();
    // Dark in the middle row, and nothing black where R would rise.
    QVERIFY(image.pixelColor(int(100 * ratio), int(200 * ratio)).lightness() < 180);
    QCOMPARE(countAroundR(image, ratio), 0);
    m_display->setChannel(0);
    QVERIFY(countAroundR(picture(), ratio) > 0);
}

void BeatDisplayTest::leadIsDrawnAtOnce()
{
    const double ratio = m_display->devicePixelRatioF();
    QVERIFY(countAroundR(picture(), ratio) > 0);
    const TPaintCounter counter(*m_display);
    m_display->setChannel(1);
    QCOMPARE(counter.paints, 1);
    // The R of this lead stays below.
    QCOMPARE(countAroundR(picture(), ratio), 0);
    m_display->setChannel(2);
    QVERIFY(countAroundR(picture(), ratio) > 0);
}

void BeatDisplayTest::cursorIsDrawnOverTheMiddleThird()
{
    const QImage image = picture();
    const double ratio = image.devicePixelRatio();
    const int x = int(xOf(*m_display, pOnCursor) * ratio);
    QCOMPARE(image.pixelColor(x, int(150 * ratio)), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(x, int(250 * ratio)), QColor(Qt::blue));
    QVERIFY(image.pixelColor(x, int(100 * ratio)) != QColor(Qt::blue));
    QVERIFY(image.pixelColor(x, int(275 * ratio)) != QColor(Qt::blue));
}

void BeatDisplayTest::hoverCatchesWithinThreePixels()
{
    const int x = xOf(*m_display, qrsOnCursor);
    moveTo(*m_display, x + 4);
    QCOMPARE(m_display->activeCursor(), -1);
    moveTo(*m_display, x + 3);
    QCOMPARE(m_display->activeCursor(), int(qrsOnCursor));
    moveTo(*m_display, x - 3);
    QCOMPARE(m_display->activeCursor(), int(qrsOnCursor));
    moveTo(*m_display, x - 4);
    QCOMPARE(m_display->activeCursor(), -1);
}

void BeatDisplayTest::caughtCursorTurnsRedAndTheMouseToAHorizontalArrow()
{
    const int x = xOf(*m_display, pOnCursor);
    moveTo(*m_display, x);
    QCOMPARE(int(m_display->cursor().shape()), 12);
    const QImage caught = picture();
    const double ratio = caught.devicePixelRatio();
    QVERIFY(countInColumn(caught, ratio, x, Qt::red) > 100 * ratio);
    moveTo(*m_display, x + 50);
    QCOMPARE(m_display->cursor().shape(), Qt::ArrowCursor);
    QCOMPARE(countInColumn(picture(), ratio, x, Qt::red), 0);
}

void BeatDisplayTest::hiddenCursorIsNotCaught()
{
    m_display->setCursorPosition(tPeakCursor, 0.7);
    m_display->refresh();
    moveTo(*m_display, 560);
    QCOMPARE(m_display->activeCursor(), -1);
}

void BeatDisplayTest::lowerIndexOfTwoIsCaught()
{
    m_display->setCursorPosition(qrsOffCursor, m_display->cursorPosition(qrsOnCursor) + 2.0 / 800);
    moveTo(*m_display, xOf(*m_display, qrsOffCursor));
    QCOMPARE(m_display->activeCursor(), int(qrsOnCursor));
}

void BeatDisplayTest::dragMovesTheCaughtCursorAndTellsEachStep()
{
    QSignalSpy changed(m_display.get(), &QBeatDisplay::cursorChanged);
    moveTo(*m_display, xOf(*m_display, tOffCursor));
    QCOMPARE(changed.count(), 0);
    moveTo(*m_display, 700, Qt::LeftButton);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_display->cursorPosition(tOffCursor), 700.0 / 800);
    moveTo(*m_display, 720, Qt::LeftButton);
    QCOMPARE(changed.count(), 2);
    QCOMPARE(m_display->cursorPosition(tOffCursor), 0.9);
    const double ratio = m_display->devicePixelRatioF();
    QVERIFY(countInColumn(picture(), ratio, 720, Qt::red) > 100 * ratio);
    moveTo(*m_display, 720);
    QCOMPARE(changed.count(), 2);
}

void BeatDisplayTest::dragStopsAtTheEdges()
{
    moveTo(*m_display, xOf(*m_display, tOffCursor));
    moveTo(*m_display, 5000, Qt::LeftButton);
    QCOMPARE(m_display->cursorPosition(tOffCursor), 799.0 / 800);
    moveTo(*m_display, -30, Qt::LeftButton);
    QCOMPARE(m_display->cursorPosition(tOffCursor), 0.0);
}

void BeatDisplayTest::dragKeepsItsCursorOverOthers()
{
    moveTo(*m_display, xOf(*m_display, tOffCursor));
    moveTo(*m_display, xOf(*m_display, qrsOnCursor), Qt::LeftButton);
    QCOMPARE(m_display->activeCursor(), int(tOffCursor));
    moveTo(*m_display, 100, Qt::LeftButton);
    QCOMPARE(m_display->cursorPosition(tOffCursor), 0.125);
    QCOMPARE(m_display->cursorPosition(qrsOnCursor), 0.41);
}

void BeatDisplayTest::dragWithoutACaughtCursorMovesNothing()
{
    QSignalSpy changed(m_display.get(), &QBeatDisplay::cursorChanged);
    moveTo(*m_display, 50);
    moveTo(*m_display, xOf(*m_display, pOnCursor), Qt::LeftButton);
    moveTo(*m_display, 400, Qt::LeftButton);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(m_display->cursorPosition(pOnCursor), 0.24);
}

void BeatDisplayTest::pressAndReleaseDoNothing()
{
    QSignalSpy changed(m_display.get(), &QBeatDisplay::cursorChanged);
    const QImage before = picture();
    const QPoint at(xOf(*m_display, pOnCursor), 200);
    QTest::mousePress(m_display.get(), Qt::LeftButton, {}, at);
    QTest::mouseRelease(m_display.get(), Qt::LeftButton, {}, at);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(picture(), before);
}

void BeatDisplayTest::hoverWithoutBeatCatchesNothing()
{
    m_display->setAverageBeat(nullptr);
    moveTo(*m_display, xOf(*m_display, pOnCursor));
    QCOMPARE(m_display->activeCursor(), -1);
}

void BeatDisplayTest::positionAloneChangesNoPicture()
{
    const QImage before = picture();
    m_display->setCursorPosition(tOffCursor, 0.7);
    QCOMPARE(m_display->cursorPosition(tOffCursor), 0.7);
    QCOMPARE(picture(), before);
    m_display->refresh();
    QVERIFY(picture() != before);
}

void BeatDisplayTest::positionOfNoCursorIsIgnored()
{
    m_display->setCursorPosition(-1, 0.5);
    m_display->setCursorPosition(beatCursorCount, 0.5);
    QCOMPARE(m_display->cursorPosition(-1), 0.0);
    QCOMPARE(m_display->cursorPosition(beatCursorCount), 0.0);
    QCOMPARE(m_display->cursors().size(), size_t(beatCursorCount));
}

void BeatDisplayTest::resizeKeepsTheCursorsInPlace()
{
    m_display->resize(400, 300);
    QTRY_COMPARE(m_display->width(), 400);
    moveTo(*m_display, 164);
    QCOMPARE(m_display->activeCursor(), int(qrsOnCursor));
    QCOMPARE(m_display->grab().size(), (QSizeF(400, 300) * m_display->devicePixelRatioF()).toSize());
}

void BeatDisplayTest::measurementsShowOnThePicture()
{
    // The dimension lines lie below the cursors, where they hide no wave; here that of PR alone.
    const auto hasLineAt = [](const QImage& image, int x, int from, int to) {
        const double ratio = image.devicePixelRatio();
        for (int y = int(from * ratio); y < int(to * ratio); ++y) {
            const QColor color = image.pixelColor(int(x * ratio), y);
            // The grid's gray is bluish, too.
            if (color.hue() == 240 && color.saturation() > 100)
                return true;
        }
        return false;
    };
    const QImage image = picture();
    const int height = int(image.height() / image.devicePixelRatio());
    QVERIFY(hasLineAt(image, 300, 2 * height / 3, height));
    QVERIFY(!hasLineAt(image, 300, height / 3 - 3, height / 3 + 3));
    m_display->setCursorPosition(pOnCursor, 0.41);
    m_display->refresh();
    QVERIFY(!hasLineAt(picture(), 300, 2 * height / 3, height));
}

void BeatDisplayTest::gridIsAnchoredInTheMiddle()
{
    TBeatCursors cursors = beatCursors();
    QImage image(801, 401, QImage::Format_RGB32);
    const TBeatScale scale = beatScale(m_beat.get(), 801, 401);
    QPainter painter(&image);
    paintBeat(painter, scale, {m_beat.get(), 99, cursors, -1});
    // Heavy lines run through the centre, and half a centimetre beside it.
    for (const int x : {400, int(400.5 - scale.pixelsPerCm() / 2), int(400.5 + scale.pixelsPerCm() / 2)})
        QVERIFY(image.pixelColor(x, 58).lightness() < 200);
    QVERIFY(image.pixelColor(416, 58).lightness() > 240);
}

void BeatDisplayTest::beatTakenAwayLetsTheCursorGo()
{
    moveTo(*m_display, xOf(*m_display, pOnCursor));
    QCOMPARE(m_display->activeCursor(), int(pOnCursor));
    m_display->setAverageBeat(nullptr);
    QCOMPARE(m_display->activeCursor(), -1);
    QCOMPARE(m_display->cursor().shape(), Qt::ArrowCursor);
    QSignalSpy changed(m_display.get(), &QBeatDisplay::cursorChanged);
    m_display->setAverageBeat(m_beat.get());
    moveTo(*m_display, 400, Qt::LeftButton);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(m_display->cursorPosition(pOnCursor), 0.24);
}

void BeatDisplayTest::hiddenDisplayShowsWhatWasRefreshedWhenItAppears()
{
    const QImage before = picture();
    m_display->hide();
    m_display->setCursorPosition(tOffCursor, 0.7);
    m_display->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_display.get()));
    QCOMPARE(picture(), before);
    m_display->hide();
    m_display->refresh();
    // Between a refresh and the picture, too, positions wait for the next refresh.
    m_display->setCursorPosition(tOffCursor, 0.83);
    m_display->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_display.get()));
    const QImage refreshed = picture();
    QVERIFY(refreshed != before);
    m_display->refresh();
    QCOMPARE(picture(), before);
}

QTEST_MAIN(BeatDisplayTest)

#include "BeatDisplayTest.moc"
