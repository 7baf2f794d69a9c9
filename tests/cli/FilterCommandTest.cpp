#include "analysis/filters/TOfflineFilterChain.h"
#include "analysis/filters/TRealtimeFilterChain.h"
#include "analysis/signals/TInt16Signal.h"
#include "cli/ConsoleTool.h"
#include "study/LocalStudyDatabase.h"
#include "study/StoreFolder.h"
#include "study/Study.h"
#include "study/TEcgFile.h"
#include "support/SampleStudy.h"

#include <QJsonArray>
#include <QtTest>

#include <array>

namespace {

constexpr double seconds = 20.3;
/// More than either ring of the replay: 409600 samples.
constexpr double longSeconds = 850.0;

enum TRecording
{
    At500,
    At1000,
    Long
};

bool isOn(const QStringList& options, const char* name)
{
    return options.contains(QLatin1String(name));
}

template <typename Chain> void apply(Chain& chain, const QStringList& options)
{
    chain.apply(isOn(options, "--notch"), isOn(options, "--muscle"), isOn(options, "--baseline"));
}

/// Gives all of a recording to the input of a chain at once.
void feed(TInt16Signal& input, TEcgFile& ecg)
{
    const int count = ecg.sampleCount();
    std::vector<std::vector<double>> samples(ecg.channelCount(), std::vector<double>(count));
    std::vector<const double*> rows;
    for (int channel = 0; channel < ecg.channelCount(); ++channel) {
        ecg.readDoubles(channel, 0, count, samples[channel].data());
        rows.push_back(samples[channel].data());
    }
    input.addPerChannelDouble(rows.data(), count);
}

} // namespace

Q_DECLARE_METATYPE(TRecording)

class FilterCommandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_folder = std::make_unique<StoreFolder>();
        StudyInfo info = makeSampleInfo();
        addStudy(At500, info, seconds);
        info.samplingRate = 1000;
        addStudy(At1000, info, seconds);
        info.samplingRate = 500;
        info.channelCount = 1;
        info.channelNames = "II";
        addStudy(Long, info, longSeconds);
    }

    void itPrintsTheOffLineChain_data() { switches(); }

    void itPrintsTheOffLineChain()
    {
        QFETCH(TRecording, recording);
        QFETCH(QStringList, options);
        LocalStudyDatabase database(m_folder->path());
        TEcgFile& ecg = *database.openStudy(m_ids[recording])->ecg();
        TOfflineFilterChain chain(&ecg);
        apply(chain, options);
        for (const int channel : {0, 1, 13})
            compare(recording, *chain.current(), channel, ecg.sampleCount(), options);
    }

    void itPrintsTheRealTimeChain_data() { switches(); }

    void itPrintsTheRealTimeChain()
    {
        QFETCH(TRecording, recording);
        QFETCH(QStringList, options);
        LocalStudyDatabase database(m_folder->path());
        TEcgFile& ecg = *database.openStudy(m_ids[recording])->ecg();
        TInt16Signal input(512, 30000, ecg.channelCount(), ecg.samplingRate());
        TRealtimeFilterChain chain(&input);
        apply(chain, options);
        feed(input, ecg);
        chain.update();
        if (ecg.samplingRate() == 500)
            QVERIFY(chain.current()->sampleCount() < ecg.sampleCount());
        for (const int channel : {0, 1, 13})
            compare(recording, *chain.current(), channel, ecg.sampleCount(),
                    options + QStringList(QStringLiteral("--realtime")));
    }

    void aLateSpanOfALongRecordingIsTheLiveChains()
    {
        const QStringList all{QStringLiteral("--notch"), QStringLiteral("--muscle"),
                              QStringLiteral("--baseline")};
        LocalStudyDatabase database(m_folder->path());
        TEcgFile& ecg = *database.openStudy(m_ids[Long])->ecg();
        TInt16Signal input(512, ecg.sampleCount(), 1, 500);
        TRealtimeFilterChain chain(&input);
        apply(chain, all);
        feed(input, ecg);
        chain.update();
        const int reached = chain.current()->sampleCount();
        QVERIFY(reached > 409600 + 10000);
        const int from = reached - 10000;
        const QList<int> printed =
            values(Long, 0, from, 10100, all + QStringList(QStringLiteral("--realtime")));
        QCOMPARE(printed.size(), 10100);
        for (int i = 0; i < 10100; ++i)
            QCOMPARE(printed.at(i), chain.current()->sample(0, from + i));
        QVERIFY(*std::max_element(printed.begin(), printed.end()) > 30);
    }

    void outsideTheRecordingSamplesAreZero_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("off-line") << QStringList();
        QTest::newRow("in real time") << QStringList(QStringLiteral("--realtime"));
    }

    void outsideTheRecordingSamplesAreZero()
    {
        QFETCH(QStringList, options);
        const QList<int> zeros{0, 0};
        const int end = static_cast<int>(seconds * 500);
        QCOMPARE(values(At500, 1, -2, 2, options), zeros);
        QCOMPARE(values(At500, 1, end, 2, options), zeros);
        QCOMPARE(values(At500, 1, std::numeric_limits<int>::max(), 2, options), zeros);
        QCOMPARE(values(At500, 1, std::numeric_limits<int>::min(), 2, options), zeros);
        QCOMPARE(values(At500, 14, 500, 2, options), zeros);
        QCOMPARE(values(At500, -1, 500, 2, options), zeros);
        QCOMPARE(values(At500, 1, 500, 0, options), QList<int>());
        QCOMPARE(values(At500, 1, -3, 10, options).mid(3), values(At500, 1, 0, 7, options));
    }

    void aStretchIsTheSameWhereverItBegins()
    {
        for (const QStringList& options : {QStringList(), QStringList(QStringLiteral("--realtime"))})
            QCOMPARE(values(At500, 1, 5000, 50, options), values(At500, 1, 4980, 80, options).mid(20, 50));
    }

    void helpTellsThatTheRateIsTheRecordings()
    {
        const QByteArray help = runTool({QStringLiteral("--help")}).output;
        QVERIFY(help.contains("[--realtime]"));
        QVERIFY(help.contains("--realtime works at the recording's rate, the live display at 500 Hz"));
    }

