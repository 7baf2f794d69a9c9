#include "analysis/filters/FirTables.h"
#include "analysis/filters/FilterGain.h"
#include "analysis/filters/SmoothingTables.h"

#include <QtTest>

#include <cmath>
#include <numeric>

using namespace velantor;

namespace {

using TTable = std::vector<double>;
using TGains = QVector<QPair<double, double>>;

constexpr double gainTolerance = 0.002;
constexpr double exact = 1e-12;
constexpr double any = 1e9;

double sumOf(const TTable& table)
{
    return std::accumulate(table.begin(), table.end(), 0.0);
}

/// Least and greatest gain from one frequency to another, in steps of an eighth of what a table can tell
/// apart.
QPair<double, double> gainRange(const TTable& table, int rate, double from, double to)
{
    QPair<double, double> range{1e9, 0.0};
    const int steps =
        static_cast<int>(std::ceil((to - from) * 8.0 * static_cast<double>(table.size()) / rate));
    for (int i = 0; i <= steps; ++i) {
        const double gain = gainOf(table, rate, from + (to - from) * i / steps);
        range = {std::min(range.first, gain), std::max(range.second, gain)};
    }
    return range;
}

/// What a table has to be; `any` where nothing is wanted.
struct TWanted
{
    const char* name;
    TTable table;
    int rate;
    int length;
    double sum;
    double first;
    double middle;
    TGains gains;
};

// clang-format off
const std::vector<TWanted> wantedTables{
    {"high-pass 500", *highPassTable(500), 500, 1501, 0.0, -6.05386e-05, 0.998662804,
     {{0.1, 0.06}, {0.3, 0.445}, {0.5, 0.83}, {0.67, 0.976}}},
    {"notch 50 at 250", *notchTable("50hz", 250), 250, 109, 1.0, -0.000532467, any,
     {{50, 0}, {48, 0.43}, {52, 0.43}, {45, 1}, {55, 1}}},
    {"notch 50 at 500", *notchTable("50hz", 500), 500, 195, 1.0, -0.0003644811497461428, any,
     {{50, 0}, {48, 0.39}, {52, 0.39}, {45, 1.057}, {55, 1.057}}},
    {"notch 50 at 1000", *notchTable("50hz", 1000), 1000, 391, 1.0, -5.288038948796344e-06, any,
     {{50, 0}, {48, 0.53}, {52, 0.53}, {45, 1.04}, {55, 1.04}}},
    {"notch 60 at 250", *notchTable("60hz", 250), 250, 109, 1.0, -0.0013606868, any,
     {{60, 0}, {59, 0.13}, {61, 0.13}}},
    {"notch 60 at 500", *notchTable("60hz", 500), 500, 195, 1.0, -0.0007600742537818535, any,
     {{60, 0}, {59, 0.11}, {61, 0.11}}},
    {"notch 60 at 1000", *notchTable("60hz", 1000), 1000, 391, 1.0, 0.000438044520466006, any,
     {{60, 0}, {59, 0.16}, {61, 0.16}}},
    {"muscle at 250", *muscleTable("40hz", 250), 250, 62, 1.0, any, any, {{40, 0.79}, {45, 0.21}, {50, 0.001}}},
    {"muscle 25 at 500", *muscleTable("25hz", 500), 500, 19, 1.0, any, any, {{25, 0.70}}},
    {"muscle 40 at 500", *muscleTable("40hz", 500), 500, 12, 1.0, any, any, {{40, 0.70}}},
    {"muscle 25 at 1000", *muscleTable("25hz", 1000), 1000, 34, 1.01, any, any, {{25, 0.72}}},
    {"muscle 40 at 1000", *muscleTable("40hz", 1000), 1000, 22, 1.0, any, any, {{40, 0.73}}},
    {"baseline at 250", *baselineTable(250), 250, 382, 0.0, any, any, {{1, 0.76}}},
    {"baseline at 500", *baselineTable(500), 500, 501, 0.0, any, any, {{1, 0.51}}},
    {"baseline at 1000", *baselineTable(1000), 1000, 1355, -0.067, any, any, {{1, 1.07}}},
    {"smoothing 25", smoothing25(), 250, 25, 1.0000002, 0.0043996, 0.0813464, {}},
    {"smoothing 51", smoothing51(), 250, 51, 1.0, 9.36e-05, 0.0468637, {}},
    {"decimation", monitorDecimation(), 1000, 29, 1.0, -0.000303319654414908, 0.3979277402170436, {}},
};
// clang-format on

} // namespace

