#include "platform/InterruptSignal.h"

#include <QtTest>

#include <csignal>
#include <memory>

class InterruptSignalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSignalIsToldByTheEventLoop_data()
    {
        QTest::addColumn<int>("number");
        QTest::newRow("interrupt") << SIGINT;
        QTest::newRow("terminate") << SIGTERM;
    }

    void aSignalIsToldByTheEventLoop()
    {
        QFETCH(int, number);
        int told = 0;
        const InterruptSignal interrupt([&told] { ++told; });
        QVERIFY(!InterruptSignal::isRaised());
        std::raise(number);
        QVERIFY(InterruptSignal::isRaised());
        QCOMPARE(told, 0);
        QTRY_COMPARE(told, 1);
        std::raise(number);
        QTRY_COMPARE(told, 2);
    }

    void manyAtOnceAreToldAndNothingHangs()
    {
        int told = 0;
        const InterruptSignal interrupt([&told] { ++told; });
        for (int i = 0; i < 100000; ++i) // more than a pipe holds
            std::raise(SIGTERM);
        QTRY_VERIFY(told > 0);
        const int before = told;
        QTest::qWait(20);
        QCOMPARE(told, before);
    }

    void aNewOneKnowsNothingOfTheOneBefore()
    {
        {
            const InterruptSignal interrupt([] {});
            std::raise(SIGINT);
        }
        int told = 0;
        const InterruptSignal interrupt([&told] { ++told; });
        QVERIFY(!InterruptSignal::isRaised());
        QTest::qWait(20);
        QCOMPARE(told, 0);
    }

    void itsEndBringsTheOldWayBack()
    {
        const auto before = std::signal(SIGTERM, SIG_IGN);
        std::make_unique<InterruptSignal>([] {}).reset();
        QVERIFY(std::signal(SIGTERM, before) == SIG_IGN);
    }
};

QTEST_GUILESS_MAIN(InterruptSignalTest)
#include "InterruptSignalTest.moc"
