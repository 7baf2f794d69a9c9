#include "analysis/beats/TAverageBeat.h"
#include "display/ColorSchemes.h"
#include "display/MonitorPicture.h"
#include "display/TFiducialSource.h"
#include "display/TSignalSaturation.h"

#include <QtTest>

#include <functional>

Q_DECLARE_METATYPE(std::function<void(QSignalMonitorDisplay&)>)

/// What the live display does when it is told something: redraw or not, hidden or not, with or without a
/// signal.
class MonitorDisplayTest : public QObject
{
    Q_OBJECT

    /// Notes how often it is read; a redraw reads, showing the picture again does not.
    class TReadCounter : public TInt16Signal
    {
    public:
        TReadCounter() : TInt16Signal(512, 20000, 2, 500)
        {
            const std::vector<short> frames(4000);
            addInterleaved(reinterpret_cast<const char*>(frames.data()), 8000);
        }
        void readDoubles(int channel, int start, int count, double* out) override
        {
            ++reads;
            TInt16Signal::readDoubles(channel, start, count, out);
        }
        int reads = 0;
    };

    using TSetter = std::function<void(QSignalMonitorDisplay&)>;

private Q_SLOTS:
    void defaults()
    {
        QSignalMonitorDisplay display;
        QCOMPARE(display.signal(), nullptr);
        QCOMPARE(display.speed(), 25.0);
        QCOMPARE(display.amplitude(), 10.0);
        QVERIFY(!display.showAverageBeat());
        QVERIFY(display.autoCenter());
        QCOMPARE(display.lastPage(), -1);
        QCOMPARE(display.spinnerIndex(), 0);
        for (int channel = 0; channel < 16; ++channel) {
            QVERIFY(display.channelVisible(channel));
            QVERIFY(!display.channelInverted(channel));
            QCOMPARE(display.channelOrder(channel), channel);
            QCOMPARE(display.channelOffset(channel), 0);
        }
    }

    void defaultColors()
    {
        const QSignalMonitorDisplay display;
        QCOMPARE(display.color(0), QColor(Qt::black));
        QCOMPARE(display.color(1), QColor(Qt::white));
        QCOMPARE(display.color(2), QColor(220, 200, 180));
        QCOMPARE(display.color(3), QColor(Qt::lightGray));
        QCOMPARE(display.color(4), QColor(Qt::darkBlue));
        QCOMPARE(display.color(5), QColor(0, 128, 0, 128));
        QCOMPARE(display.color(6), QColor(255, 128, 0, 128));
        QVERIFY(!display.color(7).isValid());
        QCOMPARE(display.color(8), QColor(Qt::gray));
        QCOMPARE(display.color(9), QColor(Qt::darkRed));
        QVERIFY(!display.color(10).isValid());
    }

    void settersRedrawAtOnce_data()
    {
        QTest::addColumn<TSetter>("set");
        using TDisplay = QSignalMonitorDisplay&;
        QTest::newRow("speed") << TSetter([](TDisplay d) { d.setSpeed(25.0); });
        QTest::newRow("amplitude") << TSetter([](TDisplay d) { d.setAmplitude(10.0); });
        QTest::newRow("beat") << TSetter([](TDisplay d) { d.setAverageBeat(nullptr); });
        QTest::newRow("show beat") << TSetter([](TDisplay d) { d.setShowAverageBeat(false); });
        QTest::newRow("fiducials") << TSetter([](TDisplay d) { d.setFiducialSource(nullptr); });
        QTest::newRow("saturation") << TSetter([](TDisplay d) { d.setSaturationSource(nullptr); });
        QTest::newRow("centring") << TSetter([](TDisplay d) { d.setAutoCenter(true); });
        QTest::newRow("visible") << TSetter([](TDisplay d) { d.setChannelVisible(0, false); });
        QTest::newRow("inverted") << TSetter([](TDisplay d) { d.setChannelInverted(0, true); });
        QTest::newRow("order") << TSetter([](TDisplay d) { d.setChannelOrder(0, 1); });
        QTest::newRow("signal") << TSetter([](TDisplay d) { d.setSignal(d.signal()); });
        QTest::newRow("refresh") << TSetter([](TDisplay d) { d.refresh(); });
    }