Q_DECLARE_METATYPE(TTable)
Q_DECLARE_METATYPE(TGains)

class FirTablesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTableIsWhatItHasToBe_data()
    {
        QTest::addColumn<TTable>("table");
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("length");
        QTest::addColumn<double>("sum");
        QTest::addColumn<double>("first");
        QTest::addColumn<double>("middle");
        QTest::addColumn<TGains>("gains");
        for (const TWanted& row : wantedTables)
            QTest::newRow(row.name) << row.table << row.rate << row.length << row.sum << row.first
                                    << row.middle << row.gains;
    }

    void aTableIsWhatItHasToBe()
    {
        QFETCH(TTable, table);
        QFETCH(int, rate);
        QFETCH(double, sum);
        QFETCH(double, first);
        QFETCH(double, middle);
        QFETCH(TGains, gains);
        QTEST(static_cast<int>(table.size()), "length");
        QVERIFY(std::abs(sumOf(table) - sum) < exact);
        QVERIFY(first == any || std::abs(table.front() - first) < exact);
        QVERIFY(middle == any || std::abs(table[table.size() / 2] - middle) < exact);
        for (const auto& [frequency, gain] : gains) {
            const double reached = gainOf(table, rate, frequency);
            QVERIFY2(std::abs(reached - gain) < gainTolerance,
                     qPrintable(QStringLiteral("%1 Hz: %2").arg(frequency).arg(reached)));
        }
    }

    void everyTableIsSymmetricButForTheOuterValuesOfOne_data() { aTableIsWhatItHasToBe_data(); }

    void everyTableIsSymmetricButForTheOuterValuesOfOne()
    {
        QFETCH(TTable, table);
        const bool turned = table == *baselineTable(250);
        for (std::size_t i = turned ? 1 : 0; i < table.size() / 2; ++i)
            QCOMPARE(table[i], table[table.size() - 1 - i]);
        if (turned) {
            QVERIFY(table.front() != 0.0);
            QCOMPARE(table.front(), -table.back());
        }
    }

    void theHighPassBeginsSmoothlyAndPassesTheHeart()
    {
        const TTable& table = *highPassTable(500);
        QVERIFY(std::abs(table[1] - -6.0646e-05) < exact);
        QVERIFY(std::abs(table[2] - -6.07595e-05) < exact);
        const auto range = gainRange(table, 500, 1.0, 250.0);
        QVERIFY(range.first > 0.995);
        QVERIFY(range.second < 1.005);
        QVERIFY(gainRange(table, 500, 0.0, 0.1).second < 0.062);
    }

    void aNotchLeavesAloneWhatLiesFarFromIt_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<int>("rate");
        QTest::addColumn<double>("ripple");
        QTest::newRow("50 at 250") << QByteArray("50hz") << 250 << 0.01;
        QTest::newRow("50 at 500") << QByteArray("50hz") << 500 << 0.02;
        QTest::newRow("50 at 1000") << QByteArray("50hz") << 1000 << 0.033;
        QTest::newRow("60 at 250") << QByteArray("60hz") << 250 << 0.01;
        QTest::newRow("60 at 500") << QByteArray("60hz") << 500 << 0.02;
        QTest::newRow("60 at 1000") << QByteArray("60hz") << 1000 << 0.033;
    }

    void aNotchLeavesAloneWhatLiesFarFromIt()
    {
        QFETCH(QByteArray, name);
        QFETCH(int, rate);
        QFETCH(double, ripple);
        const TTable& table = *notchTable(name, rate);
        const double mains = name == "50hz" ? 50.0 : 60.0;
        for (const auto& range :
             {gainRange(table, rate, 0.0, mains - 8.0), gainRange(table, rate, mains + 8.0, rate / 2.0)}) {
            QVERIFY(range.first > 1.0 - ripple);
            QVERIFY(range.second < 1.0 + ripple);
        }
        QVERIFY(gainRange(table, rate, mains - 8.0, mains + 8.0).second < 1.066);
        QVERIFY(gainOf(table, rate, mains) < 1e-9);
    }

    void lowPassesStopWhatTheyHaveTo()
    {
        QVERIFY(gainRange(*muscleTable("40hz", 250), 250, 0, 35).first > 0.98);
        QVERIFY(gainRange(*muscleTable("40hz", 250), 250, 0, 125).second < 1.005);
        QVERIFY(gainRange(*muscleTable("40hz", 250), 250, 50, 125).second < 0.0015);
        for (const int rate : {500, 1000}) {
            for (const char* name : {"25hz", "40hz"}) {
                const TTable& table = *muscleTable(name, rate);
                QVERIFY(gainRange(table, rate, 0, rate / 2.0).second <= sumOf(table) + exact);
                QVERIFY(gainRange(table, rate, 150, rate / 2.0).second < 0.006);
            }
        }
        QVERIFY(gainRange(smoothing51(), 250, 20, 125).second < 0.003);
        QVERIFY(gainRange(monitorDecimation(), 1000, 0, 100).first > 0.998);
        QVERIFY(gainRange(monitorDecimation(), 1000, 280, 500).second < 0.001);
    }

    void baselineFiltersPassTheHeart()
    {
        QVERIFY(gainRange(*baselineTable(250), 250, 2, 120).first > 0.99);
        QVERIFY(gainRange(*baselineTable(250), 250, 0, 125).second < 1.005);
        QVERIFY(gainRange(*baselineTable(500), 500, 3, 250).first > 0.995);
        QVERIFY(gainRange(*baselineTable(500), 500, 0, 250).second < 1.005);
        // So short for its rate that it goes beyond the gain at 1 Hz and swings back.
        const auto range = gainRange(*baselineTable(1000), 1000, 1, 500);
        QVERIFY(range.first > 0.93);
        QVERIFY(range.second < 1.115);
    }

    void aStageIsLeftOutWithoutATable()
    {
        for (const int rate : {0, 125, 250, 360, 1000, 2000})
            QVERIFY(!highPassTable(rate));
        for (const int rate : {0, 125, 360, 2000}) {
            QVERIFY(!notchTable("50hz", rate));
            QVERIFY(!muscleTable("40hz", rate));
            QVERIFY(!baselineTable(rate));
        }
        for (const char* name : {"", "50Hz", "40hz", "50hz "})
            QVERIFY(!notchTable(name, 500));
    }

    void otherNamesOfTheMuscleFilterAreEmptyButAt250()
    {
        for (const char* name : {"", "40Hz", "35hz", "50hz"}) {
            QCOMPARE(*muscleTable(name, 250), *muscleTable("40hz", 250));
            QVERIFY(muscleTable(name, 500)->empty());
            QVERIFY(muscleTable(name, 1000)->empty());
        }
        QCOMPARE(*muscleTable("25hz", 250), *muscleTable("40hz", 250));
    }

    void theAverageIsSmoothedByRate()
    {
        QCOMPARE(averagingLowPass(250), *muscleTable("40hz", 250));
        QCOMPARE(averagingLowPass(500), *muscleTable("40hz", 500));
        QCOMPARE(averagingLowPass(1000), *muscleTable("40hz", 1000));
        QCOMPARE(averagingLowPass(360), *muscleTable("40hz", 1000));
    }
};

QTEST_GUILESS_MAIN(FirTablesTest)
#include "FirTablesTest.moc"
