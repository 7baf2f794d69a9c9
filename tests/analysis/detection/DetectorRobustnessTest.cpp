#include "analysis/detection/Detection.h"

#include <QtTest>

namespace {

constexpr int rate = 250;

ecg::TRow constant(std::size_t count, double value)
{
    return ecg::TRow(count, value);
}

std::vector<double> since(double start, std::vector<double> times)
{
    std::erase_if(times, [start](double t) { return t < start; });
    return times;
}

} // namespace

class DetectorRobustnessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noRateIsTooOddToSurvive_data()
    {
        QTest::addColumn<int>("samplingRate");
        for (const int samplingRate : {1, 2, 5, 10, 31, 1000})
            QTest::newRow(qPrintable(QString::number(samplingRate))) << samplingRate;
    }

    void noRateIsTooOddToSurvive()
    {
        QFETCH(int, samplingRate);
        TFeeding feeding;
        feeding.rate = samplingRate;
        const auto times = ecg::regular(0.6, 0.8, 12);
        QVERIFY(detect(channelsOf(2, 10.0, times, samplingRate), feeding).beats.size() <= 13U);
    }

    void anOffsetIsNoBeat_data()
    {
        QTest::addColumn<int>("channels");
        QTest::addColumn<double>("offset");
        for (const int channels : {1, 2, 12})
            for (const double offset : {0.0, 1.0, -100.0, 16384.0, 32767.0, -32768.0})
                QTest::addRow("%d channels at %g", channels, offset) << channels << offset;
    }

    void anOffsetIsNoBeat()
    {
        QFETCH(int, channels);
        QFETCH(double, offset);
        const ecg::TRows rows(channels, constant(20 * rate, offset));
        QCOMPARE(detect(rows).beats.size(), 0U);
        TFeeding late;
        late.startTime = 7.0;
        QCOMPARE(detect(rows, late).beats.size(), 0U);
    }

    void anOffsetChangesNoBeat_data()
    {
        QTest::addColumn<double>("offset");
        for (const double offset : {1000.0, -5000.0, 25000.0, -31000.0})
            QTest::newRow(qPrintable(QString::number(offset))) << offset;
    }

    void anOffsetChangesNoBeat()
    {
        QFETCH(double, offset);
        const auto times = ecg::regular(0.6, 0.8, 12);
        ecg::TRows rows = channelsOf(2, 11.0, times);
        for (ecg::TRow& row : rows)
            row = ecg::sum(row, constant(row.size(), offset));
        VERIFY_TIMES(detect(rows).times(), times);
    }

    void channelsUnfitToVoteHideNoBeat_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char* kind : {"flat", "missing", "saturated", "clipped"})
            QTest::newRow(kind) << QString::fromLatin1(kind);
    }

    void channelsUnfitToVoteHideNoBeat()
    {
        QFETCH(QString, kind);
        const auto times = ecg::regular(0.6, 0.8, 18);
        ecg::TRows rows = channelsOf(12, 15.0, times);
        // Only three limb leads are left.
        for (int channel = 3; channel < 12; ++channel) {
            for (std::size_t i = 0; i < rows[channel].size(); ++i) {
                if (kind == QLatin1String("flat"))
                    rows[channel][i] = 1234.0;
                else if (kind == QLatin1String("missing"))
                    rows[channel][i] = 0.0;
                else if (kind == QLatin1String("saturated"))
                    rows[channel][i] = 32767.0;
                else
                    rows[channel][i] = std::clamp(90000.0 * std::sin(0.1 * double(i)), -32768.0, 32767.0);
            }
        }
        const TBeatLog log = detect(rows);
        // Within the first second there is too little to tell clipping by.
        VERIFY_TIMES(since(1.0, log.times()), since(1.0, times));
        QCOMPARE(log.beats[9].fiducial(0, TBeat::takesPart), 1.0);
        QCOMPARE(log.beats[9].fiducial(10, TBeat::takesPart), 0.0);
    }

    void aChannelThatIsUnpluggedMeanwhileHidesNoBeat()
    {
        const auto times = ecg::regular(0.6, 0.8, 28);
        ecg::TRows rows = channelsOf(4, 23.0, times);
        for (int channel = 1; channel < 4; ++channel)
            std::fill(rows[channel].begin() + 10 * rate, rows[channel].begin() + 15 * rate, 0.0);
        VERIFY_TIMES(detect(rows).times(), times);
    }

    void aBeatThatOnlyOneOfManyChannelsSeesIsNone()
    {
        const auto times = ecg::regular(0.6, 0.8, 18);
        ecg::TRows rows = channelsOf(12, 15.0, times);
        ecg::add(rows[0], rate, {{0.0, 0.010, 1100.0}}, 6.6 + 0.4);
        VERIFY_TIMES(detect(rows).times(), times);
    }

    void noiseInAFewChannelsHidesNoBeat()
    {
        const auto times = ecg::regular(0.6, 0.8, 36);
        ecg::TRows rows = channelsOf(12, 30.0, times);
        for (int channel = 0; channel < 3; ++channel)
            rows[channel] = ecg::noise(30 * rate, 500.0, 11 + channel);
        VERIFY_TIMES(detect(rows).times(), times);
    }

    void nothingButNoiseIsSurvived()
    {
        for (const int channels : {1, 2, 12}) {
            ecg::TRows rows;
            for (int channel = 0; channel < channels; ++channel)
                rows.push_back(ecg::noise(30 * rate, 8000.0, 1 + channel));
            const TBeatLog log = detect(rows);
            // Whatever it takes for beats, they are in order and not closer than 0.2 s.
            const auto times = log.times();
            for (std::size_t i = 1; i < times.size(); ++i)
                QVERIFY(log.beats[i].valid() ? times[i] > times[i - 1] : true);
            QVERIFY(times.size() < 150U);
        }
    }

    void alternatingExtremesAreSurvived()
    {
        for (const int period : {1, 2, 3, 50, 250}) {
            ecg::TRow row(10 * rate);
            for (std::size_t i = 0; i < row.size(); ++i)
                row[i] = (i / period) % 2 == 0 ? -32768.0 : 32767.0;
            for (const int channels : {1, 2})
                QVERIFY(detect(ecg::TRows(channels, row)).beats.size() < 60U);
        }
    }

    void recordingsOfTwelveAndThirteenBitsHaveTheirBeats_data()
    {
        QTest::addColumn<int>("bits");
        QTest::addColumn<double>("factor");
        QTest::newRow("12 bits") << 12 << 0.8;
        QTest::newRow("13 bits") << 13 << 0.1;
        QTest::newRow("16 bits") << 16 << 0.1;
    }

    void recordingsOfTwelveAndThirteenBitsHaveTheirBeats()
    {
        QFETCH(int, bits);
        QFETCH(double, factor);
        const auto times = ecg::regular(0.6, 0.8, 18);
        ecg::TRows rows = channelsOf(3, 15.0, times);
        for (ecg::TRow& row : rows)
            for (double& x : row)
                x *= factor;
        TFeeding feeding;
        feeding.bits = bits;
        VERIFY_TIMES(detect(rows, feeding).times(), times);
    }

    void shortRecordingsAreSurvived()
    {
        const ecg::TRow whole = ecg::row(4.0, rate, ecg::regular(0.5, 0.8, 4));
        for (const int count : {1, 2, 3, 7, 14, 15, 16, 29, 30, 31, 60, 249, 250, 251, 300, 999}) {
            const ecg::TRow row(whole.begin(), whole.begin() + count);
            for (const int channels : {1, 3}) {
                const TBeatLog log = detect(ecg::TRows(channels, row));
                QVERIFY(log.beats.size() <= 4U);
                for (const double t : log.times())
                    QVERIFY(t >= 0.0 && t * rate < count);
            }
        }
    }

    void whatIsBelowTheFlatLimitMakesNoBeats()
    {
        for (const unsigned seed : {1U, 2U, 3U}) {
            const ecg::TRows rows{ecg::noise(20 * rate, 8.0, seed), ecg::noise(20 * rate, 8.0, seed + 10)};
            QCOMPARE(detect(rows).beats.size(), 0U);
        }
    }
};

QTEST_GUILESS_MAIN(DetectorRobustnessTest)
#include "DetectorRobustnessTest.moc"
