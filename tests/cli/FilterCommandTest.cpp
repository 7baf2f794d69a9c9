#include "analysis/filters/TOfflineFilterChain.h"
#include "analysis/filters/TRealtimeFilterChain.h"
#include "analysis/signals/TInt16Signal.h"
#include "study/LocalStudyDatabase.h"
#include "study/StoreFolder.h"
#include "study/Study.h"
#include "study/TEcgFile.h"
#include "support/SampleStudy.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QtTest>

namespace {

constexpr double seconds = 20.3;
constexpr int sampleCount = 10150;

} // namespace

class FilterCommandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_folder = std::make_unique<StoreFolder>();
        LocalStudyDatabase database(m_folder->path());
        StudyInfo info = makeSampleInfo();
        Study* const study = database.createStudy(info);
        appendSampleRecording(*study, seconds);
        QCOMPARE(study->ecg()->sampleCount(), sampleCount);
        database.closeStudy(study);
        m_id = info.id;
    }

    void itPrintsTheOffLineChain_data() { switches(); }

    void itPrintsTheOffLineChain()
    {
        QFETCH(QStringList, options);
        LocalStudyDatabase database(m_folder->path());
        TOfflineFilterChain chain(database.openStudy(m_id)->ecg());
        chain.apply(options.contains(QLatin1String("--notch")), options.contains(QLatin1String("--muscle")),
                    options.contains(QLatin1String("--baseline")));
        compare(*chain.current(), options);
    }

    void itPrintsTheRealTimeChain_data() { switches(); }

    void itPrintsTheRealTimeChain()
    {
        QFETCH(QStringList, options);
        LocalStudyDatabase database(m_folder->path());
        TEcgFile& ecg = *database.openStudy(m_id)->ecg();
        TInt16Signal input(512, 20000, ecg.channelCount(), ecg.samplingRate());
        TRealtimeFilterChain chain(&input);
        chain.apply(options.contains(QLatin1String("--notch")), options.contains(QLatin1String("--muscle")),
                    options.contains(QLatin1String("--baseline")));
        std::vector<std::vector<double>> samples(ecg.channelCount(), std::vector<double>(sampleCount));
        std::vector<const double*> rows;
        for (int channel = 0; channel < ecg.channelCount(); ++channel) {
            ecg.readDoubles(channel, 0, sampleCount, samples[channel].data());
            rows.push_back(samples[channel].data());
        }
        input.addPerChannelDouble(rows.data(), sampleCount);
        chain.update();
        QVERIFY(chain.current()->sampleCount() < sampleCount);
        compare(*chain.current(), options + QStringList(QStringLiteral("--realtime")));
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
        QCOMPARE(values(1, -2, 2, options), zeros);
        QCOMPARE(values(1, sampleCount, 2, options), zeros);
        QCOMPARE(values(1, std::numeric_limits<int>::max(), 2, options), zeros);
        QCOMPARE(values(1, std::numeric_limits<int>::min(), 2, options), zeros);
        QCOMPARE(values(14, 500, 2, options), zeros);
        QCOMPARE(values(-1, 500, 2, options), zeros);
        QCOMPARE(values(1, 500, 0, options), QList<int>());
        QCOMPARE(values(1, -3, 10, options).mid(3), values(1, 0, 7, options));
    }

    void aStretchIsTheSameWhereverItBegins()
    {
        for (const QStringList& options : {QStringList(), QStringList(QStringLiteral("--realtime"))})
            QCOMPARE(values(1, 5000, 50, options), values(1, 4980, 80, options).mid(20, 50));
    }

private:
    static void switches()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("none") << QStringList();
        QTest::newRow("notch") << QStringList(QStringLiteral("--notch"));
        QTest::newRow("muscle") << QStringList(QStringLiteral("--muscle"));
        QTest::newRow("baseline") << QStringList(QStringLiteral("--baseline"));
        QTest::newRow("all") << QStringList(
            {QStringLiteral("--baseline"), QStringLiteral("--notch"), QStringLiteral("--muscle")});
    }

    void compare(TSignal& expected, const QStringList& options) const
    {
        const QList<int> printed = values(1, 0, sampleCount, options);
        QCOMPARE(printed.size(), sampleCount);
        int swing = 0;
        for (int i = 0; i < sampleCount; ++i) {
            QCOMPARE(printed.at(i), expected.sample(1, i));
            swing = std::max(swing, std::abs(printed.at(i)));
        }
        QVERIFY(swing > 30);
    }

    QList<int> values(int channel, int from, int count, const QStringList& options) const
    {
        QProcess process;
        process.start(QStringLiteral(VELANTOR_CLI),
                      QStringList({QStringLiteral("--data"), m_folder->path(), QStringLiteral("filter"),
                                   QString::number(m_id), QString::number(channel), QString::number(from),
                                   QString::number(count)}) +
                          options);
        process.waitForFinished(60000);
        QList<int> numbers;
        if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
            return {-99999};
        const QJsonObject object = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
        for (const QJsonValue value : object.value(QLatin1String("values")).toArray())
            numbers << value.toInt(-99999);
        return numbers;
    }

    std::unique_ptr<StoreFolder> m_folder;
    qint32 m_id = 0;
};

QTEST_GUILESS_MAIN(FilterCommandTest)
#include "FilterCommandTest.moc"
