#include "fuzz/EcgInput.h"
#include "fuzz/ScratchFolder.h"
#include "study/FailureText.h"
#include "study/Study.h"
#include "study/StudyCreation.h"
#include "study/StudyFiles.h"
#include "study/TEcgFile.h"
#include "support/SampleStudy.h"

#include <QtTest>

#include <cmath>

/// What fuzzing has found and no test of the class concerned would have thought of.
class FuzzFindingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRangeWhoseWidthOverflowsIsNotOpened_data()
    {
        QTest::addColumn<QByteArray>("gainMin");
        QTest::addColumn<bool>("opens");
        QTest::newRow("overflows") << QByteArray("-1.7e308") << false;
        QTest::newRow("just fits") << QByteArray("-0.7e308") << true;
    }

    void aRangeWhoseWidthOverflowsIsNotOpened()
    {
        QFETCH(QByteArray, gainMin);
        QFETCH(bool, opens);
        const QByteArray document = R"({"ecg":{"sampleFormat":"short","samplingRate":500,"resolution":16,)"
                                    R"("gainMax":1e308,"channels":["I"],"gainMin":)" +
                                    gainMin + "}}";
        const QString path = m_folder.path("wide.vtecg");
        QVERIFY(writeFile(path, ecgFile(document, "ab")));
        const std::unique_ptr<TEcgFile> ecg = openEcgFile(path);
        QCOMPARE(ecg != nullptr, opens);
        QVERIFY(!ecg || std::isfinite(ecg->countValue()));
    }

    void noRecordingOfSuchARangeIsBegun()
    {
        StudyInfo info = makeSampleInfo();
        info.baseFilename = "recording";
        info.gain = 1e308;
        QCOMPARE(failureText([&] { createStudyFiles(m_folder.path(), info); }),
                 QStringLiteral("Cannot create file"));
        info.gain = 0.5e308;
        QVERIFY(createStudyFiles(m_folder.path(), info));
    }

private:
    TScratchFolder m_folder;
};

QTEST_GUILESS_MAIN(FuzzFindingsTest)
#include "FuzzFindingsTest.moc"
