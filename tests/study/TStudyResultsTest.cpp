#include "study/TStudyResults.h"
#include "ResultNames.h"

#include <QtTest>

class TStudyResultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyResultIsThereFromTheStart()
    {
        TStudyResults results;
        for (const QByteArray& name : valueNames())
            verifyKind(results, name, TResultKind::Value);
        for (const QByteArray& name : listNames())
            verifyKind(results, name, TResultKind::ValueArray);
        for (const QByteArray& name : trendNames())
            verifyKind(results, name, TResultKind::Trend);
        QCOMPARE(results.items().size(), std::size_t(20 + 6 + 32 + 5 + 32));
    }

    void theKindsHaveTheirCodes()
    {
        QCOMPARE(static_cast<int>(TResultKind::Value), 0);
        QCOMPARE(static_cast<int>(TResultKind::ValueArray), 1);
        QCOMPARE(static_cast<int>(TResultKind::Trend), 4);
    }

    void valuesStartAtZeroButForTwo()
    {
        TStudyResults results;
        for (const QByteArray& name : valueNames()) {
            const double initial = name == "measurementChannel" ? -1.0 : name == "QRSAxis" ? -999.0 : 0.0;
            QCOMPARE(results.value(name)->value(), initial);
        }
    }

    void listsAndTrendsStartEmpty()
    {
        TStudyResults results;
        for (const QByteArray& name : listNames())
            QCOMPARE(results.list(name)->count(), 0);
        for (const QByteArray& name : trendNames())
            QCOMPARE(results.trend(name)->count(), 0);
    }

    void theWalkGoesThroughAllNamesInSortedOrder()
    {
        std::vector<QByteArray> expected = valueNames();
        for (const std::vector<QByteArray>& more : {listNames(), trendNames()})
            expected.insert(expected.end(), more.begin(), more.end());
        std::sort(expected.begin(), expected.end());

        TStudyResults results;
        std::vector<QByteArray> walked;
        for (QByteArray name = results.first(); !name.isEmpty(); name = results.next())
            walked.push_back(name);
        QCOMPARE(walked, expected);
        QCOMPARE(results.next(), QByteArray());
        QCOMPARE(results.first(), QByteArray("BPMPerStage"));
        QCOMPARE(results.next(), QByteArray("BPMTrend"));
    }

    void anUnknownNameIsNull()
    {
        TStudyResults results;
        for (const char* name : {"", "maxbpm", "STLevelTrend(16)", "STLevelTrend(%i)", "STLevelTrend(-1)"}) {
            QVERIFY(results.get(name) == nullptr);
            QVERIFY(results.value(name) == nullptr);
            QVERIFY(std::as_const(results).get(name) == nullptr);
        }
        QCOMPARE(results.items().size(), std::size_t(95));
    }

    void theShortcutsAnswerTheirOwnKindOnly()
    {
        TStudyResults results;
        QVERIFY(results.value("maxBPM") != nullptr);
        QVERIFY(results.list("maxBPM") == nullptr);
        QVERIFY(results.trend("maxBPM") == nullptr);
        QVERIFY(results.value("BPMTrend") == nullptr);
        QCOMPARE(results.trend("BPMTrend"), results.get("BPMTrend"));
        QCOMPARE(results.list("BPMPerStage"), results.get("BPMPerStage"));
    }

    void namesOfChannelsAreMadeByPattern()
    {
        QCOMPARE(TStudyResults::channelName("STLevelTrend(%i)", 3), QByteArray("STLevelTrend(3)"));
        QCOMPARE(TStudyResults::channelName("STSlopePerStage(%i)", 15), QByteArray("STSlopePerStage(15)"));
    }

private:
    static void verifyKind(TStudyResults& results, const QByteArray& name, TResultKind kind)
    {
        const TResultItem* item = results.get(name);
        QVERIFY2(item != nullptr, name.constData());
        QCOMPARE(item->name(), name);
        QCOMPARE(item->kind(), kind);
    }
};

QTEST_GUILESS_MAIN(TStudyResultsTest)
#include "TStudyResultsTest.moc"
