#include "study/TStudyEvents.h"

#include <QtTest>

#include <stdexcept>

class TStudyEventsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewEventIsEmptyAndPrinted()
    {
        TStudyEvents events;
        const TStudyEvent& event = events.add();
        QCOMPARE(event.index, 0);
        QCOMPARE(event.position, 0.0);
        QCOMPARE(event.duration, 0.0);
        QCOMPARE(event.description, QByteArray());
        QVERIFY(event.print);
        QCOMPARE(events.count(), 1);
    }

    void eventsKeepTheirOrder()
    {
        TStudyEvents events;
        for (const double position : {20.0, 10.0, 30.0})
            events.add().position = position;
        QCOMPARE(events.at(0).position, 20.0);
        QCOMPARE(events.at(1).position, 10.0);
        QCOMPARE(events.at(2).position, 30.0);
        QCOMPARE(events.at(2).index, 2);
    }

    void anEventStaysWhereItIsWhileOthersCome()
    {
        TStudyEvents events;
        TStudyEvent& first = events.add();
        for (int i = 0; i < 1000; ++i)
            events.add();
        first.setDescription("Dolor");
        QCOMPARE(&events.at(0), &first);
        QCOMPARE(events.at(0).description, QByteArray("Dolor"));
    }

    void removedEventsAreGone()
    {
        TStudyEvents events;
        for (const double position : {1.0, 2.0, 3.0})
            events.add().position = position;
        events.remove(1);
        QCOMPARE(events.count(), 2);
        QCOMPARE(events.at(0).position, 1.0);
        QCOMPARE(events.at(1).position, 3.0);
        // Its place when it was added.
        QCOMPARE(events.at(1).index, 2);
    }

    void removingWhatIsNotThereRemovesNothing()
    {
        TStudyEvents events;
        events.remove(0);
        events.add();
        events.remove(-1);
        events.remove(1);
        QCOMPARE(events.count(), 1);
    }

    void anIndexOutOfRangeIsAFaultOfTheCaller()
    {
        TStudyEvents events;
        events.add();
        QVERIFY_EXCEPTION_THROWN(events.at(1), std::out_of_range);
        QVERIFY_EXCEPTION_THROWN(events.at(-1), std::out_of_range);
    }
};

QTEST_GUILESS_MAIN(TStudyEventsTest)
#include "TStudyEventsTest.moc"
