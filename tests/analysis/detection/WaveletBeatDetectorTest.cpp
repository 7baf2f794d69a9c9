#include "analysis/detection/Detection.h"

#include <QtTest>

namespace {

constexpr int rate = 250;

/// Twelve and more channels as a heart makes them: of different size and sign, V4 to V6 upright.
ecg::TRows channelsOf(int count, double seconds, const std::vector<double>& times, int samplingRate = rate)
{
    constexpr double factors[] = {0.6, 1.0, 0.5, -0.8, 0.3, 0.7, -0.6, -0.5,
                                  0.6, 1.1, 1.0, 0.8,  1.0, 0.9, 0.7,  0.5};
    ecg::TRows rows;
    for (int channel = 0; channel < count; ++channel)
        rows.push_back(ecg::row(seconds, samplingRate, times, ecg::scaled(ecg::normal, factors[channel])));
    return rows;
}

ecg::TRow constant(std::size_t count, double value)
{
    return ecg::TRow(count, value);
}

std::vector<double> since(double start, std::vector<double> times)
{
    std::erase_if(times, [start](double t) { return t < start; });
    return times;
}

QByteArray allOf(const TBeatLog& log)
{
    QByteArray text;
    for (const TBeat& beat : log.beats) {
        text += QByteArray::number(beat.number()) + ' ' + QByteArray::number(beat.windowStart()) + ' ' +
                QByteArray::number(beat.windowLength());
        for (int value = 0; value < 3; ++value)
            text += ' ' + QByteArray::number(beat.value(value));
        for (int channel = 0; channel < beat.channelCount(); ++channel)
            for (int slot = 0; slot < 12; ++slot)
                text += ' ' + QByteArray::number(beat.fiducial(channel, slot));
        text += '\n';
    }
    return text;
}

} // namespace

class WaveletBeatDetectorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyBeatIsFound_data()
    {
        QTest::addColumn<int>("channels");
        for (const int channels : {1, 2, 3, 4, 5, 11, 12, 14, 16})
            QTest::newRow(qPrintable(QString::number(channels))) << channels;
    }

    void everyBeatIsFound()
    {
        QFETCH(int, channels);
        const auto times = ecg::regular(0.6, 0.8, 18);
        const TBeatLog log = detect(channelsOf(channels, 15.0, times));
        VERIFY_TIMES(log.times(), times);
        for (std::size_t i = 0; i < log.beats.size(); ++i) {
            QCOMPARE(log.beats[i].number(), int(i));
            QVERIFY(log.beats[i].valid());
            QCOMPARE(log.beats[i].channelCount(), channels);
            if (i > 0)
                QVERIFY(std::abs(log.beats[i].value(TBeat::rr) - 0.8) < 0.005);
            if (i > 4)
                QVERIFY(std::abs(log.beats[i].value(TBeat::meanRR) - 0.8) < 0.005);
        }
    }

    void ratesFromSlowToFastAreFound_data()
    {
        QTest::addColumn<double>("rr");
        for (const double rr : {0.3, 0.4, 0.5, 0.7, 1.0, 1.5, 2.0, 2.8})
            QTest::newRow(qPrintable(QString::number(rr))) << rr;
    }

    void ratesFromSlowToFastAreFound()
    {
        QFETCH(double, rr);
        // A T wave that follows the rate, as it does in life.
        ecg::TShape shape = ecg::normal;
        shape.back().at *= std::min(1.0, std::sqrt(rr));
        shape.back().width *= std::min(1.0, rr);
        const auto times = ecg::regular(0.6, rr, int(28.0 / rr));
        VERIFY_TIMES(detect({ecg::row(30.0, rate, times, shape)}).times(), times);
    }

    void theSamplingRateMayDiffer_data()
    {
        QTest::addColumn<int>("samplingRate");
        for (const int samplingRate : {125, 200, 250, 360, 500})
            QTest::newRow(qPrintable(QString::number(samplingRate))) << samplingRate;
    }

    void theSamplingRateMayDiffer()
    {
        QFETCH(int, samplingRate);
        const auto times = ecg::regular(0.6, 0.8, 12);
        TFeeding feeding;
        feeding.rate = samplingRate;
        VERIFY_TIMES(detect(channelsOf(3, 10.0, times, samplingRate), feeding).times(), times);
    }

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

    void whereTheStepsEndDoesNotMatter_data()
    {
        QTest::addColumn<int>("step");
        QTest::addColumn<int>("blockSize");
        for (const int step : {1, 7, 25, 51, 333, 2500, 4096, 1 << 20})
            QTest::newRow(qPrintable(QString::number(step))) << step << 4096;
        QTest::newRow("everything at once, small blocks") << (1 << 20) << 51;
        QTest::newRow("large steps, small blocks") << 20000 << 1;
    }

    void whereTheStepsEndDoesNotMatter()
    {
        QFETCH(int, step);
        QFETCH(int, blockSize);
        // Longer than what is kept of the transform.
        static const auto times = ecg::regular(0.6, 0.8, 120);
        static const ecg::TRows rows = channelsOf(2, 97.0, times);
        TFeeding feeding;
        static const QByteArray expected = allOf(detect(rows, feeding));
        feeding.step = step;
        feeding.blockSize = blockSize;
        const TBeatLog log = detect(rows, feeding);
        VERIFY_TIMES(log.times(), times);
        if (step < 2500)
            QCOMPARE(allOf(log), expected);
    }

    void aLongRecordingMayComeInOneCall()
    {
        // Longer than ten blocks of the default size.
        const auto times = ecg::regular(0.6, 1.0, 198);
        const TFeeding atOnce{.step = 1 << 20};
        VERIFY_TIMES(detect({ecg::row(200.0, rate, times)}, atOnce).times(), times);
    }

    void withoutAnEndTheLastBeatsWait()
    {
        const auto times = ecg::regular(0.6, 0.8, 12);
        const ecg::TRows rows = channelsOf(2, 10.0, times);
        TFeeding feeding;
        feeding.finish = false;
        const std::size_t live = detect(rows, feeding).beats.size();
        QVERIFY(live >= 8U && live <= 10U);
        feeding.finish = true;
        VERIFY_TIMES(detect(rows, feeding).times(), times);
    }

    void waitingBeatsAreNotLostWhereStepsCutThroughAComplex()
    {
        for (int shift = 0; shift < 50; shift += 3) {
            const auto times = ecg::regular(0.6 + shift / 250.0, 0.8, 12);
            VERIFY_TIMES(detect({ecg::row(11.0, rate, times)}).times(), times);
        }
    }

    void twoComplexesUnder150MillisecondsApartAreOneBeat()
    {
        auto times = ecg::regular(0.6, 0.8, 12);
        ecg::TRow row = ecg::row(11.0, rate, times);
        ecg::add(row, rate, {{0.0, 0.010, 800.0}}, times[6] + 0.12);
        const TBeatLog log = detect({row});
        QCOMPARE(log.beats.size(), times.size());
        QVERIFY(std::abs(log.beats[7].value(TBeat::rr) - 0.8) < 0.03);
    }

    void aPauseLosesNoBeat_data()
    {
        QTest::addColumn<double>("pause");
        for (const double pause : {1.5, 2.0, 2.9, 3.0, 3.1, 3.5, 4.0, 6.0, 12.0, 30.0})
            QTest::newRow(qPrintable(QString::number(pause))) << pause;
    }

    void aPauseLosesNoBeat()
    {
        QFETCH(double, pause);
        auto times = ecg::regular(0.6, 0.8, 10);
        const auto after = ecg::regular(times.back() + pause, 0.8, 10);
        times.insert(times.end(), after.begin(), after.end());
        const ecg::TRows rows = channelsOf(2, times.back() + 1.0, times);
        for (const int step : {50, 4096}) {
            TFeeding feeding;
            feeding.step = step;
            VERIFY_TIMES(detect(rows, feeding).times(), times);
        }
    }

    void aBeatTellsItsWaves()
    {
        const auto times = ecg::regular(0.6, 0.8, 12);
        const TBeatLog log = detect(channelsOf(2, 11.0, times));
        const TBeat& beat = log.beats.at(6);
        const double r = times[6];
        QCOMPARE(beat.fiducial(1, TBeat::takesPart), 1.0);
        for (const int slot : {TBeat::qrsType, TBeat::pType, TBeat::tType})
            QCOMPARE(beat.fiducial(1, slot), 1.0);
        QVERIFY(std::abs(beat.fiducial(1, TBeat::pPeak) - (r - 0.16)) < 0.013);
        QVERIFY(std::abs(beat.fiducial(1, TBeat::rPosition) - r) < 0.009);
        QVERIFY(std::abs(beat.fiducial(1, TBeat::tPeak) - (r + 0.26)) < 0.017);
        QVERIFY(beat.windowStart() < r - 0.15 && beat.windowStart() > r - 0.3);
        QVERIFY(beat.covers(r) && beat.covers(r + 0.3) && !beat.covers(r + 0.5));
    }

    void withoutWavesOnlyTheComplexIsMeasured()
    {
        TInt16Signal signal(4096, 81920, 1, rate);
        TWaveletBeatDetector detector(false);
        TBeatLog log;
        detector.addListener(&log);
        detector.reset(&signal, 0.0, 0.0);
        const auto times = ecg::regular(0.6, 0.8, 12);
        ecg::append(signal, channelsOf(1, 11.0, times), 0, 11 * rate);
        detector.update();
        detector.finish();
        VERIFY_TIMES(log.times(), times);
        for (const TBeat& beat : log.beats) {
            QVERIFY(beat.isFiducialSet(0, TBeat::rPosition));
            QVERIFY(!beat.isFiducialSet(0, TBeat::pPeak) && !beat.isFiducialSet(0, TBeat::tPeak));
            QCOMPARE(beat.fiducial(0, TBeat::pType), 0.0);
            QCOMPARE(beat.fiducial(0, TBeat::tType), 0.0);
        }
    }

    void onlyTheTimeAskedForIsSearched_data()
    {
        QTest::addColumn<double>("startTime");
        QTest::addColumn<double>("endTime");
        QTest::newRow("start") << 5.0 << 0.0;
        QTest::newRow("end") << 0.0 << 8.3;
        QTest::newRow("both") << 10.1 << 14.9;
        QTest::newRow("start at the end") << 29.9 << 0.0;
        QTest::newRow("end before start") << 10.0 << 5.0;
        QTest::newRow("start behind the end") << 31.0 << 0.0;
    }

    void onlyTheTimeAskedForIsSearched()
    {
        QFETCH(double, startTime);
        QFETCH(double, endTime);
        const auto times = ecg::regular(0.6, 0.8, 36);
        std::vector<double> expected;
        for (const double t : times) {
            if (t >= startTime && (endTime <= 0.0 || t <= endTime))
                expected.push_back(t);
        }
        TFeeding feeding;
        feeding.startTime = startTime;
        feeding.endTime = endTime;
        const TBeatLog log = detect(channelsOf(2, 30.0, times), feeding);
        VERIFY_TIMES(log.times(), expected);
        QVERIFY(log.beats.empty() || log.beats[0].number() == 0);
    }

    void resetWhileRunningStartsAfresh()
    {
        const auto times = ecg::regular(0.6, 0.8, 36);
        const ecg::TRows rows = channelsOf(2, 30.0, times);
        TInt16Signal signal(4096, 81920, 2, rate);
        TWaveletBeatDetector detector;
        TBeatLog log;
        detector.addListener(&log);
        detector.reset(&signal, 0.0, 0.0);
        for (int from = 0; from < 30 * rate; from += 50) {
            ecg::append(signal, rows, from, 50);
            detector.update();
            if (from == 15 * rate) {
                QVERIFY(log.beats.size() > 14U);
                log.beats.clear();
                detector.reset(&signal, 12.0, 0.0);
            }
        }
        detector.finish();
        VERIFY_TIMES(log.times(), ecg::regular(12.6, 0.8, 21));
        QCOMPARE(log.beats[0].number(), 0);
        QCOMPARE(log.beats[0].value(TBeat::rr), 0.0);
    }

    void aDetectorMayBeClearedAndUsedAgain()
    {
        const auto times = ecg::regular(0.6, 0.8, 12);
        TInt16Signal first(4096, 81920, 3, rate), second(4096, 81920, 1, 500);
        TWaveletBeatDetector detector;
        TBeatLog log;
        detector.addListener(&log);
        detector.update();
        detector.finish();
        detector.clear();
        detector.reset(&first, 0.0, 0.0);
        ecg::append(first, channelsOf(3, 11.0, times), 0, 11 * rate);
        detector.update();
        detector.clear();
        detector.update();
        detector.finish();
        QVERIFY(!detector.signal());
        log.beats.clear();
        detector.reset(&second, 0.0, 0.0);
        ecg::append(second, channelsOf(1, 11.0, times, 500), 0, 11 * 500);
        detector.update();
        detector.finish();
        VERIFY_TIMES(log.times(), times);
    }

    void theObserverIsToldOfEveryChannelsBeats()
    {
        const auto times = ecg::regular(0.6, 0.8, 12);
        TInt16Signal signal(4096, 81920, 3, rate);
        TWaveletBeatDetector detector;
        std::vector<std::vector<double>> seen(3);
        detector.setCandidateObserver([&](int channel, const TChannelBeat& beat) {
            seen.at(channel).push_back(signal.timeOf(beat.rPosition));
        });
        detector.reset(&signal, 0.0, 0.0);
        ecg::append(signal, channelsOf(3, 11.0, times), 0, 11 * rate);
        detector.update();
        detector.finish();
        for (const auto& channel : seen)
            VERIFY_TIMES(channel, times);
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

    void aRecordingOfASecondHasItsBeat()
    {
        VERIFY_TIMES(detect({ecg::row(1.0, rate, {0.5})}).times(), (std::vector<double>{0.5}));
    }

    void aRecordingOfTenSecondsHasAllItsBeats()
    {
        for (const double first : {0.15, 0.3, 0.5, 0.7}) {
            const auto times = ecg::regular(first, 0.75, int((9.8 - first) / 0.75) + 1);
            const TFeeding atOnce{.step = 1 << 20};
            VERIFY_TIMES(detect(channelsOf(12, 10.0, times), atOnce).times(), times);
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

QTEST_GUILESS_MAIN(WaveletBeatDetectorTest)
#include "WaveletBeatDetectorTest.moc"
