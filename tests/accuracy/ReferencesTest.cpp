#include "accuracy/References.h"
#include "wfdb/AnnotationBytes.h"
#include "wfdb/RecordingsFolder.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace accuracy;

using TTimes = std::vector<double>;

class ReferencesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beatsAreThoseOfBeatCodes()
    {
        const TBeatReference reference = beats("+N~V|/sTf\"Q", 250.0);
        QCOMPARE(reference.beats, (TTimes{0.8, 1.6, 2.4, 3.6, 4.4}));
        QVERIFY(reference.excluded.empty());
        QVERIFY(reference.marked.covers(1e9));
    }

    void bracketsExcludeFlutter_data()
    {
        QTest::addColumn<QByteArray>("mnemonics");
        QTest::addColumn<double>("start");
        QTest::addColumn<double>("end");
        QTest::newRow("both") << QByteArray("N[!!]N") << 0.8 << 2.0;
        QTest::newRow("opened twice") << QByteArray("N[!![!]N") << 0.8 << 2.8;
        QTest::newRow("never closed") << QByteArray("NN[!!") << 1.2 << wholeRecord.end;
        QTest::newRow("never opened") << QByteArray("!!]NN") << wholeRecord.start << 1.2;
    }

    void bracketsExcludeFlutter()
    {
        QFETCH(QByteArray, mnemonics);
        const TBeatReference reference = beats(mnemonics, 250.0);
        QCOMPARE(reference.excluded.size(), std::size_t(1));
        QTEST(reference.excluded[0].start, "start");
        QTEST(reference.excluded[0].end, "end");
    }

    void aFileMayCountInAFrequencyOfItsOwn()
    {
        const QByteArray bytes =
            TAnnotationBytes().add('"', 0).aux("## time resolution: 1000").add('N', 500).bytes();
        QCOMPARE(readBeats(write(bytes), 250.0).beats, TTimes{0.5});
    }

    void wavesBelongToTheirBeats()
    {
        const std::vector<TMarkedBeat> list = marks("(p)(N)(t)(p)(V)(t)");
        QCOMPARE(list.size(), std::size_t(2));
        for (std::size_t i = 0; i < 2; ++i) {
            const double start = static_cast<double>(i) * 9.0;
            QCOMPARE(list[i].r, start + 5.0);
            const TTimes expected{1.0, 2.0, 3.0, 4.0, 6.0, 7.0, 8.0, 9.0};
            for (int mark = 0; mark < markCount; ++mark)
                QCOMPARE(list[i].marks[std::size_t(mark)].value_or(-1.0),
                         start + expected[std::size_t(mark)]);
        }
    }

    void marksThatAreMissingStayEmpty_data()
    {
        QTest::addColumn<QByteArray>("mnemonics");
        QTest::addColumn<int>("beats");
        QTest::addColumn<QByteArray>("marks");
        // Of the first beat, in the order of the marks: the place of each, from 1 on.
        QTest::newRow("QRS alone") << QByteArray("(N)") << 1 << QByteArray("...13...");
        QTest::newRow("peaks alone") << QByteArray("pNt") << 1 << QByteArray(".1....3.");
        QTest::newRow("T without onset") << QByteArray("(N)t)") << 1 << QByteArray("...13.45");
        QTest::newRow("T before the first beat") << QByteArray("(t)(N)") << 1 << QByteArray("...46...");
        QTest::newRow("P behind the last beat") << QByteArray("(N)(p)") << 1 << QByteArray("...13...");
        QTest::newRow("two P waves") << QByteArray("(p)(p)(N)") << 1 << QByteArray("45679...");
        QTest::newRow("U wave") << QByteArray("(N)(t)(u)") << 1 << QByteArray("...13456");
        QTest::newRow("two T waves") << QByteArray("(N)(t)(t)") << 1 << QByteArray("...13456");
        QTest::newRow("two peaks in a T wave") << QByteArray("(N)(tt)") << 1 << QByteArray("...13457");
        QTest::newRow("no QRS offset") << QByteArray("(N(t)") << 1 << QByteArray("...1.345");
        QTest::newRow("nothing") << QByteArray("((()))") << 0 << QByteArray();
        QTest::newRow("other codes between") << QByteArray("(+N~)") << 1 << QByteArray("...15...");
    }

    void marksThatAreMissingStayEmpty()
    {
        QFETCH(QByteArray, mnemonics);
        QFETCH(QByteArray, marks);
        const std::vector<TMarkedBeat> list = this->marks(mnemonics);
        QTEST(int(list.size()), "beats");
        for (int mark = 0; mark < marks.size(); ++mark) {
            const auto& time = list[0].marks[std::size_t(mark)];
            QCOMPARE(time ? char('0' + int(*time)) : '.', marks.at(mark));
        }
    }

    void beatsOfAnyLeadAreOneList()
    {
        const auto lead = [](const TTimes& times) {
            std::vector<TMarkedBeat> list;
            for (const double t : times) {
                list.emplace_back();
                list.back().r = t;
            }
            return list;
        };
        const TBeatReference reference =
            mergeLeads({lead({1.00, 2.00, 3.00}), lead({1.02, 3.10}), lead({1.01, 3.04, 4.0}), {}});
        QCOMPARE(reference.beats, (TTimes{1.01, 2.0, 3.04, 4.0}));
        QVERIFY(!reference.marked.covers(0.84) && reference.marked.covers(0.86));
        QVERIFY(reference.marked.covers(4.14) && !reference.marked.covers(4.16));
    }

    void withoutAnyMarkNothingIsFalse()
    {
        const TBeatReference reference = mergeLeads({{}, {}});
        QCOMPARE(scoreBeats(reference, {1.0, 2.0}), TBeatCounts());
    }

    void realAnnotationsAreUnderstood()
    {
        const QString folder = recordingsFolder();
        if (folder.isEmpty())
            QSKIP(noRecordings);
        const TBeatReference flutter = readBeats(folder + QStringLiteral("/mitdb/207.atr"), 360.0);
        QCOMPARE(flutter.beats.size(), std::size_t(1860));
        QCOMPARE(flutter.excluded.size(), std::size_t(6));

        const auto waves = readMarks(folder + QStringLiteral("/qtdb/sel100.q1c"), 250.0);
        QCOMPARE(waves.size(), std::size_t(30));
        for (const TMarkedBeat& beat : waves) {
            QVERIFY(beat.marks[POnset] && beat.marks[PPeak] && beat.marks[POffset]);
            QVERIFY(beat.marks[QrsOnset] && beat.marks[QrsOffset] && beat.marks[TPeak] &&
                    beat.marks[TOffset]);
            QVERIFY(*beat.marks[POnset] < *beat.marks[PPeak] &&
                    *beat.marks[POffset] <= *beat.marks[QrsOnset]);
            QVERIFY(*beat.marks[QrsOnset] < beat.r && beat.r < *beat.marks[QrsOffset]);
            QVERIFY(*beat.marks[QrsOffset] < *beat.marks[TPeak] && *beat.marks[TPeak] < *beat.marks[TOffset]);
        }

        std::vector<std::vector<TMarkedBeat>> leads;
        for (const QString& ending : leadEndings())
            leads.push_back(readMarks(folder + QStringLiteral("/ludb/1.") + ending, 500.0));
        QCOMPARE(leads.size(), std::size_t(12));
        QCOMPARE(mergeLeads(leads).beats.size(), std::size_t(6));
    }

private:
    QString write(const QByteArray& bytes) const
    {
        const QString path = m_folder.filePath(QStringLiteral("r.atr"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("The scratch folder takes no file.");
        return path;
    }

    /// An annotation every `interval` samples, from that on.
    QString write(const QByteArray& mnemonics, int interval) const
    {
        TAnnotationBytes bytes;
        for (const char mnemonic : mnemonics)
            bytes.add(mnemonic, interval);
        return write(bytes.bytes());
    }

    TBeatReference beats(const QByteArray& mnemonics, double frequency) const
    {
        return readBeats(write(mnemonics, 100), frequency);
    }

    /// One annotation a second, the first at 1 s.
    std::vector<TMarkedBeat> marks(const QByteArray& mnemonics) const
    {
        return readMarks(write(mnemonics, 100), 100.0);
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(ReferencesTest)
#include "ReferencesTest.moc"