    void settersRedrawAtOnce()
    {
        QFETCH(TSetter, set);
        TReadCounter signal;
        MonitorPicture monitor;
        monitor.show();
        monitor.display.setSignal(&signal);
        TPaintCounter counter(monitor.display);
        signal.reads = 0;
        set(monitor.display);
        QCOMPARE(counter.paints, 1);
        QVERIFY(signal.reads > 0);
        monitor.display.setSignal(nullptr);
    }

    void unchangedChannelsDoNotRedraw()
    {
        TReadCounter signal;
        MonitorPicture monitor;
        monitor.show();
        monitor.display.setSignal(&signal);
        TPaintCounter counter(monitor.display);
        signal.reads = 0;
        monitor.display.setChannelVisible(1, true);
        monitor.display.setChannelInverted(1, false);
        monitor.display.setChannelOrder(1, 1);
        // Nor does what is no channel.
        monitor.display.setChannelVisible(16, false);
        monitor.display.setChannelInverted(-1, true);
        monitor.display.setChannelOrder(0, 16);
        QCOMPARE(counter.paints, 0);
        QCOMPARE(signal.reads, 0);
        monitor.display.setSignal(nullptr);
    }

    void colorsWaitForRefresh()
    {
        MonitorPicture monitor;
        monitor.show();
        TPaintCounter counter(monitor.display);
        monitor.display.setColor(BackgroundColor, Qt::yellow);
        monitor.display.setColor(GridColor, Qt::cyan);
        QCOMPARE(counter.paints, 0);
        QVERIFY(isColor(monitor.take(), 1, 2, Qt::white));
        monitor.display.refresh();
        const QImage image = monitor.take();
        QVERIFY(isColor(image, monitor.scale.px(30.0), 0, Qt::cyan));
        QVERIFY(countColor(image, image.rect(), Qt::yellow) > image.width() * image.height() / 2);
    }

    void saturationIsAlwaysHalfTransparent()
    {
        QSignalMonitorDisplay display;
        display.setColor(SaturationColor, QColor(1, 2, 3, 255));
        QCOMPARE(display.color(SaturationColor), QColor(1, 2, 3, 128));
        display.setColor(FiducialColor, QColor(1, 2, 3, 255));
        QCOMPARE(display.color(FiducialColor), QColor(1, 2, 3, 255));
    }

    void schemesColourTheDisplay()
    {
        MonitorPicture monitor;
        monitor.show();
        applyScheme(QStringLiteral("Black"), &monitor.display);
        const QImage image = monitor.take();
        QVERIFY(countColor(image, image.rect(), Qt::black) > image.width() * image.height() / 2);
        QVERIFY(countColor(image, image.rect(), QColor(96, 96, 96)) > 0);
        QCOMPARE(monitor.display.color(SaturationColor).alpha(), 128);
        applyScheme(QStringLiteral("no such scheme"), &monitor.display);
        QCOMPARE(monitor.display.color(BackgroundColor), QColor(Qt::black));
    }

    void missingSignalLeavesTheGrid()
    {
        MonitorPicture monitor;
        monitor.display.setColor(GridColor, Qt::red);
        monitor.display.setColor(LabelColor, Qt::black);
        monitor.show();
        monitor.display.setSignal(nullptr);
        const QImage image = monitor.take();
        QVERIFY(countColor(image, image.rect(), Qt::red) > 0);
        QCOMPARE(countOther(image, image.rect(), Qt::white), countColor(image, image.rect(), Qt::red));
    }

    void nothingToShowLeavesTheGrid()
    {
        MonitorPicture monitor(2);
        monitor.display.setColor(GridColor, Qt::red);
        monitor.show();
        monitor.add(1000, 100);
        monitor.display.setSignal(nullptr);
        const QImage empty = monitor.take();
        monitor.display.setSignal(&monitor.signal);
        QVERIFY(monitor.take() != empty);
        monitor.display.setChannelVisible(0, false);
        monitor.display.setChannelVisible(1, false);
        QCOMPARE(monitor.take(), empty);
        monitor.display.setSignal(nullptr);
    }

