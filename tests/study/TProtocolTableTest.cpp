#include "study/TProtocolTable.h"
#include "FailureText.h"
#include "FullDisk.h"
#include "TestFiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

class TProtocolTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_path = m_folder->filePath(QStringLiteral("protocols.json"));
    }

    void theFileIsCompactJsonSortedByName()
    {
        TProtocolTable table;
        TStressProtocol walk("Walk \"ñ\"", TProtocolType::Treadmill);
        walk.addStage(TStagePhase::Rest, 90.5, 0.0, 0.0);
        walk.addStage(TStagePhase::Exercise, 120.0, 3.2, 10.5);
        table.set(walk.name(), walk);
        TStressProtocol cycle("Cycle", TProtocolType::Ergometer);
        cycle.addStage(TStagePhase::Recovery, 60.0, 25.0);
        table.set(cycle.name(), cycle);
        table.set("Drug", TStressProtocol("Drug", TProtocolType::Pharmacologic));
        table.save(m_path);
        QCOMPARE(readFile(m_path),
                 QByteArray("["
                            R"({"name":"Cycle","stages":[)"
                            R"({"duration":60,"phase":"recovery","workload":25}],"type":"ergometer"},)"
                            R"({"name":"Drug","stages":[],"type":"pharmacologic"},)"
                            "{\"name\":\"Walk \\\"ñ\\\"\",\"stages\":["
                            R"({"duration":90,"incline":0,"phase":"rest","speed":0},)"
                            R"({"duration":120,"incline":10.5,"phase":"exercise","speed":3.2}],)"
                            R"("type":"treadmill"})"
                            "]"));
        QCOMPARE(table.toJson(), readFile(m_path));
    }

    void aSavedTableIsReadBack()
    {
        const TProtocolTable saved = TProtocolTable::builtIn();
        saved.save(m_path);
        TProtocolTable read;
        QVERIFY(read.load(m_path));
        QCOMPARE(read.names(), saved.names());
        for (const QByteArray& name : saved.names())
            QVERIFY2(*read.find(name) == *saved.find(name), name.constData());
        QCOMPARE(read.toJson(), saved.toJson());
    }

    void savingReplacesALongerTable()
    {
        QVERIFY(writeFile(m_path, QByteArray(100000, 'x')));
        TProtocolTable().save(m_path);
        QCOMPARE(readFile(m_path), QByteArray("[]"));
    }

    void whatHoldsNoProtocolIsAsGoodAsAbsent_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("broken") << QByteArray("[{\"name\":");
        QTest::newRow("no JSON") << QByteArray("protocols");
        QTest::newRow("no elements") << QByteArray("[]");
        QTest::newRow("an object") << QByteArray("{\"name\":\"Bruce\"}");
        QTest::newRow("an empty object") << QByteArray("{}");
        QTest::newRow("brackets without end") << QByteArray(1000000, '[');
    }

    void whatHoldsNoProtocolIsAsGoodAsAbsent()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(writeFile(m_path, bytes));
        TProtocolTable table = TProtocolTable::builtIn();
        QVERIFY(!table.load(m_path));
        QVERIFY(table.names().empty());
    }

    void anAbsentFileClearsTheTable()
    {
        TProtocolTable table = TProtocolTable::builtIn();
        QVERIFY(!table.load(m_path));
        QVERIFY(table.names().empty());
        QVERIFY(!QFile::exists(m_path));
    }

    void anEmptyFileCannotBeRead()
    {
        QVERIFY(writeFile(m_path, QByteArray()));
        TProtocolTable table;
        QCOMPARE(failureText([&] { table.load(m_path); }), QStringLiteral("Cannot read protocol table"));
    }

    void aFileThatIsNoTableBySizeCannotBeRead()
    {
        QVERIFY(writeFile(m_path, QByteArray(1024 * 1024 + 1, ' ')));
        TProtocolTable table;
        QCOMPARE(failureText([&] { table.load(m_path); }), QStringLiteral("Cannot read protocol table"));
    }

    void whatCannotBeOpenedIsTold()
    {
        // A folder in the place of the file cannot be opened by anyone, whatever the rights.
        TProtocolTable table = TProtocolTable::builtIn();
        QCOMPARE(failureText([&] { table.load(m_folder->path()); }),
                 QStringLiteral("Cannot open protocol table"));
        QVERIFY(table.names().empty());
    }

    void aLaterDuplicateWins()
    {
        QVERIFY(writeFile(m_path, R"([{"name":"A","type":"ergometer"},{"name":"B"},)"
                                  R"({"name":"A","type":"ecg","stages":[{"duration":5}]}])"));
        TProtocolTable table;
        QVERIFY(table.load(m_path));
        QCOMPARE(table.names(), (std::vector<QByteArray>{"A", "B"}));
        QCOMPARE(table.find("A")->type(), TProtocolType::Ecg);
        QCOMPARE(table.find("A")->stageCount(), 1);
    }

    void anUnknownTypeReadsAsTreadmill()
    {
        QVERIFY(writeFile(m_path, R"([{"name":"Swim","type":"pool","stages":[{"speed":3,"workload":9}]}])"));
        TProtocolTable table;
        QVERIFY(table.load(m_path));
        QCOMPARE(table.find("Swim")->type(), TProtocolType::Treadmill);
        QCOMPARE(table.find("Swim")->stage(0).value("speed"), 3.0);
        QCOMPARE(table.find("Swim")->stage(0).value("workload"), 0.0);
    }

    void aProtocolTakesTheNameItIsStoredUnder()
    {
        TProtocolTable table = TProtocolTable::builtIn();
        table.set("Mine", *table.find("Bruce"));
        QCOMPARE(table.find("Mine")->name(), QByteArray("Mine"));
        QCOMPARE(table.find("Bruce")->name(), QByteArray("Bruce"));
        TStressProtocol empty;
        table.set("Bruce", empty);
        QCOMPARE(table.find("Bruce")->stageCount(), 0);
        QCOMPARE(table.names().size(), std::size_t(8));
    }

    void removedProtocolsAreGone()
    {
        TProtocolTable table = TProtocolTable::builtIn();
        table.remove("Who");
        table.remove("absent");
        QVERIFY(table.find("Who") == nullptr);
        QCOMPARE(table.names().size(), std::size_t(6));
    }

    void aTableThatCannotBeWrittenIsNotTold()
    {
        const QString path = m_folder->filePath(QStringLiteral("absent/protocols.json"));
        QCOMPARE(failureText([&] { TProtocolTable::builtIn().save(path); }), QString());
        QVERIFY(!QFile::exists(path));
    }

    void aFullDiskLeavesTheOldTable_data()
    {
        QTest::addColumn<int>("room");
        QTest::newRow("none") << 0;
        QTest::newRow("for a part") << 5000;
        QTest::newRow("one byte missing") << TProtocolTable::builtIn().toJson().size() - 1;
    }

    void aFullDiskLeavesTheOldTable()
    {
        QFETCH(int, room);
        QVERIFY(writeFile(m_path, "[]"));
        {
            const FullDisk disk(static_cast<rlim_t>(room));
            TProtocolTable::builtIn().save(m_path);
        }
        QCOMPARE(readFile(m_path), QByteArray("[]"));
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    }

    void aLongTableThatDoesNotFitLeavesTheOldOne()
    {
        TProtocolTable table = TProtocolTable::builtIn();
        for (int i = 0; i < 50; ++i)
            table.set("Copy " + QByteArray::number(i), *table.find("Balke-Ware"));
        QVERIFY(writeFile(m_path, "[]"));
        {
            const FullDisk disk(60000);
            table.save(m_path);
        }
        QCOMPARE(readFile(m_path), QByteArray("[]"));
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

QTEST_GUILESS_MAIN(TProtocolTableTest)
#include "TProtocolTableTest.moc"
