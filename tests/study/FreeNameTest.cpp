#include "StoreFolder.h"
#include "study/StudyCreation.h"

#include <QtTest>

namespace {

StudyInfo infoAt(const QByteArray& dateTime)
{
    StudyInfo info = makeSampleInfo();
    info.studyDateTime = dateTime;
    return info;
}

} // namespace

/// Two studies of a patient within a second.
class FreeNameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<StoreFolder>();
        QVERIFY(QDir().mkpath(m_folder->path()));
    }

    void theTimeMovesOnUntilTheNameIsFree_data()
    {
        QTest::addColumn<QByteArray>("asked");
        QTest::addColumn<int>("taken");
        QTest::addColumn<QByteArray>("found");
        QTest::newRow("free") << QByteArray("20240105093012") << 0 << QByteArray("20240105093012");
        QTest::newRow("taken") << QByteArray("20240105093012") << 1 << QByteArray("20240105093013");
        QTest::newRow("several") << QByteArray("20240105093012") << 5 << QByteArray("20240105093017");
        QTest::newRow("over midnight") << QByteArray("20231231235959") << 1 << QByteArray("20240101000000");
        QTest::newRow("leap day") << QByteArray("20240228235958") << 2 << QByteArray("20240229000000");
    }

    void theTimeMovesOnUntilTheNameIsFree()
    {
        QFETCH(QByteArray, asked);
        QFETCH(int, taken);
        const QString form = QStringLiteral("yyyyMMddHHmmss");
        const QDateTime first = QDateTime::fromString(QString::fromLatin1(asked), form);
        for (int i = 0; i < taken; ++i)
            take(infoAt(first.addSecs(i).toString(form).toLatin1()), velantor::studyExtension);
        StudyInfo info = infoAt(asked);
        findFreeName(info, m_folder->path());
        QTEST(info.studyDateTime, "found");
        QVERIFY(!m_folder->hasAnyFile(makeBaseFilename(info)));
    }

    void anyFileOfASetTakesItsName_data()
    {
        QTest::addColumn<QByteArray>("extension");
        for (const char* extension :
             {velantor::studyExtension, velantor::ecgExtension, velantor::beatsExtension})
            QTest::newRow(extension) << QByteArray(extension);
    }

    void anyFileOfASetTakesItsName()
    {
        QFETCH(QByteArray, extension);
        StudyInfo info = infoAt("20240105093012");
        take(info, extension.constData());
        findFreeName(info, m_folder->path());
        QCOMPARE(info.studyDateTime, QByteArray("20240105093013"));
    }

    void anotherPatientIsNotInTheWay()
    {
        StudyInfo other = infoAt("20240105093012");
        other.lastName = "Paz";
        take(other, velantor::studyExtension);
        StudyInfo info = infoAt("20240105093012");
        findFreeName(info, m_folder->path());
        QCOMPARE(info.studyDateTime, QByteArray("20240105093012"));
    }

    void aTimeThatIsNoneStays_data()
    {
        QTest::addColumn<QByteArray>("time");
        for (const char* time : {"", "00000000000000", "20240230093012", "2024010509301", "yesterday"})
            QTest::newRow(*time ? time : "empty") << QByteArray(time);
    }

    void aTimeThatIsNoneStays()
    {
        QFETCH(QByteArray, time);
        StudyInfo info = infoAt(time);
        take(info, velantor::ecgExtension);
        findFreeName(info, m_folder->path());
        QCOMPARE(info.studyDateTime, time);
    }

private:
    void take(const StudyInfo& info, const char* extension)
    {
        if (!writeFile(m_folder->file(makeBaseFilename(info), extension), "taken"))
            qFatal("The name could not be taken");
    }

    std::unique_ptr<StoreFolder> m_folder;
};

QTEST_GUILESS_MAIN(FreeNameTest)
#include "FreeNameTest.moc"