    void signalWithoutChannelsHasNoTrace()
    {
        MonitorPicture monitor;
        monitor.show();
        TInt16Signal signal(64, 64, 0, 500);
        monitor.display.setSignal(&signal);
        const QImage image = monitor.take();
        QCOMPARE(countColor(image, image.rect(), Qt::black), 0);
        QCOMPARE(countColor(image, image.rect(), Qt::blue), 0);
        monitor.display.setSignal(nullptr);
    }

    void unusableSpeedsAndAmplitudesLeavePaper_data()
    {
        QTest::addColumn<double>("speed");
        QTest::addColumn<double>("amplitude");
        QTest::newRow("speed 0") << 0.0 << 10.0;
        QTest::newRow("negative speed") << -25.0 << 10.0;
        QTest::newRow("speed not a number") << qQNaN() << 10.0;
        QTest::newRow("endless speed") << qInf() << 10.0;
        QTest::newRow("amplitude not a number") << 25.0 << qQNaN();
        QTest::newRow("endless amplitude") << 25.0 << qInf();
    }

    void unusableSpeedsAndAmplitudesLeavePaper()
    {
        QFETCH(double, speed);
        QFETCH(double, amplitude);
        MonitorPicture monitor;
        monitor.show();
        monitor.add(2000, 500);
        monitor.display.setSpeed(speed);
        monitor.display.setAmplitude(amplitude);
        const QImage image = monitor.take();
        QCOMPARE(countOther(image, image.rect(), Qt::white), 0);
        monitor.display.setSpeed(25.0);
        monitor.display.setAmplitude(10.0);
        QVERIFY(countColor(monitor.take(), image.rect(), Qt::black) > 0);
    }

    void extremeSpeedsAndAmplitudesEnd()
    {
        MonitorPicture monitor;
        TAverageBeat beat(&monitor.signal, 10.0);
        TSignalSaturation saturation(&monitor.signal);
        monitor.show();
        monitor.display.setAverageBeat(&beat);
        monitor.display.setShowAverageBeat(true);
        monitor.display.setSaturationSource(&saturation);
        monitor.add(2000, 32767);
        monitor.add(1000, -32768);
        TBeat single(&monitor.signal);
        single.setFiducial(0, TBeat::rPosition, 4.0);
        beat.complexFromBeat(single);
        beat.keepReference();
        QVERIFY(beat.count() > 0);
        struct TEdges : TFiducialSource
        {
            bool fiducials(int, TFiducials* found) override
            {
                *found = {{0, 100, 499}, 1e300};
                return true;
            }
        } edges;
        monitor.display.setFiducialSource(&edges);
        int pictures = 0;
        for (const double speed : {1e-9, 0.1, 160.0, 1e9, 1e300}) {
            for (const double amplitude : {-10.0, 0.0, 1e9, 1e300}) {
                monitor.display.setSpeed(speed);
                monitor.display.setAmplitude(amplitude);
                monitor.display.setShowAverageBeat(!monitor.display.showAverageBeat());
                pictures += !monitor.take().isNull();
            }
        }
        QCOMPARE(pictures, 20);
        monitor.display.setFiducialSource(nullptr);
    }

    void tinyWidgetsEnd()
    {
        MonitorPicture monitor(12);
        monitor.show();
        monitor.add(2000, 500);
        for (const QSize size : {QSize(0, 0), QSize(1, 1), QSize(2, 400), QSize(400, 1), QSize(7, 5)}) {
            monitor.display.resize(size);
            monitor.display.refresh();
            QCOMPARE(monitor.display.size(), size);
        }
        monitor.display.resize(600, 300);
        monitor.display.setAutoCenter(false);
        monitor.take();
        QVERIFY(isColor(monitor.take(), 20, monitor.y(500, 3, 12), Qt::black));
    }

