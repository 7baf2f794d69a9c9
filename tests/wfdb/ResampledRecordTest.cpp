#include "base/Error.h"
#include "wfdb/RecordFiles.h"
#include "wfdb/RecordingsFolder.h"
#include "wfdb/TResampledRecord.h"

#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <functional>

namespace {

using TChannels = std::vector<std::vector<short>>;

constexpr double countValue = 600.0 / 65536.0;

TChannels readAll(TResampledRecord& resampled, int blockSize = 4096)
{
    TChannels channels(static_cast<std::size_t>(resampled.channelCount()));
    TChannels block(channels.size(), std::vector<short>(static_cast<std::size_t>(blockSize)));
    std::vector<short*> out;
    for (std::vector<short>& channel : block)
        out.push_back(channel.data());
    while (const int count = resampled.read(blockSize, out.data())) {
        for (std::size_t i = 0; i < channels.size(); ++i)
            channels[i].insert(channels[i].end(), block[i].begin(), block[i].begin() + count);
    }
    return channels;
}

TChannels resample(const QString& path, int blockSize = 4096)
{
    const TWfdbRecord record(path);
    TResampledRecord resampled(record);
    return readAll(resampled, blockSize);
}

/// Where the energy of a pulse lies, in samples.
double centreOf(const std::vector<short>& samples)
{
    double sum = 0.0;
    double moment = 0.0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double energy = double(samples[i]) * samples[i];
        sum += energy;
        moment += energy * static_cast<double>(i);
    }
    return moment / sum;
}

} // namespace

class ResampledRecordTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fiveHundredHertzComeThroughUnchanged()
    {
        // With this gain an ADC unit is a count.
        TMadeSignal signal{"I", {}, "109.22666666666666667"};
        for (int i = 0; i < 10000; ++i)
            signal.samples.push_back(static_cast<qint16>(i * 7919 % 65535 - 32767));
        const TChannels channels = resample(write("500", {signal}));
        QCOMPARE(channels.size(), std::size_t(1));
        QCOMPARE(channels[0], std::vector<short>(signal.samples.begin(), signal.samples.end()));
    }

    void sinesStayWhereTheyAre_data() { addFrequencies(); }

    void sinesStayWhereTheyAre()
    {
        QFETCH(double, frequency);
        constexpr double hertz = 17.0;
        const auto sine = [](double t) { return 20.0 * std::sin(2.0 * M_PI * hertz * t); };
        const TChannels channels = resample(write(frequency, 10.0, sine));
        double worst = 0.0;
        // Where the sine breaks off it is none.
        constexpr std::size_t margin = 2000;
        for (std::size_t i = margin; i + margin < channels[0].size(); ++i)
            worst = std::max(worst, std::abs(channels[0][i] * countValue - sine(double(i) / 500.0)));
        // A count and the steps of the record; a tenth of a sample would be 0.4 mV.
        QVERIFY2(worst < 0.012, qPrintable(QString::number(worst)));
    }

    void pulsesStayWhereTheyAre_data() { addFrequencies(); }

    void pulsesStayWhereTheyAre()
    {
        QFETCH(double, frequency);
        TMadeSignal signal{"I", std::vector<qint16>(static_cast<std::size_t>(frequency * 4.0)), "109.2267"};
        const std::size_t place = signal.samples.size() / 2 / 2 * 2;
        signal.samples[place] = 20000;
        const TChannels channels = resample(write(QByteArray::number(frequency), {signal}));
        const double expected = static_cast<double>(place) * 500.0 / frequency;
        QVERIFY2(std::abs(centreOf(channels[0]) - expected) < 0.05,
                 qPrintable(QString::number(centreOf(channels[0]) - expected)));
    }

    void aBaselineIsFlatFromEndToEnd_data() { addFrequencies(); }

    void aBaselineIsFlatFromEndToEnd()
    {
        QFETCH(double, frequency);
        const TChannels channels = resample(write(frequency, 3.0, [](double) { return 20.0; }));
        const auto expected = static_cast<short>(std::lround(20.0 / countValue));
        for (const short sample : channels[0])
            QVERIFY(std::abs(sample - expected) <= 1);
    }

    void theLengthIsRounded_data()
    {
        QTest::addColumn<QByteArray>("frequency");
        QTest::addColumn<int>("samples");
        QTest::addColumn<int>("expected");
        QTest::newRow("250 Hz") << QByteArray("250") << 1001 << 2002;
        QTest::newRow("1000 Hz, half up") << QByteArray("1000") << 1001 << 501;
        QTest::newRow("360 Hz") << QByteArray("360") << 1000 << 1389;
        QTest::newRow("257 Hz") << QByteArray("257") << 1000 << 1946;
        QTest::newRow("one sample") << QByteArray("128") << 1 << 4;
        QTest::newRow("nothing left") << QByteArray("2000") << 1 << 0;
        QTest::newRow("500 Hz") << QByteArray("500") << 777 << 777;
    }

    void theLengthIsRounded()
    {
        QFETCH(QByteArray, frequency);
        QFETCH(int, samples);
        const TMadeSignal signal{"I", std::vector<qint16>(static_cast<std::size_t>(samples), 300)};
        const TWfdbRecord record(write(frequency, {signal}));
        TResampledRecord resampled(record);
        QTEST(int(resampled.sampleCount()), "expected");
        QTEST(int(readAll(resampled)[0].size()), "expected");
    }

    void theSizeOfBlocksMakesNoDifference()
    {
        const QString path =
            write(360, 20.0, [](double t) { return std::sin(t * t) + 5.0 * std::sin(3.0 * t); });
        const TChannels whole = resample(path, 100000);
        QCOMPARE(whole[0].size(), std::size_t(10000));
        QCOMPARE(resample(path, 4096), whole);
        QCOMPARE(resample(path, 51), whole);
        QCOMPARE(resample(path, 1), whole);
    }

    void aGapHoldsTheSampleBeforeIt()
    {
        constexpr qint16 gap = TWfdbSignalFile::missing;
        const TMadeSignal holes{"I", {gap, gap, 100, 200, gap, gap, 300, gap}, "109.22666666666666667"};
        const TMadeSignal nothing{"II", std::vector<qint16>(8, gap), "1(500)"};
        const TChannels channels = resample(write("500", {holes, nothing}));
        QCOMPARE(channels[0], (std::vector<short>{100, 100, 100, 200, 200, 200, 300, 300}));
        QCOMPARE(channels[1], std::vector<short>(8, 0));
    }

    void whatIsOutOfRangeIsHeldAtItsEnds()
    {
        const TMadeSignal signal{"I", {32767, -32767, 0, 1}, "1"};
        const TMadeSignal endless{"II", {32767, -32767, 0, 1}, "1e-300"};
        for (const std::vector<short>& channel : resample(write("500", {signal, endless}))) {
            QCOMPARE(channel[0], short(32767));
            QCOMPARE(channel[1], short(-32768));
            QCOMPARE(channel[2], short(0));
        }
        for (const std::vector<short>& channel : resample(write("250", {signal, endless})))
            QCOMPARE(channel.size(), std::size_t(8));
    }

    void leadsHaveOurNames_data()
    {
        QTest::addColumn<QByteArray>("description");
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("ours") << QByteArray("aVR") << QByteArray("aVR");
        QTest::newRow("small letters") << QByteArray("avr") << QByteArray("aVR");
        QTest::newRow("capitals") << QByteArray("AVF") << QByteArray("aVF");
        QTest::newRow("limb lead") << QByteArray("iii") << QByteArray("III");
        QTest::newRow("chest lead") << QByteArray("v6") << QByteArray("V6");
        QTest::newRow("exercise lead") << QByteArray("cm5") << QByteArray("CM5");
        QTest::newRow("with a word before") << QByteArray("Lead II") << QByteArray("II");
        QTest::newRow("with two") << QByteArray("ECG lead aVL") << QByteArray("aVL");
        QTest::newRow("modified lead") << QByteArray("MLII") << QByteArray("MLII");
        QTest::newRow("no chest lead") << QByteArray("V7") << QByteArray("V7");
        QTest::newRow("turned round") << QByteArray("-aVR") << QByteArray("-aVR");
        QTest::newRow("with words behind") << QByteArray("II, filtered") << QByteArray("II filtered");
        QTest::newRow("Latin-1") << QByteArray("\xe9lectrode") << QByteArray("\xc3\xa9lectrode");
        QTest::newRow("UTF-8") << QByteArray("\xc3\xa9lectrode") << QByteArray("\xc3\xa9lectrode");
        QTest::newRow("control characters") << QByteArray("a\1b\x7f") << QByteArray("a b");
        QTest::newRow("long") << QByteArray(200, 'x') << QByteArray(32, 'x');
        QTest::newRow("long, of two bytes")
            << 'x' + QByteArray("\xc3\xa9").repeated(50) << 'x' + QByteArray("\xc3\xa9").repeated(15);
        QTest::newRow("commas only") << QByteArray(",,") << QByteArray("Signal 2");
        QTest::newRow("none") << QByteArray() << QByteArray("Signal 2");
    }

    void leadsHaveOurNames()
    {
        QFETCH(QByteArray, description);
        const TWfdbRecord record(write("500", {{"first", {0}}, {description, {0}}}));
        QTEST(TResampledRecord(record).channelNames()[1], "name");
    }

    void whatIsNoVoltageIsLeftOut()
    {
        const TMadeSignal pressure{"ABP", {100}, "1/mmHg"};
        const TWfdbRecord record(write("500", {pressure, {"V1", {1}, "1000/uV"}, pressure, {"V2", {2}}}));
        TResampledRecord resampled(record);
        QCOMPARE(resampled.channelNames(), (std::vector<QByteArray>{"V1", "V2"}));
        QCOMPARE(readAll(resampled), (TChannels{{0}, {0}}));
    }

    void whatCannotBeAStudyIsRefused_data()
    {
        QTest::addColumn<QByteArray>("frequency");
        QTest::addColumn<int>("signalCount");
        QTest::addColumn<int>("samples");
        QTest::addColumn<QByteArray>("gain");
        QTest::addColumn<QString>("text");
        const QByteArray gain = "200";
        QTest::newRow("no voltage") << QByteArray("500") << 2 << 1 << QByteArray("1/mmHg")
                                    << QStringLiteral("WFDB record has no ECG");
        QTest::newRow("17 signals") << QByteArray("500") << 17 << 1 << gain
                                    << QStringLiteral("WFDB record has more than 16 signals");
        QTest::newRow("no samples") << QByteArray("500") << 1 << 0 << gain
                                    << QStringLiteral("WFDB record has no samples");
        QTest::newRow("too slow") << QByteArray("49.9") << 1 << 1 << gain
                                  << QStringLiteral("WFDB record has less than 50 samples a second");
    }

    void whatCannotBeAStudyIsRefused()
    {
        QFETCH(QByteArray, frequency);
        QFETCH(int, signalCount);
        QFETCH(int, samples);
        QFETCH(QByteArray, gain);
        const TMadeSignal signal{"I", std::vector<qint16>(static_cast<std::size_t>(samples)), gain};
        const QString path =
            write(frequency, std::vector<TMadeSignal>(static_cast<std::size_t>(signalCount), signal));
        const TWfdbRecord record(path);
        QString text;
        try {
            const TResampledRecord resampled(record);
        } catch (const TError& error) {
            text = error.text();
        }
        QTEST(text, "text");
    }

    void sixteenSignalsAreTaken()
    {
        const TWfdbRecord record(write("360", std::vector<TMadeSignal>(16, {"V1", {1, 2, 3}})));
        TResampledRecord resampled(record);
        QCOMPARE(readAll(resampled).size(), std::size_t(16));
    }

    void realRecordsHaveTheirVoltagesAtFiveHundredHertz()
    {
        if (recordingsFolder().isEmpty())
            QSKIP(noRecordings);
        // Peaks of a record of 1000 Hz are where its own samples have them.
        const TWfdbRecord record(recordingsFolder() + QStringLiteral("/ptb/s0010_re"));
        TResampledRecord resampled(record);
        QCOMPARE(resampled.channelCount(), 15);
        QCOMPARE(resampled.channelNames()[3], QByteArray("aVR"));
        QCOMPARE(resampled.channelNames()[14], QByteArray("vz"));
        const TChannels channels = readAll(resampled);
        QCOMPARE(channels[0].size(), std::size_t(19200));
        double worst = 0.0;
        for (int i = 0; i < 19200; ++i)
            worst = std::max(worst, std::abs(channels[1][static_cast<std::size_t>(i)] * countValue -
                                             record.millivolts(1, 2 * i)));
        QVERIFY2(worst < 0.1, qPrintable(QString::number(worst)));
    }

private:
    static void addFrequencies()
    {
        QTest::addColumn<double>("frequency");
        for (const double frequency :
             {50.0, 128.0, 250.0, 257.0, 360.0, 399.7, 499.0, 1000.0, 2000.0, 5000.0})
            QTest::newRow(QByteArray::number(frequency).constData()) << frequency;
    }

    QString write(const QByteArray& frequency, const std::vector<TMadeSignal>& signalList) const
    {
        return writeRecord(m_folder.path(), "r", frequency, signalList);
    }

    /// A record of one signal that follows a function of the time.
    QString write(double frequency, double seconds, const std::function<double(double)>& millivolts) const
    {
        TMadeSignal signal{"I", {}};
        const int count = static_cast<int>(frequency * seconds);
        for (int i = 0; i < count; ++i)
            signal.samples.push_back(static_cast<qint16>(std::lround(millivolts(i / frequency) * 1000.0)));
        return write(QByteArray::number(frequency), {signal});
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(ResampledRecordTest)
#include "ResampledRecordTest.moc"