private:
    static void switches()
    {
        QTest::addColumn<TRecording>("recording");
        QTest::addColumn<QStringList>("options");
        const QStringList all{QStringLiteral("--baseline"), QStringLiteral("--notch"),
                              QStringLiteral("--muscle")};
        for (const auto& [name, recording] : {std::pair("500", At500), {"1000", At1000}}) {
            QTest::addRow("%s: none", name) << recording << QStringList();
            for (const QString& option : all)
                QTest::addRow("%s: %s", name, qPrintable(option)) << recording << QStringList(option);
            QTest::addRow("%s: all", name) << recording << all;
        }
    }

    void addStudy(TRecording recording, StudyInfo info, double length)
    {
        LocalStudyDatabase database(m_folder->path());
        info.medicalHistoryNumber = QByteArray::number(recording); // part of the files' name
        Study* const study = database.createStudy(info);
        appendSampleRecording(*study, length);
        QCOMPARE(study->ecg()->sampleCount(), study->ecg()->indexOf(length));
        database.closeStudy(study);
        m_ids[recording] = info.id;
    }

    void compare(TRecording recording, TSignal& expected, int channel, int count,
                 const QStringList& options) const
    {
        const QList<int> printed = values(recording, channel, 0, count, options);
        QCOMPARE(printed.size(), count);
        int swing = 0;
        for (int i = 0; i < count; ++i) {
            QCOMPARE(printed.at(i), expected.sample(channel, i));
            swing = std::max(swing, std::abs(printed.at(i)));
        }
        QVERIFY(swing > 30);
    }

    /// What the command prints; empty, with a failure of the test, if it did not run or printed no array.
    QList<int> values(TRecording recording, int channel, int from, int count,
                      const QStringList& options) const
    {
        const TResult result =
            runTool(QStringList({QStringLiteral("--data"), m_folder->path(), QStringLiteral("filter"),
                                 QString::number(m_ids[recording]), QString::number(channel),
                                 QString::number(from), QString::number(count)}) +
                    options);
        const QList<QJsonObject> lines = result.lines();
        const bool isArray = lines.size() == 1 && lines.at(0).value(QLatin1String("values")).isArray();
        QList<int> numbers;
        [&] { QVERIFY2(result.status == 0 && isArray, result.error.constData()); }();
        if (isArray) {
            for (const QJsonValue value : lines.at(0).value(QLatin1String("values")).toArray())
                numbers << value.toInt(-99999);
        }
        return numbers;
    }

    std::unique_ptr<StoreFolder> m_folder;
    std::array<qint32, 3> m_ids{};
};

QTEST_GUILESS_MAIN(FilterCommandTest)
#include "FilterCommandTest.moc"
