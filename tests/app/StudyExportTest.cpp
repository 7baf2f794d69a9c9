#include "app/StudyExport.h"

#include "app/BoxReader.h"
#include "app/EcgUser.h"
#include "app/RecentStudies.h"

namespace {

QString told(const QString& folder, bool isGood)
{
    if (isGood)
        return QStringLiteral("information, Information: Study file was succesfully exported to folder: ") +
               folder;
    return QStringLiteral("warning, Warning: Study file could not be exported to folder: %1\nPlease check "
                          "shared folder access with your network administrator.")
        .arg(folder);
}

} // namespace

/// The archive of a study that has just been made.
class StudyExportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { wearTheStyle(); }
    void init()
    {
        m_home.prepare();
        m_exported.removeRecursively();
        QVERIFY(QDir().mkpath(m_exported.path()));
    }
    void cleanup() { QVERIFY(!openMonitor()); }

    void aStudyIsExportedIfTheSettingsSaySo_data()
    {
        QTest::addColumn<bool>("isOn");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("box");
        const QString good = m_exported.path();
        const QString tags = m_home.path("a<b>or</b>c & d");
        const QString bad = m_home.path("no/such/folder");
        QTest::newRow("folder") << true << good << told(good, true);
        QTest::newRow("no such folder") << true << bad << told(bad, false);
        QTest::newRow("a name that looks like tags") << true << tags << told(tags, false);
        QTest::newRow("empty folder") << true << QString() << QString();
        QTest::newRow("off") << false << good << QString();
    }

    void aStudyIsExportedIfTheSettingsSaySo()
    {
        QFETCH(bool, isOn);
        QFETCH(QString, folder);
        QFETCH(QString, box);
        settings::autoExportStudies.setValue(isOn);
        settings::exportEcgStudyFolder.setValue(folder);
        settings::exportStressStudyFolder.setValue(m_exported.path());
        BoxReader reader;
        EcgUser user;
        user.start();
        openMonitor()->close();
        QVERIFY(user.waitForReturn());
        QCoreApplication::processEvents();
        QCOMPARE(reader.texts().join(QLatin1Char(' ')), box);
        const bool isGood = isOn && folder == m_exported.path();
        QCOMPARE(archives(), isGood ? 1 : 0);
        QVERIFY(user.window.isEnabled());
        QVERIFY(!QApplication::overrideCursor());
        QCOMPARE(RecentStudies::shown().size(), size_t(1));
    }

    void aStudyThatIsGoneIsNotToldAsExported()
    {
        settings::autoExportStudies.setValue(true);
        settings::exportEcgStudyFolder.setValue(m_exported.path());
        BoxReader reader;
        EcgUser user;
        user.start();
        user.store->losesStudies = true;
        openMonitor()->close();
        QVERIFY(user.waitForReturn());
        QVERIFY(QTest::qWaitFor([&] { return !reader.boxes().empty(); }));
        QCOMPARE(reader.texts(), QStringList(told(m_exported.path(), false)));
        QCOMPARE(archives(), 0);
    }

private:
    int archives() const { return m_exported.entryList({QStringLiteral("*.vtz")}, QDir::Files).size(); }

    EcgHome m_home;
    QDir m_exported{m_home.path("export")};
};

QTEST_MAIN(StudyExportTest)
#include "StudyExportTest.moc"
