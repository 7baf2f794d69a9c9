#include "app/BoxReader.h"
#include "app/LauncherUser.h"
#include "app/RecentStudies.h"
#include "base/Error.h"
#include "study/Study.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

namespace {

/// A store whose disk is full when a study is saved.
class FullStore : public LocalStudyDatabase
{
public:
    using LocalStudyDatabase::LocalStudyDatabase;
    void saveStudy(Study*) override { throw TError("No space left on device"); }
};

/// Tells whether a widget was enabled for a moment.
class EnabledWatch : public QObject
{
public:
    explicit EnabledWatch(QWidget& widget) { widget.installEventFilter(this); }
    bool wasEnabled = false;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* widget = qobject_cast<QWidget*>(watched);
        wasEnabled = wasEnabled || (event->type() == QEvent::EnabledChange && widget->isEnabled());
        return false;
    }
};

/// Fails when a monitor comes to the screen.
class FailingScreen : public QObject
{
public:
    FailingScreen() { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<EcgMonitorWindow*>(watched))
            throw TError("No screen");
        return false;
    }
};

QAbstractButton* button(EcgMonitorWindow* monitor, const char* name)
{
    return monitor->findChild<QAbstractButton*>(QLatin1String(name));
}

} // namespace

/// A resting ECG of the demonstration device, from the quick fields to the stored study.
class EcgExaminationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { wearTheStyle(); }

    void init()
    {
        QSettings().clear();
        TestHome::closeStore();
        QDir(m_home.dataFolder()).removeRecursively();
        QVERIFY(m_home.useDemo());
    }

    void cleanup() { QVERIFY(!openMonitor()); }

    void aRecordingThatIsSavedIsInTheStoreAndInTheRecentList()
    {
        BoxReader reader;
        LauncherUser user;
        start(user);
        QVERIFY(!user.window.isEnabled());
        record(1500);
        stop();
        QVERIFY(RecentStudies::shown().empty());
        QTest::mouseClick(button(openMonitor(), "btnSave"), Qt::LeftButton);
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled(); }));
        QVERIFY(!openMonitor());

        const std::vector<StudyInfo> studies = studyDatabase()->listStudies();
        QCOMPARE(studies.size(), size_t(1));
        QCOMPARE(studies[0].studyType, QByteArray("ECG"));
        QCOMPARE(studies[0].lastName, QByteArray("Diaz"));
        QVERIFY(!studyDatabase()->isStudyOpen(studies[0].id));
        Study* study = studyDatabase()->openStudy(studies[0].id);
        QVERIFY(study);
        QVERIFY(study->ecg()->sampleCount() >= 500);
        QCOMPARE(study->ecg()->channelCount(), 14);
        QCOMPARE(study->value("patient/personIdNumber"), QByteArray("30111"));
        QVERIFY(study->recordingDateTime() != "00000000000000");

        const std::vector<TRecentStudy> recent = RecentStudies::shown();
        QCOMPARE(recent.size(), size_t(1));
        QCOMPARE(recent[0].id, QString::number(studies[0].id));
        QCOMPARE(recent[0].patient, QStringLiteral("Diaz, Ana"));
        QCOMPARE(recent[0].time.toString(QStringLiteral("yyyyMMddHHmmss")).toUtf8(),
                 studies[0].studyDateTime);
        QVERIFY(reader.boxes().empty());
    }

    void afterAStudyTheFieldsAreEmpty()
    {
        LauncherUser user;
        start(user);
        openMonitor()->close();
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled(); }));
        for (const char* field : {"txtLastName", "txtFirstName", "txtAge", "txtPatientId", "txtPersonId"})
            QCOMPARE(user.text(field), QString());
        for (const char* sex : {"btnMale", "btnFemale"})
            QVERIFY(!user.find<QAbstractButton>(sex, "frameEcg")->isChecked());
        QVERIFY(!user.find("btnStartEcg")->isEnabled());
        QCOMPARE(user.window.focusWidget(), user.find("txtLastName", "frameEcg"));
        // The group is exclusive again.
        user.click("btnMale", "frameEcg");
        user.click("btnFemale", "frameEcg");
        QVERIFY(!user.find<QAbstractButton>("btnMale", "frameEcg")->isChecked());
    }

    void aMonitorThatIsClosedWhileRecordingKeepsTheStudy()
    {
        LauncherUser user;
        start(user);
        record(1200);
        openMonitor()->close();
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled(); }));
        QCOMPARE(RecentStudies::shown().size(), size_t(1));
        const std::vector<StudyInfo> studies = studyDatabase()->listStudies();
        QCOMPARE(studies.size(), size_t(1));
        Study* study = studyDatabase()->openStudy(studies[0].id);
        QVERIFY(study);
        QVERIFY(study->ecg()->sampleCount() >= 300);
    }

    void theLauncherStaysOpenWhileAMonitorIsThere()
    {
        LauncherUser user;
        const QSignalSpy closed(&user.window, &MainWindow::closed);
        start(user);
        user.window.close();
        QVERIFY(user.window.isVisible());
        QCOMPARE(closed.count(), 0);
        openMonitor()->close();
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled(); }));
        user.window.close();
        QVERIFY(!user.window.isVisible());
        QCOMPARE(closed.count(), 1);
    }

    void aRepeatedRecordingLeavesNothingOfTheFirst()
    {
        BoxReader reader;
        LauncherUser user;
        start(user);
        EnabledWatch watch(user.window);
        const StudyInfo first = studyDatabase()->listStudies().at(0);
        record(600);
        stop();
        QPointer<EcgMonitorWindow> before = openMonitor();
        QTest::mouseClick(button(before, "btnRepeat"), Qt::LeftButton);
        QVERIFY(QTest::qWaitFor([&] { return !before && openMonitor(); }));
        QVERIFY(!watch.wasEnabled);
        QVERIFY(RecentStudies::shown().empty());
        const std::vector<StudyInfo> studies = studyDatabase()->listStudies();
        QCOMPARE(studies.size(), size_t(1));
        QVERIFY(studies[0].id != first.id);
        QCOMPARE(studies[0].studyDateTime, first.studyDateTime);
        QCOMPARE(studies[0].lastName, first.lastName);
        QCOMPARE(studyFiles().size(), 3);

        // And the next one is kept.
        record(600);
        stop();
        QTest::mouseClick(button(openMonitor(), "btnSave"), Qt::LeftButton);
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled(); }));
        QCOMPARE(RecentStudies::shown().at(0).id, QString::number(studies[0].id));
        QVERIFY(studyDatabase()->openStudy(studies[0].id));
        QVERIFY(reader.boxes().empty());
    }

    void aRepetitionWithoutADeviceReturnsToTheLauncher()
    {
        BoxReader reader;
        LauncherUser user;
        start(user);
        record(300);
        stop();
        QVERIFY(QFile::remove(m_home.path("ecg500.dat")));
        QTest::mouseClick(button(openMonitor(), "btnRepeat"), Qt::LeftButton);
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled() && !reader.boxes().empty(); }));
        QCOMPARE(reader.texts(), QStringList(QStringLiteral("Error: Cannot open file")));
        QVERIFY(studyDatabase()->listStudies().empty());
        QCOMPARE(studyFiles(), QStringList());
        QVERIFY(RecentStudies::shown().empty());
    }

    void aStartThatFailsLeavesNoStudy()
    {
        BoxReader reader;
        LauncherUser user;
        user.openEcg();
        user.type("txtLastName", "Diaz");
        user.type("txtFirstName", "Ana");
        {
            const FailingScreen screen;
            user.click("btnStartEcg");
        }
        QCOMPARE(reader.texts(), QStringList(QStringLiteral("Error: No screen")));
        QVERIFY(user.window.isEnabled());
        QVERIFY(studyDatabase()->listStudies().empty());
        QCOMPARE(studyFiles(), QStringList());
        QCOMPARE(user.text("txtLastName"), QStringLiteral("Diaz"));
        // And the next one starts.
        user.click("btnStartEcg");
        QVERIFY(openMonitor());
        openMonitor()->close();
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled(); }));
    }

    void aStudyIsExportedIfTheSettingsSaySo_data()
    {
        QTest::addColumn<bool>("isOn");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("box");
        const QString good = m_home.path("export");
        const QString bad = m_home.path("no/such/folder");
        QTest::newRow("folder") << true << good
                                << QStringLiteral(
                                       "Information: Study file was succesfully exported to folder: ") +
                                       good;
        QTest::newRow("no such folder")
            << true << bad
            << QStringLiteral("Warning: Study file could not be exported to folder: %1\nPlease check shared "
                              "folder access with your network administrator.")
                   .arg(bad);
        QTest::newRow("empty folder") << true << QString() << QString();
        QTest::newRow("off") << false << good << QString();
    }

    void aStudyIsExportedIfTheSettingsSaySo()
    {
        QFETCH(bool, isOn);
        QFETCH(QString, folder);
        QFETCH(QString, box);
        QDir exported(m_home.path("export"));
        exported.removeRecursively();
        QVERIFY(QDir().mkpath(exported.path()));
        settings::autoExportStudies.setValue(isOn);
        settings::exportEcgStudyFolder.setValue(folder);
        settings::exportStressStudyFolder.setValue(m_home.path("export"));
        BoxReader reader;
        LauncherUser user;
        start(user);
        openMonitor()->close();
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled(); }));
        QCoreApplication::processEvents();
        QCOMPARE(reader.texts().join(QLatin1Char(' ')), box);
        const bool isGood = isOn && folder == exported.path();
        QCOMPARE(exported.entryList({QStringLiteral("*.vtz")}, QDir::Files).size(), isGood ? 1 : 0);
        QVERIFY(user.window.isEnabled());
        QVERIFY(!QApplication::overrideCursor());
        QCOMPARE(RecentStudies::shown().size(), size_t(1));
    }

    void aFullDiskIsToldAndTheStudyIsClosed()
    {
        setStudyDatabase(new FullStore(m_home.dataFolder()));
        BoxReader reader;
        LauncherUser user;
        start(user);
        record(600);
        const qint32 id = studyDatabase()->listStudies().at(0).id;
        openMonitor()->close();
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled() && !reader.boxes().empty(); }));
        // The monitor may have told of it before; what could not be filed is told once.
        QCOMPARE(reader.texts().last(), QStringLiteral("Error: No space left on device"));
        QCOMPARE(reader.texts().filter(QStringLiteral("Error:")).size(), 1);
        QVERIFY(!studyDatabase()->isStudyOpen(id));
        QCOMPARE(RecentStudies::shown().at(0).id, QString::number(id));
        // What was recorded is there all the same.
        Study* study = studyDatabase()->openStudy(id);
        QVERIFY(study && study->ecg()->sampleCount() > 0);
    }

    void aLauncherThatGoesKeepsTheStudyOfItsMonitor()
    {
        auto user = std::make_unique<LauncherUser>();
        start(*user);
        record(600);
        const qint32 id = studyDatabase()->listStudies().at(0).id;
        user.reset();
        QVERIFY(!openMonitor());
        QVERIFY(!studyDatabase()->isStudyOpen(id));
        QCOMPARE(RecentStudies::shown().at(0).id, QString::number(id));
        QVERIFY(studyDatabase()->openStudy(id));
    }

    void twoStudiesOfAPatientAtTheSameTimeBothStart()
    {
        LauncherUser user;
        for (int i = 0; i < 3; ++i) {
            start(user);
            openMonitor()->close();
            QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled(); }));
        }
        QCOMPARE(studyDatabase()->listStudies().size(), size_t(3));
        QCOMPARE(studyFiles().size(), 9);
    }

    void theLongFormStartsAnEcgAsWell()
    {
        LauncherUser user;
        user.openEcg();
        user.type("txtLastName", "Diaz");
        user.type("txtFirstName", "Ana");
        user.type("txtPatientId", "H-7");
        QTimer::singleShot(0, this, [] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            dialog->accept();
        });
        user.click("btnMoreEcg");
        QVERIFY(openMonitor());
        QVERIFY(!user.window.isEnabled());
        QCOMPARE(user.text("txtLastName"), QString());
        const qint32 id = studyDatabase()->listStudies().at(0).id;
        openMonitor()->close();
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled(); }));
        Study* study = studyDatabase()->openStudy(id);
        QVERIFY(study);
        QCOMPARE(study->value("patient/lastName"), QByteArray("Diaz"));
        QCOMPARE(study->value("patient/medicalHistoryNumber"), QByteArray("H-7"));
    }

    void aLongFormThatIsCancelledChangesNothing()
    {
        LauncherUser user;
        user.openEcg();
        user.type("txtLastName", "Diaz");
        QTimer::singleShot(0, this, [] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            dialog->reject();
        });
        user.click("btnMoreEcg");
        QVERIFY(!openMonitor());
        QVERIFY(user.window.isEnabled());
        QCOMPARE(user.text("txtLastName"), QStringLiteral("Diaz"));
        QVERIFY(studyDatabase()->listStudies().empty());
    }

private:
    static void start(LauncherUser& user)
    {
        if (user.find("frameEcg")->isHidden())
            user.openEcg();
        user.type("txtLastName", "Diaz");
        user.type("txtFirstName", "Ana");
        user.type("txtAge", "50");
        user.type("txtPersonId", "30111");
        user.click("btnFemale", "frameEcg");
        user.click("btnStartEcg");
        QVERIFY(openMonitor());
        QVERIFY(QTest::qWaitFor([] { return openMonitor()->isFullScreen(); }));
    }

    static void record(int ms)
    {
        EcgMonitorWindow* monitor = openMonitor();
        QTest::mouseClick(button(monitor, "btnStart"), Qt::LeftButton);
        QVERIFY(QTest::qWaitFor([&] { return button(monitor, "btnStop")->isEnabled(); }));
        QTest::qWait(ms);
    }

    static void stop() { QTest::mouseClick(button(openMonitor(), "btnStop"), Qt::LeftButton); }

    QStringList studyFiles() const
    {
        return QDir(m_home.dataFolder()).entryList({QStringLiteral("*.vt*")}, QDir::Files);
    }

    TestHome m_home;
};

QTEST_MAIN(EcgExaminationTest)
#include "EcgExaminationTest.moc"
