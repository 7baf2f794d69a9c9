#include "study/IndexRow.h"

#include <QtTest>

class IndexRowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRowHasExactlyTheFieldsThatListsNeed()
    {
        StudyInfo info = filledInfo();
        info.comments = "long text";
        info.sex = "F";
        QCOMPARE(indexRowFromInfo(info).toUtf8(),
                 QByteArray("{\"baseFilename\":\"12-Perez-Ana-20240105093012\",\"patientFirstName\":\"Ana\","
                            "\"patientLastName\":\"Perez\",\"status\":\"report\","
                            "\"studyDateTime\":\"20240105093012\",\"studyType\":\"Stress test\"}"));
    }

    void emptyTextsAreWritten()
    {
        QCOMPARE(indexRowFromInfo(StudyInfo()).toUtf8(),
                 QByteArray("{\"baseFilename\":\"\",\"patientFirstName\":\"\",\"patientLastName\":\"\","
                            "\"status\":\"\",\"studyDateTime\":\"\",\"studyType\":\"\"}"));
    }

    void speciesAndBreedAreWrittenTogether_data()
    {
        QTest::addColumn<QByteArray>("species");
        QTest::addColumn<QByteArray>("breed");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("both") << QByteArray("dog") << QByteArray("boxer")
                              << QByteArray(
                                     "\"patientAnimalBreed\":\"boxer\",\"patientAnimalSpecies\":\"dog\"");
        QTest::newRow("species") << QByteArray("dog") << QByteArray()
                                 << QByteArray(
                                        "\"patientAnimalBreed\":\"\",\"patientAnimalSpecies\":\"dog\"");
        QTest::newRow("breed") << QByteArray() << QByteArray("boxer")
                               << QByteArray(
                                      "\"patientAnimalBreed\":\"boxer\",\"patientAnimalSpecies\":\"\"");
    }

    void speciesAndBreedAreWrittenTogether()
    {
        QFETCH(QByteArray, species);
        QFETCH(QByteArray, breed);
        QFETCH(QByteArray, expected);
        StudyInfo info = filledInfo();
        info.animalSpecies = species;
        info.animalBreed = breed;
        QCOMPARE(
            indexRowFromInfo(info).toUtf8(),
            QByteArray("{\"baseFilename\":\"12-Perez-Ana-20240105093012\"," + expected +
                       ",\"patientFirstName\":\"Ana\",\"patientLastName\":\"Perez\",\"status\":\"report\","
                       "\"studyDateTime\":\"20240105093012\",\"studyType\":\"Stress test\"}"));
        StudyInfo read;
        readIndexRow(read, indexRowFromInfo(info));
        QCOMPARE(read, info);
    }

    void namesOfAnyAlphabetAndSignComeBack()
    {
        StudyInfo info = filledInfo();
        info.lastName = "Nu\303\261ez \"Pepe\" \\ \n\t\001";
        info.firstName = "\320\230\320\262\320\260\320\275 \360\237\253\200";
        StudyInfo read;
        readIndexRow(read, indexRowFromInfo(info));
        QCOMPARE(read, info);
        QVERIFY(
            indexRowFromInfo(info).contains(QStringLiteral("Nu\u00f1ez \\\"Pepe\\\" \\\\ \\n\\t\\u0001")));
    }

    void aRowFillsTheListedFieldsAndNoOther()
    {
        StudyInfo info = filledInfo();
        info.id = 7;
        info.doctorName = "Solis";
        StudyInfo read;
        readIndexRow(read, indexRowFromInfo(info));
        QCOMPARE(read, filledInfo());
    }

    void whatARowDoesNotHaveStays_data()
    {
        QTest::addColumn<QString>("row");
        QTest::newRow("empty") << QString();
        QTest::newRow("no JSON") << QStringLiteral("{\"status\":");
        QTest::newRow("no object") << QStringLiteral("[1,2]");
        QTest::newRow("other keys") << QStringLiteral("{\"lastName\":\"X\",\"id\":3}");
    }

    void whatARowDoesNotHaveStays()
    {
        QFETCH(QString, row);
        StudyInfo info = filledInfo();
        readIndexRow(info, row);
        QCOMPARE(info, filledInfo());
    }

    void aValueThatIsNoTextReadsAsEmpty()
    {
        StudyInfo info = filledInfo();
        readIndexRow(info, QStringLiteral("{\"status\":1,\"patientLastName\":null,\"studyType\":{}}"));
        QCOMPARE(info.status, QByteArray());
        QCOMPARE(info.lastName, QByteArray());
        QCOMPARE(info.studyType, QByteArray());
        QCOMPARE(info.firstName, QByteArray("Ana"));
    }

private:
    static StudyInfo filledInfo()
    {
        StudyInfo info;
        info.baseFilename = "12-Perez-Ana-20240105093012";
        info.status = "report";
        info.studyType = "Stress test";
        info.studyDateTime = "20240105093012";
        info.firstName = "Ana";
        info.lastName = "Perez";
        return info;
    }
};

QTEST_GUILESS_MAIN(IndexRowTest)
#include "IndexRowTest.moc"
