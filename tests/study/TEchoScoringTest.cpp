#include "study/TEchoScoring.h"

#include <QtTest>

class TEchoScoringTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSegmentsHaveTheirNames_data()
    {
        QTest::addColumn<int>("segment");
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<QByteArray>("shown");
        const auto row = [](int segment, const char* stored, const char* shown) {
            QTest::newRow(stored) << segment << QByteArray(stored) << QByteArray(shown);
        };
        row(1, "BasalAnteroSeptum", "Septum Anterior Basal - LAD");
        row(2, "MidAnteroSeptum", "Septum Anterior Medio - LAD");
        row(3, "BasalSeptum", "Septum Basal - RAD");
        row(4, "MidSeptum", "Septum Medio - RAD");
        row(5, "ApicalSeptum", "Septum Apical - LAD");
        row(6, "BasalInferior", "Inferior Basal - RAD");
        row(7, "MidInferior", "Inferior Medio - RAD");
        row(8, "ApicalInferior", "Inferior Apical - LAD");
        row(9, "BasalPosterior", "Posterior Basal - CRX");
        row(10, "MidPosterior", "Posterior Medio - CRX");
        row(11, "BasalLateral", "Lateral Basal - CRX");
        row(12, "MidLateral", "Lateral Medio - CRX");
        row(13, "ApicalLateral", "Lateral Apical - LAD");
        row(14, "BasalAnterior", "Anterior Basal - LAD");
        row(15, "MidAnterior", "Anterior Medio - LAD");
        row(16, "ApicalAnterior", "Anterior Apical - LAD");
    }

    void theSegmentsHaveTheirNames()
    {
        QFETCH(int, segment);
        QFETCH(QByteArray, stored);
        QFETCH(QByteArray, shown);
        QCOMPARE(TEchoScoring::storedName(segment), stored);
        QCOMPARE(TEchoScoring::shownName(segment), shown);
        QCOMPARE(TEchoScoring::segmentNumber(stored), segment);
    }

    void unknownNamesHaveNoNumber()
    {
        for (const char* name : {"", "basalSeptum", "BasalSeptum ", "Septum Basal - RAD"})
            QCOMPARE(TEchoScoring::segmentNumber(name), 0);
    }

    void numbersOutOfRangeHaveNoName()
    {
        for (const int segment : {-1, 0, 17, 1000}) {
            QCOMPARE(TEchoScoring::storedName(segment), QByteArray());
            QCOMPARE(TEchoScoring::shownName(segment), QByteArray());
        }
    }

    void allScoresStartAtZero()
    {
        const TEchoScoring scoring;
        for (int segment = 0; segment <= 17; ++segment) {
            for (const TEchoTime time : {TEchoTime::Rest, TEchoTime::Peak, TEchoTime::Post})
                QCOMPARE(scoring.score(segment, time), 0);
        }
    }

    void scoresStandApartBySegmentAndTime()
    {
        TEchoScoring scoring;
        scoring.setScore("MidSeptum", static_cast<TEchoTime>(0), 1);
        scoring.setScore("MidSeptum", static_cast<TEchoTime>(1), 2);
        scoring.setScore("MidSeptum", static_cast<TEchoTime>(2), 3);
        scoring.setScore("ApicalAnterior", TEchoTime::Peak, 4);
        QCOMPARE(scoring.score(4, TEchoTime::Rest), 1);
        QCOMPARE(scoring.score(4, TEchoTime::Peak), 2);
        QCOMPARE(scoring.score(4, TEchoTime::Post), 3);
        QCOMPARE(scoring.score(16, TEchoTime::Peak), 4);
        QCOMPARE(scoring.score(16, TEchoTime::Rest), 0);
        QCOMPARE(scoring.score(5, TEchoTime::Peak), 0);
    }

    void anUnknownNameSetsNothing()
    {
        TEchoScoring scoring;
        scoring.setScore("", TEchoTime::Rest, 9);
        scoring.setScore("Septum", TEchoTime::Rest, 9);
        QVERIFY(scoring == TEchoScoring());
    }

    void scoresOutsideTheSegmentsAreZero()
    {
        TEchoScoring scoring;
        scoring.setScore("BasalAnteroSeptum", TEchoTime::Rest, 9);
        for (const int segment : {-1, 0, 17})
            QCOMPARE(scoring.score(segment, TEchoTime::Rest), 0);
    }
};

QTEST_GUILESS_MAIN(TEchoScoringTest)
#include "TEchoScoringTest.moc"
