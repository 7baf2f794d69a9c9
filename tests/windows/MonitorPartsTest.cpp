#include "windows/MonitorSession.h"

#include "windows/ElidedLabel.h"
#include "windows/TLiveFiducials.h"
#include "windows/TLiveSaturation.h"
#include "windows/WarningBoxes.h"

#include <QMessageBox>
#include <QTextDocument>

namespace {

QMessageBox* openBox()
{
    return qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
}

/// Gives the recorder's driver frames of silence, with the greatest value of the range from `first` to before
/// `last` on channel 1.
void feed(TStudyRecorder& recorder, int frames, int first, int last)
{
    const int channels = recorder.rawSignal().channelCount();
    QVector<qint16> samples(frames * channels, 0);
    for (int frame = first; frame < last; ++frame)
        samples[frame * channels + 1] = 32767;
    QVector<char> bytes(samples.size() * static_cast<int>(sizeof(qint16)));
    std::memcpy(bytes.data(), samples.constData(), static_cast<std::size_t>(bytes.size()));
    QMetaObject::invokeMethod(&recorder.driver(), "appendBlock", Qt::DirectConnection,
                              Q_ARG(QVector<char>, bytes));
}

} // namespace

class MonitorPartsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QSettings().clear(); }

    void aLongNameEndsInDotsAndIsWholeInTheToolTip()
    {
        ElidedLabel label;
        const QString name = QString(40, QLatin1Char('W')) + QStringLiteral(", Ana");
        label.setFullText(name);
        QCOMPARE(label.text(), name);
        QCOMPARE(label.toolTip(), name);
        label.resize(label.sizeHint());
        QCOMPARE(label.shownText(), name);
        label.resize(120, 30);
        QVERIFY(label.shownText().endsWith(QChar(0x2026)));
        QVERIFY(label.fontMetrics().horizontalAdvance(label.shownText()) <= 120);
        QVERIFY(label.minimumSizeHint().width() < 60);
    }

    void aNameIsNoMarkup()
    {
        ElidedLabel label;
        label.setFullText(QStringLiteral("<b>Perez</b>, Ana"));
        QCOMPARE(label.text(), QStringLiteral("<b>Perez</b>, Ana"));
        QCOMPARE(label.textFormat(), Qt::PlainText);
        QTextDocument toolTip;
        toolTip.setHtml(label.toolTip());
        QCOMPARE(toolTip.toPlainText(), label.text());
    }

    void aNameIsPainted()
    {
        ElidedLabel label;
        label.setFullText(QStringLiteral("Perez"));
        label.resize(200, 40);
        const QImage picture = label.grab().toImage();
        const QRgb ground = picture.pixel(picture.width() - 1, 0);
        int inked = 0;
        for (int x = 0; x < picture.width(); ++x) {
            for (int y = 0; y < picture.height(); ++y)
                inked += picture.pixel(x, y) != ground ? 1 : 0;
        }
        QVERIFY(inked > 50);
    }

    void boxesComeOneAfterTheOther()
    {
        QWidget window;
        window.show();
        WarningBoxes boxes(&window);
        boxes.show(QStringLiteral("First"));
        boxes.show(QStringLiteral("Second"));
        boxes.show(QStringLiteral("First"));
        QVERIFY2(!openBox(), "the caller is to be left first");
        QTRY_VERIFY(openBox());
        QCOMPARE(openBox()->text(), QStringLiteral("First"));
        boxes.show(QStringLiteral("First"));
        QTest::qWait(10);
        QCOMPARE(window.findChildren<QMessageBox*>().size(), 1);
        openBox()->button(QMessageBox::Ok)->click();
        QTRY_VERIFY(openBox() && openBox()->text() == QStringLiteral("Second"));
        QTest::keyClick(openBox(), Qt::Key_Escape);
        QTest::qWait(10);
        QVERIFY(!openBox());

        boxes.show(QStringLiteral("First"));
        QTRY_VERIFY(openBox());
        openBox()->close();
    }

    void whatComesToAHiddenWindowIsShownWithIt()
    {
        QWidget window;
        window.show();
        WarningBoxes boxes(&window);
        boxes.show(QStringLiteral("Late"));
        window.close();
        QTest::qWait(10);
        QVERIFY(!openBox());
        QCOMPARE(boxes.untold(), QStringList{QStringLiteral("Late")});
        boxes.show(QStringLiteral("Later"));
        window.show();
        QTRY_VERIFY(openBox() && openBox()->text() == QStringLiteral("Late"));
        QCOMPARE(boxes.untold(), QStringList{QStringLiteral("Later")});
        openBox()->button(QMessageBox::Ok)->click();
        QTRY_VERIFY(openBox() && openBox()->text() == QStringLiteral("Later"));
        QCOMPARE(boxes.untold(), QStringList());
        openBox()->close();
        QTest::qWait(10);
        boxes.show(QStringLiteral("Late"));
        QTRY_VERIFY(openBox() && openBox()->text() == QStringLiteral("Late"));
        openBox()->close();
    }

    void saturationIsFoundInTheRawSamples_data()
    {
        QTest::addColumn<int>("rate");
        QTest::newRow("standard rate") << 500;
        QTest::newRow("high rate") << 1000;
    }

    void saturationIsFoundInTheRawSamples()
    {
        QFETCH(int, rate);
        FakeAcqDevice device(12, rate);
        StoreFolder folder;
        LocalStudyDatabase store(folder.path());
        StudyInfo info = makeSampleInfo();
        Study* study = store.createStudy(info);
        {
            TStudyRecorder recorder(&device, study, nullptr, nullptr);
            recorder.setFilters(true, true, true);
            TLiveSaturation saturation(recorder);
            QCOMPARE(saturation.limit(), 32766);
            feed(recorder, 4 * rate, 2 * rate, 2 * rate + rate / 2);

            int first = -1;
            int last = -1;
            QVERIFY(saturation.findStretch(1, 0, 2000, &first, &last));
            QCOMPARE(first, 1000);
            QCOMPARE(last, 1250);
            QVERIFY(!saturation.findStretch(1, last, 2000, &first, &last));
            QVERIFY(!saturation.findStretch(0, 0, 2000, &first, &last));
            QVERIFY(!saturation.findStretch(12, 0, 2000, &first, &last));
            QVERIFY(saturation.findStretch(1, 1100, 1200, &first, &last));
            QCOMPARE(first, 1100);
            QCOMPARE(last, 1200);
        }
        store.closeStudy(study);
    }

    void saturationIsFoundBehindAFilterThatBeganLate_data() { saturationIsFoundInTheRawSamples_data(); }

    void saturationIsFoundBehindAFilterThatBeganLate()
    {
        QFETCH(int, rate);
        FakeAcqDevice device(12, rate);
        StoreFolder folder;
        LocalStudyDatabase store(folder.path());
        StudyInfo info = makeSampleInfo();
        Study* study = store.createStudy(info);
        {
            TStudyRecorder recorder(&device, study, nullptr, nullptr);
            TLiveSaturation saturation(recorder);
            // More than the rings hold.
            for (int second = 0; second < 200; ++second)
                feed(recorder, rate, 0, 0);
            recorder.setFilters(true, true, true);
            QVERIFY(recorder.rawIndexOf(0) > 0);
            feed(recorder, 4 * rate, 2 * rate, 2 * rate + rate / 2);

            const int begin = (202 * rate - recorder.rawIndexOf(0)) * 500 / rate;
            int first = -1;
            int last = -1;
            QVERIFY(saturation.findStretch(1, begin - 500, begin + 1000, &first, &last));
            QCOMPARE(first, begin);
            QCOMPARE(last, begin + 250);
            QVERIFY(!saturation.findStretch(1, last, begin + 1000, &first, &last));
        }
        store.closeStudy(study);
    }

    void measuringPointsAreThoseOfTheRecorder()
    {
        RecorderSession session;
        TLiveFiducials source(*session.recorder, *session.study);
        TFiducialSource::TFiducials found;
        session.run(5.0);
        QVERIFY(!source.fiducials(1, &found));
        session.start();
        session.run(20.0);
        QVERIFY(source.fiducials(1, &found));
        const TStPoints& points = session.recorder->stPoints(1);
        QCOMPARE(found.indices[0], points.base);
        QCOMPARE(found.indices[1], points.j);
        QCOMPARE(found.indices[2], points.st);
        QVERIFY(points.base < points.j && points.j < points.st);
        const TResultTrend& levels = session.trend("STLevelTrend(1)");
        QCOMPARE(found.stLevel, levels.valueAtIndex(levels.count() - 1));
        QVERIFY(!source.fiducials(-1, &found));
        QVERIFY(!source.fiducials(16, &found));
    }

private:
    SettingsFolder m_settings;
};

QTEST_MAIN(MonitorPartsTest)
#include "MonitorPartsTest.moc"
