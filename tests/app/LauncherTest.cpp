#include "acq/DeviceDiscovery.h"
#include "app/LauncherUser.h"
#include "app/RecentStudies.h"
#include "support/AccessibleControls.h"

#include <QLabel>
#include <QTreeWidget>

namespace {

const char* const sections[] = {"frameStress", "frameEcg", "frameOpen"};
const char* const sectionButtons[] = {"btnNewStudyStress", "btnNewStudyEcg", "btnOpenStudy"};

} // namespace

/// The launcher without a recording.
class LauncherTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        acq::setPortLister([] { return std::vector<TPortDescription>(); });
        wearTheStyle();
    }

    void init()
    {
        QSettings().clear();
        TestHome::closeStore();
        QDir(m_home.dataFolder()).removeRecursively();
    }

    void itIsOnTheScreenButDisabledBeforeTheStoreExists()
    {
        MainWindow window;
        window.show();
        QVERIFY(window.isVisible());
        QVERIFY(!window.isEnabled());
        QVERIFY(!studyDatabase());
        QVERIFY(QTest::qWaitFor([&] { return window.isEnabled(); }));
        QVERIFY(studyDatabase());
        QCOMPARE(studyDatabase()->folder(), m_home.dataFolder());
        QVERIFY(!QApplication::overrideCursor());
        QVERIFY(!QApplication::activeModalWidget());
    }

    void aLauncherThatIsClosedAtOnceOpensNoStore()
    {
        MainWindow window;
        const QSignalSpy closed(&window, &MainWindow::closed);
        window.show();
        QVERIFY(window.close());
        QCOMPARE(closed.count(), 1);
        QTest::qWait(50);
        QVERIFY(!studyDatabase());
        QVERIFY(!QApplication::activeModalWidget());
    }

    void aStoreThatExistsIsTaken()
    {
        auto* store = new LocalStudyDatabase(m_home.path("other"));
        setStudyDatabase(store);
        const LauncherUser user;
        QCOMPARE(studyDatabase(), store);
    }

    void itTellsTheNamesAndTheVersion()
    {
        LauncherUser user;
        QCOMPARE(user.window.windowTitle(), QStringLiteral("Velantor ECG"));
        QCOMPARE(user.find<QLabel>("lblTitle")->text(), QStringLiteral("ECG"));
        QCOMPARE(user.find<QLabel>("lblTitle")->font().pointSize(), 24);
        QCOMPARE(user.find<QLabel>("lblVersion")->text(), QStringLiteral("v 1.27c"));
        QCOMPARE(user.find<QLabel>("lblVeterinary")->text(), QStringLiteral("VETERINARIA"));
        QVERIFY(user.find("lblVeterinary")->isHidden());
    }

    void anotherNameOfTheProgramIsTold()
    {
        QCoreApplication::setApplicationName(QStringLiteral("Corvane 2"));
        const MainWindow window;
        QCoreApplication::setApplicationName(QLatin1String(velantor::applicationName));
        QCOMPARE(window.windowTitle(), QStringLiteral("Velantor Stress ECG 2"));
    }

    void theSectionsStartCollapsed()
    {
        LauncherUser user;
        for (const char* section : sections) {
            QVERIFY(user.find(section)->isHidden());
            QCOMPARE(user.find(section)->maximumHeight(), 0);
        }
    }

    void aSectionUnfoldsAndTheOtherFolds()
    {
        LauncherUser user;
        for (int i = 0; i < 3; ++i) {
            user.click(sectionButtons[i]);
            QVERIFY(user.find(sections[i])->maximumHeight() < 50);
            QVERIFY(
                QTest::qWaitFor([&] { return user.find(sections[i])->maximumHeight() == QWIDGETSIZE_MAX; }));
            QCoreApplication::processEvents();
            for (int other = 0; other < 3; ++other)
                QCOMPARE(user.find(sections[other])->isVisible(), other == i);
            QVERIFY(user.find(sections[i])->height() >= user.find(sections[i])->minimumSizeHint().height());
        }
    }

    void aSectionThatFoldsCanBeAskedForAgain()
    {
        LauncherUser user;
        user.click("btnNewStudyEcg");
        QTest::qWait(50);
        user.click("btnOpenStudy");
        QTest::qWait(50);
        user.openEcg();
        QVERIFY(QTest::qWaitFor([&] { return user.find("frameOpen")->isHidden(); }));
        QVERIFY(user.find("frameEcg")->isVisible());
    }

    void theWindowFitsASmallScreen_data()
    {
        QTest::addColumn<int>("section");
        QTest::newRow("collapsed") << -1;
        QTest::newRow("stress") << 0;
        QTest::newRow("ecg") << 1;
        QTest::newRow("open") << 2;
    }

    void theWindowFitsASmallScreen()
    {
        QFETCH(int, section);
        fillRecentList();
        LauncherUser user;
        if (section >= 0)
            user.open(sectionButtons[section], sections[section]);
        QVERIFY(user.window.width() <= 600);
        QVERIFY(user.window.height() <= 760);
        for (const QWidget* child : user.window.centralWidget()->findChildren<QWidget*>()) {
            const QRect inWindow(child->mapTo(&user.window, QPoint()), child->size());
            QVERIFY2(!child->isVisible() || user.window.rect().contains(inWindow),
                     qPrintable(child->objectName()));
        }
        const QString folder = qEnvironmentVariable("VELANTOR_PICTURES");
        if (!folder.isEmpty())
            QVERIFY(user.window.grab().save(
                QStringLiteral("%1/launcher-%2.png").arg(folder, QLatin1String(QTest::currentDataTag()))));
    }

    void whatHasNoWindowYetIsDisabled()
    {
        fillRecentList();
        LauncherUser user;
        user.open("btnNewStudyStress", "frameStress");
        user.type("txtLastName", "Diaz", "frameStress");
        user.type("txtFirstName", "Ana", "frameStress");
        user.type("txtAge", "50", "frameStress");
        user.click("btnFemale", "frameStress");
        for (const char* name : {"btnStartStress", "btnMoreStress", "btnOpenOK", "btnOpenMore", "btnConfig"})
            QVERIFY2(!user.find(name)->isEnabled(), name);
        for (const char* name : {"btnWorklistStress", "btnWorklistEcg"})
            QVERIFY2(user.find(name)->isHidden(), name);
    }

    void theTreeShowsFiveOfTen()
    {
        fillRecentList();
        LauncherUser user;
        user.open("btnOpenStudy", "frameOpen");
        auto* tree = user.find<QTreeWidget>("treeStudies");
        QVERIFY(tree->isColumnHidden(0));
        QCOMPARE(tree->headerItem()->text(0), QStringLiteral("Id"));
        QCOMPARE(tree->headerItem()->text(1), QStringLiteral("Patient"));
        QCOMPARE(tree->headerItem()->text(2), QStringLiteral("Date"));
        QCOMPARE(tree->topLevelItemCount(), 5);
        QCOMPARE(tree->topLevelItem(0)->text(0), QStringLiteral("110"));
        QCOMPARE(tree->topLevelItem(4)->text(0), QStringLiteral("106"));
        QCOMPARE(tree->topLevelItem(0)->text(1), QStringLiteral("Diaz 10, Ana"));
        QCOMPARE(tree->topLevelItem(0)->text(2),
                 QLocale().toString(QDateTime(QDate(2024, 3, 5), QTime(7, 8, 9)), QLocale::ShortFormat));
        QCOMPARE(tree->currentItem(), tree->topLevelItem(0));
    }

    void theTreeIsFilledAnewWhenItsSectionOpens()
    {
        LauncherUser user;
        user.open("btnOpenStudy", "frameOpen");
        QCOMPARE(user.find<QTreeWidget>("treeStudies")->topLevelItemCount(), 0);
        user.openEcg();
        fillRecentList();
        user.open("btnOpenStudy", "frameOpen");
        QCOMPARE(user.find<QTreeWidget>("treeStudies")->topLevelItemCount(), 5);
    }

    void theCloseButtonClosesIt()
    {
        LauncherUser user;
        const QSignalSpy closed(&user.window, &MainWindow::closed);
        user.click("btnClose");
        QVERIFY(!user.window.isVisible());
        QCOMPARE(closed.count(), 1);
    }

    void theKeyboardReachesTheSectionsFromTheStart()
    {
        LauncherUser user;
        QTest::keyClick(&user.window, Qt::Key_Tab);
        QCOMPARE(user.window.focusWidget(), user.find("btnNewStudyStress"));
        QTest::keyClick(user.window.focusWidget(), Qt::Key_Tab);
        QTest::keyClick(user.window.focusWidget(), Qt::Key_Space);
        QVERIFY(QTest::qWaitFor([&] { return user.find("frameEcg")->maximumHeight() == QWIDGETSIZE_MAX; }));
        QCOMPARE(user.window.focusWidget(), user.find("txtLastName", "frameEcg"));
    }

    void everyControlHasAnAccessibleName()
    {
        LauncherUser user;
        QCOMPARE(controlsWithoutName(user.window), QStringList());
    }

private:
    static void fillRecentList()
    {
        for (int i = 1; i <= 10; ++i) {
            StudyInfo info;
            info.id = 100 + i;
            info.studyDateTime = "20240305070809";
            info.lastName = "Diaz " + QByteArray::number(i);
            info.firstName = "Ana";
            RecentStudies::add(info);
        }
    }

    TestHome m_home;
};

QTEST_MAIN(LauncherTest)
#include "LauncherTest.moc"
