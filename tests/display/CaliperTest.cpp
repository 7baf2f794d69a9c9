#include "display/BrowseView.h"
#include "display/DisplaySignal.h"

#include <QtTest>

using display_signal::rate;

namespace {

CaliperPointer at(double x, double y)
{
    return {x, y, false, false};
}

CaliperPointer draggedTo(double x, double y)
{
    return {x, y, true, true};
}

} // namespace

/// A page of 800 x 300 pixels at 100 pixels per second and 40 pixels per mV; three rows of 100 pixels. With
/// the inset the trace starts at 120 and the beat lies from 10 to 110.
class CaliperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void hoverPutsBothEndsUnderThePointer();
    void dragMovesTheSecondEnd();
    void releasedCaliperStaysUntilTheNextMove();
    void pointerDecidesBetweenInsetAndTrace();
    void heldButtonKeepsTheCaliperWhereItBegan();
    void leftOfTheTraceItGoesWithoutInset();
    void behindTheRecordingItGoes();
    void firstAndLastSampleOfTheBeatAreNone();
    void withoutSignalThereIsNone();
    void measuresTheTrace();
    void measuresTheInset();
    void invertedLeadIsMeasuredUpsideDown();
    void hiddenLeadIsNotMeasured();
    void insetTakenAwayTakesItsCaliperAlong();
    void millimetresAreThoseOfStandardGain();
    void textsAreWholeMsAndTenthsOfAMillivolt();

private:
    BrowsePage page() const { return m_view.page(PageScale::of(QSize(800, 300), 200.0, 1.0)); }
    void move(const CaliperPointer& pointer) { m_view.caliper = movedCaliper(m_view, page(), pointer); }

    std::unique_ptr<TInt16Signal> m_signal;
    std::unique_ptr<TAverageBeat> m_beat;
    BrowseView m_view;
};

void CaliperTest::init()
{
    m_signal = display_signal::steadySignal(20);
    m_beat = display_signal::averageOf(m_signal.get());
    m_view = BrowseView();
    m_view.signal = m_signal.get();
    m_view.averageBeat = m_beat.get();
    m_view.mouseMode = CaliperMode;
    m_view.startTime = 10.0;
    m_view.channelOffset = pageBaselines(m_view, page());
}

void CaliperTest::hoverPutsBothEndsUnderThePointer()
{
    move(at(250, 150));
    QVERIFY(m_view.caliper.shown);
    QVERIFY(!m_view.caliper.inBeat);
    QVERIFY(!m_view.caliper.dragging);
    QCOMPARE(m_view.caliper.channel, 1);
    QCOMPARE(m_view.caliper.from, int(12.5 * rate));
    QCOMPARE(m_view.caliper.to, m_view.caliper.from);
}

void CaliperTest::dragMovesTheSecondEnd()
{
    move(at(250, 150));
    move(draggedTo(250, 150));
    QVERIFY(m_view.caliper.dragging);
    move(draggedTo(350, 20));
    QCOMPARE(m_view.caliper.from, int(12.5 * rate));
    QCOMPARE(m_view.caliper.to, int(13.5 * rate));
    // The lead is that of the beginning.
    QCOMPARE(m_view.caliper.channel, 1);
}

void CaliperTest::releasedCaliperStaysUntilTheNextMove()
{
    move(draggedTo(250, 150));
    move(draggedTo(350, 150));
    move(at(350, 150));
    QVERIFY(!m_view.caliper.dragging);
    QCOMPARE(m_view.caliper.to - m_view.caliper.from, rate);
    move(at(351, 150));
    QCOMPARE(m_view.caliper.to, m_view.caliper.from);
}

void CaliperTest::pointerDecidesBetweenInsetAndTrace()
{
    m_view.showAverageBeat = true;
    move(at(60, 50));
    QVERIFY(m_view.caliper.inBeat);
    QCOMPARE(m_view.caliper.from, rate / 2);
    move(at(220, 50));
    QVERIFY(!m_view.caliper.inBeat);
    QCOMPARE(m_view.caliper.from, 11 * rate);
}

void CaliperTest::heldButtonKeepsTheCaliperWhereItBegan()
{
    m_view.showAverageBeat = true;
    move(at(60, 50));
    move(draggedTo(60, 50));
    move(draggedTo(90, 50));
    QCOMPARE(m_view.caliper.to, 8 * rate / 10);
    move(draggedTo(300, 50));
    QVERIFY(m_view.caliper.inBeat);
    QVERIFY(!m_view.caliper.shown);
}

void CaliperTest::leftOfTheTraceItGoesWithoutInset()
{
    move(at(250, 150));
    move(at(0, 150));
    QVERIFY(!m_view.caliper.shown);
    move(at(-3, 150));
    QVERIFY(!m_view.caliper.shown);
}

