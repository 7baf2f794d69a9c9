#include "base/Error.h"
#include "wfdb/RecordingsFolder.h"
#include "wfdb/TWfdbRecord.h"

#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

#include <array>
#include <numeric>

#include <sys/stat.h>

class WfdbRecordTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sixteenBitSamplesAreReadAsTheHeaderTells()
    {
        write("r.hea", "r 2 500 3\n"
                       "r.dat 16 1000(100)/mV 16 0 0 0 0 lead I\n"
                       "r.dat 16 200 16 -5 0 0 0 ii\n");
        write("r.dat", QByteArray::fromHex("e803"
                                           "fbff"
                                           "6400"
                                           "c300"
                                           "0080"
                                           "0080"));
        const TWfdbRecord record(path("r"));
        QCOMPARE(record.signalCount(), 2);
        QCOMPARE(record.sampleCount(), qint64(3));
        QCOMPARE(record.header().frequency, 500.0);
        QCOMPARE(record.header().channels[0].description, QByteArray("lead I"));
        QCOMPARE(record.header().channels[1].description, QByteArray("ii"));
        QCOMPARE(record.millivolts(0, 0), 0.9);
        QCOMPARE(record.millivolts(0, 1), 0.0);
        // Without a baseline of its own the ADC zero is one.
        QCOMPARE(record.millivolts(1, 0), 0.0);
        QCOMPARE(record.millivolts(1, 1), 1.0);
        // A sample that was not taken, and what is no sample.
        QCOMPARE(record.millivolts(0, 2), 0.0);
        QCOMPARE(record.millivolts(0, 3), 0.0);
        QCOMPARE(record.millivolts(0, -1), 0.0);
        QCOMPARE(record.millivolts(2, 0), 0.0);
    }

    void twelveBitSamplesArePairsInThreeBytes()
    {
        write("p.hea", "p 2 360/360(0) 2 0:0:0 1/1/2000 # a comment is no field\n"
                       "# a comment\n"
                       "p.dat 212 200 11 1024 0 0 0 MLII\n"
                       "p.dat 212 200 11 1024 0 0 0 V5\n");
        // 995 and 1011 as in any two-lead record, then -1 and -2048, which stands for a missing sample.
        write("p.dat", QByteArray::fromHex("e333f3"
                                           "ff8f00"));
        const TWfdbRecord record(path("p.hea"));
        QCOMPARE(record.header().frequency, 360.0);
        QCOMPARE(record.millivolts(0, 0), (995 - 1024) / 200.0);
        QCOMPARE(record.millivolts(1, 0), (1011 - 1024) / 200.0);
        QCOMPARE(record.millivolts(0, 1), (-1 - 1024) / 200.0);
        QCOMPARE(record.millivolts(1, 1), 0.0);
    }

    void signalsMayLieInSeveralFilesBehindAnOffset()
    {
        write("m.hea", "m 2 100 2\nm.mat 16+4 1000/uV 16 0 0 0 0 I\nn.dat 16 1/V 16 0 0 0 0 II\n");
        write("m.mat", QByteArray::fromHex("ffffffff"
                                           "e803"
                                           "d007"));
        write("n.dat", QByteArray::fromHex("0100"
                                           "0200"
                                           "0300"));
        const TWfdbRecord record(path("m"));
        QCOMPARE(record.sampleCount(), qint64(2));
        QCOMPARE(record.millivolts(0, 1), 0.002);
        QCOMPARE(record.millivolts(1, 1), 2000.0);
    }

    void theShortestSignalEndsTheRecord()
    {
        write("s.hea", "s 2 100\ns.dat 16 1 16 0 0 0 0 I\nt.dat 16 1 16 0 0 0 0 II\n");
        write("s.dat", QByteArray(10, '\1'));
        write("t.dat", QByteArray(5, '\1'));
        QCOMPARE(TWfdbRecord(path("s")).sampleCount(), qint64(2));
    }

    void whatIsNoHeaderOfOursIsRefused_data()
    {
        QTest::addColumn<QByteArray>("header");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("comments only") << QByteArray("# nothing\n");
        QTest::newRow("several segments") << QByteArray("b/2 1 500 2\nb.dat 16 1\n");
        QTest::newRow("no signals") << QByteArray("b 0 500 2\n");
        QTest::newRow("too many signals") << QByteArray("b 65 500 2\n");
        QTest::newRow("fewer lines than signals") << QByteArray("b 2 500 2\nb.dat 16 1\n");
        QTest::newRow("frequency 0") << QByteArray("b 1 0 2\nb.dat 16 1\n");
        QTest::newRow("negative frequency") << QByteArray("b 1 -5 2\nb.dat 16 1\n");
        QTest::newRow("negative count") << QByteArray("b 1 500 -2\nb.dat 16 1\n");
        QTest::newRow("other format") << QByteArray("b 1 500 2\nb.dat 310 1\n");
        QTest::newRow("several samples a frame") << QByteArray("b 1 500 2\nb.dat 16x4 1\n");
        QTest::newRow("another folder") << QByteArray("b 1 500 2\n../b.dat 16 1\n");
        QTest::newRow("another folder of Windows") << QByteArray("b 1 500 2\n..\\b.dat 16 1\n");
        QTest::newRow("another drive") << QByteArray("b 1 500 2\nc:b.dat 16 1\n");
        QTest::newRow("the folder itself") << QByteArray("b 1 500 2\n. 16 1\n");
        QTest::newRow("the folder above") << QByteArray("b 1 500 2\n.. 16 1\n");
        QTest::newRow("control character in the name") << QByteArray("b 1 500 2\nb\1.dat 16 1\n");
        QTest::newRow("skew") << QByteArray("b 1 500 2\nb.dat 16:3 1\n");
        QTest::newRow("negative offset") << QByteArray("b 1 500 2\nb.dat 16+-4 1\n");
        QTest::newRow("endless offset") << QByteArray("b 1 500 2\nb.dat 16+9999999999999999999 1\n");
        QTest::newRow("no number as gain") << QByteArray("b 1 500 2\nb.dat 16 nan\n");
        QTest::newRow("two points in the gain") << QByteArray("b 1 500 2\nb.dat 16 1.2.3\n");
        QTest::newRow("two gains") << QByteArray("b 1 500 2\nb.dat 16 200-5\n");
        QTest::newRow("half an exponent") << QByteArray("b 1 500 2\nb.dat 16 1e\n");
        QTest::newRow("no digits in the gain") << QByteArray("b 1 500 2\nb.dat 16 .\n");
        QTest::newRow("letters behind the gain") << QByteArray("b 1 500 2\nb.dat 16 200mV\n");
        QTest::newRow("endless gain") << QByteArray("b 1 500 2\nb.dat 16 1e999\n");
        QTest::newRow("endless baseline") << QByteArray("b 1 500 2\nb.dat 16 1(99999999999)\n");
        QTest::newRow("broken baseline") << QByteArray("b 1 500 2\nb.dat 16 1(5\n");
        QTest::newRow("no number as ADC zero") << QByteArray("b 1 500 2\nb.dat 16 1 16 x\n");
        QTest::newRow("no number as frequency") << QByteArray("b 1 nan 2\nb.dat 16 1\n");
        QTest::newRow("letters behind the frequency") << QByteArray("b 1 360abc 2\nb.dat 16 1\n");
        QTest::newRow("two points in the frequency") << QByteArray("b 1 3.6.0 2\nb.dat 16 1\n");
        QTest::newRow("two frequencies") << QByteArray("b 1 360-5 2\nb.dat 16 1\n");
        QTest::newRow("broken counter start") << QByteArray("b 1 360(0 2\nb.dat 16 1\n");
        QTest::newRow("endless frequency") << QByteArray("b 1 1e9 2\nb.dat 16 1\n");
        QTest::newRow("no number as count") << QByteArray("b 1 500 many\nb.dat 16 1\n");
        QTest::newRow("endless count") << QByteArray("b 1 500 9999999999999999\nb.dat 16 1\n");
        QTest::newRow("no number of signals") << QByteArray("b x 500 2\nb.dat 16 1\n");
        QTest::newRow("no format") << QByteArray("b 1 500 2\nb.dat\n");
        QTest::newRow("too long") << QByteArray(70000, 'x');
    }

    void whatIsNoHeaderOfOursIsRefused()
    {
        QFETCH(QByteArray, header);
        write("b.hea", header);
        write("b.dat", QByteArray(4, '\1'));
        QCOMPARE(failure("b"), QStringLiteral("Cannot read WFDB header"));
    }

    void numbersAreReadInTheFormsThatOccur_data()
    {
        QTest::addColumn<QByteArray>("frequency");
        QTest::addColumn<QByteArray>("gain");
        QTest::newRow("plain") << QByteArray("360") << QByteArray("200");
        QTest::newRow("fractions") << QByteArray("360.0") << QByteArray("200.0");
        QTest::newRow("a point without digits") << QByteArray("360.") << QByteArray("200.");
        QTest::newRow("exponents") << QByteArray("3.6e2") << QByteArray("+2E+02");
        QTest::newRow("counter frequency") << QByteArray("360/250") << QByteArray("200/mV");
        QTest::newRow("counter start") << QByteArray("360/250(7)") << QByteArray("200(0)");
        QTest::newRow("counter start alone") << QByteArray("360(0)") << QByteArray("200(0)/mV");
    }

    void numbersAreReadInTheFormsThatOccur()
    {
        QFETCH(QByteArray, frequency);
        QFETCH(QByteArray, gain);
        write("u.hea", "u 1 " + frequency + " 2\nu.dat 16 " + gain + "\n");
        const TWfdbHeader header = TWfdbHeader::read(path("u.hea"));
        QCOMPARE(header.frequency, 360.0);
        QCOMPARE(header.channels[0].gain, 200.0);
    }

    void aFileThatGetsShorterIsToldAsAFailure_data()
    {
        QTest::addColumn<QByteArray>("format");
        QTest::newRow("16") << QByteArray("16");
        QTest::newRow("212") << QByteArray("212");
    }

    void aFileThatGetsShorterIsToldAsAFailure()
    {
        QFETCH(QByteArray, format);
        write("v.hea", "v 1 500\nv.dat " + format + " 1\n");
        write("v.dat", QByteArray(60000, '\1'));
        const TWfdbRecord record(path("v"));
        const qint64 count = record.sampleCount();
        std::vector<short> samples(static_cast<std::size_t>(count));
        short* const out[] = {samples.data()};
        record.read(0, 100, out);
        QCOMPARE(samples[98], short(0x101));
        QVERIFY(QFile::resize(path("v.dat"), 40000));
        // What is still there goes on being read.
        record.read(1000, 100, out);
        QCOMPARE(samples[98], short(0x101));
        try {
            record.read(0, static_cast<int>(count), out);
            QFAIL("The missing samples were passed over.");
        } catch (const TError& error) {
            QCOMPARE(error.text(), QStringLiteral("Cannot read WFDB signal file"));
        }
    }

    void absentFilesAreTold()
    {
        QCOMPARE(failure("absent"), QStringLiteral("Cannot read WFDB header"));
        write("c.hea", "c 1 500 2\nd.dat 16 1\n");
        QCOMPARE(failure("c"), QStringLiteral("Cannot read WFDB signal file"));
        write("e.hea", "e 2 500 2\ne.dat 16 1\ne.dat 212 1\n");
        write("e.dat", QByteArray(12, '\1'));
        QCOMPARE(failure("e"), QStringLiteral("Cannot read WFDB signal file"));
        QDir(m_folder.path()).mkdir(QStringLiteral("folder"));
        write("f.hea", "f 1 500 2\nfolder 16 1\n");
        QCOMPARE(failure("f"), QStringLiteral("Cannot read WFDB signal file"));
    }

    void filesOfDoubtfulFormAreRefused_data()
    {
        QTest::addColumn<QByteArray>("header");
        QTest::newRow("offset beyond the end") << QByteArray("g 1 500 2\ng.dat 16+13 1\n");
        QTest::newRow("two offsets") << QByteArray("g 2 500 2\ng.dat 16+2 1\ng.dat 16+4 1\n");
        QTest::newRow("file comes back") << QByteArray("g 3 500 2\ng.dat 16 1\nh.dat 16 1\ng.dat 16 1\n");
    }

    void filesOfDoubtfulFormAreRefused()
    {
        QFETCH(QByteArray, header);
        write("g.hea", header);
        write("g.dat", QByteArray(12, '\1'));
        write("h.dat", QByteArray(12, '\1'));
        QCOMPARE(failure("g"), QStringLiteral("Cannot read WFDB signal file"));
    }

    void aCountBeyondTheFileIsThatOfTheFile()
    {
        write("i.hea", "i 1 500 999999999999\ni.dat 16 1\n");
        write("i.dat", QByteArray(7, '\1'));
        QCOMPARE(TWfdbRecord(path("i")).sampleCount(), qint64(3));
        write("j.hea", "j 1 500\nj.dat 212 1\n");
        write("j.dat", QByteArray(7, '\1'));
        QCOMPARE(TWfdbRecord(path("j")).sampleCount(), qint64(4));
        write("j.dat", QByteArray(8, '\1'));
        QCOMPARE(TWfdbRecord(path("j")).sampleCount(), qint64(5));
    }

    void framesAreReadAtAnyPlace()
    {
        // Three signals of format 212: every other frame begins within a pair.
        constexpr int frames = 5001;
        QByteArray bytes;
        for (int pair = 0; pair < (3 * frames + 1) / 2; ++pair) {
            const int first = 2 * pair % 4001 - 2000;
            const int second = (2 * pair + 1) % 4001 - 2000;
            bytes += static_cast<char>(first & 0xff);
            bytes += static_cast<char>((first >> 8 & 0x0f) | (second >> 4 & 0xf0));
            bytes += static_cast<char>(second & 0xff);
        }
        write("k.hea", "k 3 500\nk.dat 212 1\nk.dat 212 1\nk.dat 212 1\n");
        write("k.dat", bytes);
        const TWfdbRecord record(path("k"));
        QCOMPARE(record.sampleCount(), qint64(frames));
        for (const int place : {0, 1, 2, 4094, 4095, 4096, 4097, frames - 1}) {
            for (int signal = 0; signal < 3; ++signal)
                QCOMPARE(record.millivolts(signal, place), (3 * place + signal) % 4001 - 2000.0);
        }
        std::array<std::array<short, 4>, 3> read{};
        const std::array<short*, 3> out{read[0].data(), read[1].data(), read[2].data()};
        record.read(frames - 2, 4, out.data());
        const auto expected = [](int place) { return static_cast<short>((3 * place + 1) % 4001 - 2000); };
        QCOMPARE(read[1], (std::array<short, 4>{expected(frames - 2), expected(frames - 1),
                                                TWfdbSignalFile::missing, TWfdbSignalFile::missing}));
        record.read(-1, 4, out.data());
        QCOMPARE(read[1],
                 (std::array<short, 4>{TWfdbSignalFile::missing, expected(0), expected(1), expected(2)}));
    }

    void extremeScalesStayNumbers()
    {
        write("l.hea", "l 3 500 1\nl.dat 16 -100(-2147483648)/V\nl.dat 16 1e-300\nl.dat 16 0(5)/nV\n");
        write("l.dat", QByteArray::fromHex("ff7f"
                                           "0180"
                                           "0500"));
        const TWfdbRecord record(path("l"));
        QCOMPARE(record.millivolts(0, 0), -(32767.0 + 2147483648.0) * 10.0);
        QVERIFY(record.millivolts(1, 0) < -1e300);
        QCOMPARE(record.millivolts(2, 0), 0.0);
        QCOMPARE(record.header().channels[2].gain, 200.0);
    }

    void unitsTellWhatIsAVoltage_data()
    {
        QTest::addColumn<QByteArray>("unit");
        QTest::addColumn<double>("millivolts");
        QTest::newRow("none") << QByteArray() << 1.0;
        QTest::newRow("mV") << QByteArray("/mV") << 1.0;
        QTest::newRow("mv") << QByteArray("/mv") << 1.0;
        QTest::newRow("uV") << QByteArray("/uV") << 1e-3;
        QTest::newRow("micro in UTF-8") << QByteArray("/\xc2\xb5V") << 1e-3;
        QTest::newRow("micro in Latin-1") << QByteArray("/\xb5V") << 1e-3;
        QTest::newRow("nV") << QByteArray("/nV") << 1e-6;
        QTest::newRow("V") << QByteArray("/V") << 1e3;
        QTest::newRow("mmHg") << QByteArray("/mmHg") << 0.0;
        QTest::newRow("other") << QByteArray("/l/min") << 0.0;
    }

    void unitsTellWhatIsAVoltage()
    {
        QFETCH(QByteArray, unit);
        QFETCH(double, millivolts);
        write("m.hea", "m 1 500\nm.dat 16 1" + unit + "\n");
        const TWfdbHeader header = TWfdbHeader::read(path("m.hea"));
        QCOMPARE(header.channels[0].isVoltage(), millivolts > 0.0);
        QCOMPARE(header.channels[0].millivolts(1), millivolts > 0.0 ? millivolts : 1.0);
    }

    void timesAreReadInTheFormsThatOccur_data()
    {
        QTest::addColumn<QByteArray>("fields");
        QTest::addColumn<QDateTime>("time");
        const QDateTime time(QDate(2020, 5, 15), QTime(15, 22, 5));
        QTest::newRow("time and date") << QByteArray("15:22:05 15/5/2020") << time;
        QTest::newRow("fractions") << QByteArray("15:22:05.250 15/05/2020") << time;
        QTest::newRow("date first") << QByteArray("15-May-2020 15:22:05") << time;
        QTest::newRow("none") << QByteArray() << QDateTime();
        QTest::newRow("time only") << QByteArray("15:22:05") << QDateTime();
        QTest::newRow("no such date") << QByteArray("15:22:05 31/2/2020") << QDateTime();
        QTest::newRow("no such time") << QByteArray("25:22:05 15/5/2020") << QDateTime();
    }

    void timesAreReadInTheFormsThatOccur()
    {
        QFETCH(QByteArray, fields);
        write("n.hea", "n 1 500 2 " + fields + "\r\nn.dat 16 1\r\n");
        QTEST(TWfdbHeader::read(path("n.hea")).baseTime, "time");
    }

    void aPipeIsNoRecord()
    {
        QCOMPARE(mkfifo(QFile::encodeName(path("o.hea")).constData(), 0600), 0);
        QCOMPARE(failure("o"), QStringLiteral("Cannot read WFDB header"));
        write("q.hea", "q 1 500 2\nq.dat 16 1\n");
        QCOMPARE(mkfifo(QFile::encodeName(path("q.dat")).constData(), 0600), 0);
        QCOMPARE(failure("q"), QStringLiteral("Cannot read WFDB signal file"));
    }

    void realRecordsAreThoseThatTheirHeadersTell()
    {
        if (recordingsFolder().isEmpty())
            QSKIP(noRecordings);
        int records = 0;
        QDirIterator headers(recordingsFolder(), {QStringLiteral("*.hea")}, QDir::Files,
                             QDirIterator::Subdirectories);
        while (headers.hasNext()) {
            const TWfdbRecord record(headers.next());
            QVERIFY2(record.sampleCount() == record.header().sampleCount, qPrintable(headers.filePath()));
            const std::vector<std::vector<short>> samples = allSamples(record);
            for (std::size_t signal = 0; signal < samples.size(); ++signal) {
                const QString text =
                    headers.filePath() + QStringLiteral(", signal ") + QString::number(signal);
                QVERIFY2(isAsToldBy(record.header().channels[signal], samples[signal]), qPrintable(text));
            }
            ++records;
        }
        QVERIFY(records > 100);
    }

    void aRealRecordOfTwoFilesHasAllItsSignals()
    {
        if (recordingsFolder().isEmpty())
            QSKIP(noRecordings);
        const TWfdbRecord record(recordingsFolder() + QStringLiteral("/ptb/s0010_re"));
        QCOMPARE(record.signalCount(), 15);
        QCOMPARE(record.header().frequency, 1000.0);
        QCOMPARE(record.header().channels[14].description, QByteArray("vz"));
        QCOMPARE(record.header().channels[14].fileName, QByteArray("s0010_re.xyz"));
        QCOMPARE(record.millivolts(0, 0), -489 / 2000.0);
        QCOMPARE(record.millivolts(14, 0), -18 / 2000.0);
    }

