#include "base/Error.h"
#include "wfdb/RecordingsFolder.h"
#include "wfdb/TWfdbRecord.h"

#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

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

    void absentFilesAreTold()
    {
        QCOMPARE(failure("absent"), QStringLiteral("Cannot read WFDB header"));
        write("c.hea", "c 1 500 2\nd.dat 16 1\n");
        QCOMPARE(failure("c"), QStringLiteral("Cannot read WFDB signal file"));
        write("e.hea", "e 2 500 2\ne.dat 16 1\ne.dat 212 1\n");
        write("e.dat", QByteArray(12, '\1'));
        QCOMPARE(failure("e"), QStringLiteral("Cannot read WFDB signal file"));
    }

    void realRecordsAreReadToTheirEnd()
    {
        const QString folder = recordingsFolder();
        if (folder.isEmpty())
            QSKIP(noRecordings);
        int records = 0;
        QDirIterator headers(folder, {QStringLiteral("*.hea")}, QDir::Files, QDirIterator::Subdirectories);
        while (headers.hasNext()) {
            const TWfdbRecord record(headers.next());
            QVERIFY2(record.sampleCount() == record.header().sampleCount, qPrintable(headers.filePath()));
            for (int signal = 0; signal < record.signalCount(); ++signal) {
                for (qint64 i = 0; i < record.sampleCount(); i += 97)
                    QVERIFY2(std::abs(record.millivolts(signal, i)) < 40.0, qPrintable(headers.filePath()));
            }
            ++records;
        }
        QVERIFY(records > 0);
    }

private:
    QString path(const char* name) const { return m_folder.filePath(QLatin1String(name)); }

    void write(const char* name, const QByteArray& bytes)
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
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