void CaliperTest::behindTheRecordingItGoes()
{
    m_view.startTime = 15.0;
    move(at(499, 150));
    QVERIFY(m_view.caliper.shown);
    move(at(500, 150));
    QVERIFY(!m_view.caliper.shown);
}

void CaliperTest::firstAndLastSampleOfTheBeatAreNone()
{
    m_view.showAverageBeat = true;
    move(at(10, 50));
    QVERIFY(!m_view.caliper.shown);
    move(at(11, 50));
    QVERIFY(m_view.caliper.shown);
    move(at(110, 50));
    QVERIFY(!m_view.caliper.shown);
}

void CaliperTest::withoutSignalThereIsNone()
{
    move(at(250, 150));
    m_view.signal = nullptr;
    QVERIFY(!caliperFigure(m_view, page()));
    move(at(250, 150));
    QVERIFY(!m_view.caliper.shown);
}

void CaliperTest::measuresTheTrace()
{
    // From R to the level line 0.3 s before it; lead 1 lies in the row from 100 to 200.
    m_view.caliper = {false, true, true, 1, int(12.5 * rate), int(12.2 * rate)};
    const auto figure = caliperFigure(m_view, page());
    QVERIFY(figure);
    QCOMPARE(figure->seconds, 0.3);
    const int height = m_signal->sample(1, 12.5 * rate) - m_signal->sample(1, 12.2 * rate);
    QCOMPARE(figure->millivolts, height / 100.0);
    QCOMPARE(figure->from.x(), 250.0);
    QCOMPARE(figure->to.x(), 220.0);
    const double zero = 150.0 + 0.4 * m_view.channelOffset[1];
    QCOMPARE(figure->from.y(), zero - 0.4 * m_signal->sample(1, 12.5 * rate));
    QCOMPARE(figure->to.y(), zero - 0.4 * m_signal->sample(1, 12.2 * rate));
}

void CaliperTest::measuresTheInset()
{
    m_view.showAverageBeat = true;
    m_view.caliper = {true, true, true, 0, 225, 100};
    const auto figure = caliperFigure(m_view, page());
    QVERIFY(figure);
    QCOMPARE(figure->seconds, 0.25);
    const TDoubleVector& beat = m_beat->complex(0);
    QCOMPARE(figure->millivolts, (beat[225] - beat[100]) / 100.0);
    QCOMPARE(figure->from.x(), 10.0 + 45.0);
    QCOMPARE(figure->from.y(), 50.0 - 0.4 * beat[225]);
}

void CaliperTest::invertedLeadIsMeasuredUpsideDown()
{
    m_view.rows.setInverted(1, true);
    m_view.caliper = {false, true, true, 1, int(12.5 * rate), int(12.2 * rate)};
    const auto figure = caliperFigure(m_view, page());
    QVERIFY(figure);
    QVERIFY(figure->from.y() > figure->to.y());
    QVERIFY(figure->millivolts > 0.9);
}

void CaliperTest::hiddenLeadIsNotMeasured()
{
    move(at(250, 150));
    QVERIFY(caliperFigure(m_view, page()));
    m_view.rows.setVisible(1, false);
    QVERIFY(!caliperFigure(m_view, page()));
}

void CaliperTest::insetTakenAwayTakesItsCaliperAlong()
{
    m_view.showAverageBeat = true;
    move(at(60, 50));
    QVERIFY(caliperFigure(m_view, page()));
    m_view.showAverageBeat = false;
    QVERIFY(!caliperFigure(m_view, page()));
    m_view.showAverageBeat = true;
    m_view.averageBeat = nullptr;
    QVERIFY(!caliperFigure(m_view, page()));
}

void CaliperTest::millimetresAreThoseOfStandardGain()
{
    m_view.caliper = {false, true, true, 1, int(12.5 * rate), int(12.2 * rate)};
    const QString text = caliperFigure(m_view, page())->amplitudeText();
    m_view.amplitude = 20.0;
    QCOMPARE(caliperFigure(m_view, page())->amplitudeText(), text);
    QCOMPARE(text, QStringLiteral("1.0 mv (10 mm)"));
}

void CaliperTest::textsAreWholeMsAndTenthsOfAMillivolt()
{
    CaliperFigure figure;
    figure.seconds = 0.3456;
    figure.millivolts = 1.26;
    QCOMPARE(figure.timeText(), QStringLiteral("346 ms"));
    QCOMPARE(figure.amplitudeText(), QStringLiteral("1.3 mv (13 mm)"));
}

QTEST_MAIN(CaliperTest)

#include "CaliperTest.moc"