private:
    QString path(const char* name) const { return m_folder.filePath(QLatin1String(name)); }

    void write(const char* name, const QByteArray& bytes)
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    static std::vector<std::vector<short>> allSamples(const TWfdbRecord& record)
    {
        const int count = static_cast<int>(record.sampleCount());
        std::vector<std::vector<short>> samples(static_cast<std::size_t>(record.signalCount()),
                                                std::vector<short>(static_cast<std::size_t>(count)));
        std::vector<short*> out;
        for (std::vector<short>& each : samples)
            out.push_back(each.data());
        record.read(0, count, out.data());
        return samples;
    }

    /// First value, checksum and a sane range.
    static bool isAsToldBy(const TWfdbSignal& signal, const std::vector<short>& samples)
    {
        const int sum = std::accumulate(samples.begin(), samples.end(), 0);
        const bool isSane = std::all_of(samples.begin(), samples.end(), [&](short value) {
            return std::abs(signal.millivolts(value)) < 40.0;
        });
        return signal.initialValue && signal.checksum && *signal.initialValue == samples.front() &&
               static_cast<short>(*signal.checksum) == static_cast<short>(sum) && isSane;
    }

    QString failure(const char* name) const
    {
        try {
            const TWfdbRecord record(path(name));
        } catch (const TError& error) {
            return error.text();
        }
        return {};
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(WfdbRecordTest)
#include "WfdbRecordTest.moc"