    void resizedPictureIsDrawnAnew()
    {
        MonitorPicture monitor;
        monitor.show();
        monitor.add(1000, 0);
        monitor.display.refresh();
        monitor.display.resize(800, 500);
        const QImage image = monitor.take();
        const double ratio = monitor.display.devicePixelRatioF();
        QCOMPARE(image.size(), QSize(qCeil(800 * ratio), qCeil(500 * ratio)));
        QVERIFY(isColor(image, 20, monitor.y(0), Qt::black));
    }

    void hiddenDisplayDrawsNothingAndIsRightWhenShown()
    {
        TReadCounter signal;
        MonitorPicture monitor;
        monitor.display.setSignal(&signal);
        monitor.display.refresh();
        QCOMPARE(signal.reads, 0);
        monitor.display.show();
        QVERIFY(QTest::qWaitForWindowExposed(&monitor.display));
        QVERIFY(signal.reads > 0);
        monitor.take();
        QVERIFY(isColor(monitor.take(), 20, monitor.y(0, 0, 2), Qt::black));
        monitor.display.hide();
        signal.reads = 0;
        monitor.display.setChannelVisible(0, false);
        QCOMPARE(signal.reads, 0);
        monitor.display.show();
        QVERIFY(QTest::qWaitForWindowExposed(&monitor.display));
        QVERIFY(isColor(monitor.take(), 20, monitor.y(0, 0, 1), Qt::black));
        monitor.display.setSignal(nullptr);
    }

    void labelsNameTheLeads()
    {
        TInt16Signal signal(64, 64, 3, 500);
        signal.channel(0)->setName("aVR");
        QCOMPARE(TLeadLabels::text(signal, 0, false), QStringLiteral("aVR"));
        QCOMPARE(TLeadLabels::text(signal, 0, true), QStringLiteral("-aVR"));
        QCOMPARE(TLeadLabels::text(signal, 1, true), QString());
        signal.channel(2)->setName("Brustwand \xc3\xbc");
        QCOMPARE(TLeadLabels::text(signal, 2, false), QStringLiteral("Brustwand \u00fc"));
        QCOMPARE(TLeadLabels::text(signal, 9, true), QString());
    }

    void labelsStandAtTheTopLeftOfTheirRows()
    {
        MonitorPicture monitor(2);
        monitor.display.setColor(LabelColor, Qt::magenta);
        monitor.signal.channel(1)->setName("II");
        monitor.show();
        const QImage image = monitor.take();
        const QRect all = image.rect();
        const int rowTop = image.height() / 2;
        const QRect label(monitor.scale.px(4.0), rowTop, monitor.scale.px(30.0), monitor.scale.px(30.0));
        QVERIFY(countColor(image, label, Qt::magenta) > 10);
        QCOMPARE(countColor(image, label, Qt::magenta), countColor(image, all, Qt::magenta));
        QCOMPARE(countColor(image, QRect(0, 0, image.width(), rowTop), Qt::magenta), 0);
    }

    void labelsFollowNamesAndInversion()
    {
        MonitorPicture monitor;
        monitor.signal.channel(0)->setName("V1");
        monitor.display.setColor(LabelColor, Qt::magenta);
        monitor.show();
        const QImage plain = monitor.take();
        monitor.display.setChannelInverted(0, true);
        const QImage inverted = monitor.take();
        QVERIFY(inverted != plain);
        monitor.display.setChannelInverted(0, false);
        QCOMPARE(monitor.take(), plain);
        monitor.signal.channel(0)->setName("V2");
        monitor.display.refresh();
        QVERIFY(monitor.take() != plain);
    }

    void timerShowsThePictureAgainWithoutDrawingIt()
    {
        TReadCounter signal;
        MonitorPicture monitor;
        monitor.show();
        monitor.display.setSignal(&signal);
        TPaintCounter counter(monitor.display);
        signal.reads = 0;
        QTRY_VERIFY(counter.paints >= 2);
        QCOMPARE(signal.reads, 0);
        monitor.display.setSignal(nullptr);
    }
};

QTEST_MAIN(MonitorDisplayTest)
#include "MonitorDisplayTest.moc"
