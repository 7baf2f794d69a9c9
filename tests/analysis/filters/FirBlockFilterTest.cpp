#include "analysis/filters/FirTables.h"
#include "analysis/filters/TFirBlockFilter.h"
#include "analysis/signals/TFilteredSignal.h"
#include "analysis/signals/TSignalWindow.h"
#include "analysis/signals/TStoredSignal.h"

#include <QtTest>

namespace {

/// The sum from single samples of the window.
int naive(const TSignalWindow& window, const std::vector<double>& h, int delay, int offset)
{
    double sum = 0.0;
    for (int i = 0; i < static_cast<int>(h.size()); ++i)
        sum += h[i] * window.sample(delay - i + offset);
    return static_cast<int>(std::clamp(sum, -32768.0, 32767.0));
}

} // namespace

class FirBlockFilterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itIsTheSumOfTheFormula_data()
    {
        QTest::addColumn<std::vector<double>>("table");
        QTest::addColumn<int>("blockSize");
        for (const int blockSize : {1, 5, 64, 1000}) {
            for (const int rate : {250, 500, 1000}) {
                for (const char* name : {"25hz", "40hz"}) {
                    QTest::addRow("%s at %d, blocks of %d", name, rate, blockSize)
                        << *velantor::muscleTable(name, rate) << blockSize;
                }
            }
            QTest::addRow("no table, blocks of %d", blockSize) << std::vector<double>() << blockSize;
            QTest::addRow("one that is not symmetric, blocks of %d", blockSize)
                << std::vector<double>{3.0, -1.5, 0.25, 0.125} << blockSize;
        }
    }

    void itIsTheSumOfTheFormula()
    {
        QFETCH(std::vector<double>, table);
        QFETCH(int, blockSize);
        TStoredSignal source(blockSize, randomSamples(2, 333, 1));
        source.trimBlocks(true);
        const int delay = static_cast<int>(table.size()) / 2;
        TFirBlockFilter filter(table, delay);
        std::vector<short> out(blockSize);
        TSignalWindow window(&source);
        for (int block = 0; block < source.blockCount(); ++block) {
            window.move(block, block % 2);
            filter.process(window, out.data());
            for (int i = 0; i < blockSize; ++i)
                QCOMPARE(int(out[i]), naive(window, table, delay, i));
        }
    }

    void withoutNeighboursTheRestReadsZero()
    {
        TStoredSignal source(3, {{1000, 2000, 3000}});
        TFirBlockFilter filter({1.0, 1.0, 1.0}, 1);
        TFilteredSignal view(&source, &filter);
        QCOMPARE(view.sample(0, 0), 3000);
        QCOMPARE(view.sample(0, 1), 6000);
        QCOMPARE(view.sample(0, 2), 5000);
        TSignalWindow window(&source);
        short out[3] = {1, 1, 1};
        filter.process(window, out);
        QCOMPARE(out[1], short(0));
    }

    void theResultIsClampedAndTruncated()
    {
        TStoredSignal source(4, {{32767, -32768, 3, -3}});
        TFirBlockFilter filter({1.25}, 0);
        TFilteredSignal view(&source, &filter);
        const int expected[] = {32767, -32768, 3, -3};
        for (int i = 0; i < 4; ++i)
            QCOMPARE(view.sample(0, i), expected[i]);
    }

    void withoutCoefficientsTheOutputIsZero()
    {
        TStoredSignal source(4, {{5, 5, 5, 5}});
        TFirBlockFilter filter({}, 0);
        TFilteredSignal view(&source, &filter);
        QCOMPARE(view.sample(0, 2), 0);
    }
};

QTEST_GUILESS_MAIN(FirBlockFilterTest)
#include "FirBlockFilterTest.moc"
