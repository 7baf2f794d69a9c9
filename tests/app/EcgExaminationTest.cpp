#include "app/BoxReader.h"
#include "app/EcgUser.h"
#include "app/RecentStudies.h"

namespace {

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

} // namespace

/// A resting ECG of the demonstration device, from the quick fields to the stored study.
class EcgExaminationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { wearTheStyle(); }
    void init() { m_home.prepare(); }
    void cleanup() { QVERIFY(!openMonitor()); }

    void aRecordingThatIsSavedIsInTheStoreAndInTheRecentList()
    {
        BoxReader reader;
        EcgUser user;
        user.start();
        QVERIFY(!user.window.isEnabled());
        user.record(500);
        clickMonitor("btnStop");
        QVERIFY(RecentStudies::shown().empty());
        clickMonitor("btnSave");
        QVERIFY(user.waitForReturn());
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
        QCOMPARE(reader.texts(), QStringList());
    }

    void afterAStudyTheFieldsAreEmpty()
    {
        EcgUser user;
        user.start();
        openMonitor()->close();
        QVERIFY(user.waitForReturn());
        QCOMPARE(user.fields(), EcgUser::empty());
        QVERIFY(!user.find("btnStartEcg")->isEnabled());
        QCOMPARE(user.window.focusWidget(), user.find("txtLastName", "frameEcg"));
        // The group is exclusive again.
        user.click("btnMale", "frameEcg");
        user.click("btnFemale", "frameEcg");
        QVERIFY(!user.find<QAbstractButton>("btnMale", "frameEcg")->isChecked());
    }

    void aMonitorThatIsClosedWhileRecordingKeepsTheStudy()
    {
        EcgUser user;
        user.start();
        user.record(300);
        openMonitor()->close();
        QVERIFY(user.waitForReturn());
        QCOMPARE(RecentStudies::shown().size(), size_t(1));
        const std::vector<StudyInfo> studies = studyDatabase()->listStudies();
        QCOMPARE(studies.size(), size_t(1));
        Study* study = studyDatabase()->openStudy(studies[0].id);
        QVERIFY(study);
        QVERIFY(study->ecg()->sampleCount() >= 300);
    }

    void theLauncherStaysOpenWhileAMonitorIsThere()
    {
        EcgUser user;
        const QSignalSpy closed(&user.window, &MainWindow::closed);
        user.start();
        user.window.close();
        QVERIFY(user.window.isVisible());
        QCOMPARE(closed.count(), 0);
        openMonitor()->close();
        QVERIFY(user.waitForReturn());
        user.window.close();
        QVERIFY(!user.window.isVisible());
        QCOMPARE(closed.count(), 1);
    }

    void aRepeatedRecordingLeavesNothingOfTheFirst()
    {
        BoxReader reader;
        EcgUser user;
        user.start();
        EnabledWatch watch(user.window);
        const StudyInfo first = studyDatabase()->listStudies().at(0);
        user.record(200);
        clickMonitor("btnStop");
        QPointer<EcgMonitorWindow> before = openMonitor();
        clickMonitor("btnRepeat");
        QVERIFY(QTest::qWaitFor([&] { return !before && openMonitor(); }));
        QVERIFY(!watch.wasEnabled);
        QVERIFY(RecentStudies::shown().empty());
        const std::vector<StudyInfo> studies = studyDatabase()->listStudies();
        QCOMPARE(studies.size(), size_t(1));
        QVERIFY(studies[0].id != first.id);
        QCOMPARE(studies[0].studyDateTime, first.studyDateTime);
        QCOMPARE(studies[0].lastName, first.lastName);
        QCOMPARE(m_home.studyFiles().size(), 3);

        // And the next one is kept.
        user.record(200);
        clickMonitor("btnStop");
        clickMonitor("btnSave");
        QVERIFY(user.waitForReturn());
        QCOMPARE(user.fields(), EcgUser::empty());
        QCOMPARE(RecentStudies::shown().at(0).id, QString::number(studies[0].id));
        QVERIFY(studyDatabase()->openStudy(studies[0].id));
        QCOMPARE(reader.texts(), QStringList());
    }

    void aLauncherThatGoesKeepsTheStudyOfItsMonitor()
    {
        auto user = std::make_unique<EcgUser>();
        user->start();
        user->record(200);
        const qint32 id = studyDatabase()->listStudies().at(0).id;
        user.reset();
        QVERIFY(!openMonitor());
        QVERIFY(!studyDatabase()->isStudyOpen(id));
        QCOMPARE(RecentStudies::shown().at(0).id, QString::number(id));
        QVERIFY(studyDatabase()->openStudy(id));
    }

    void aLauncherThatGoesDropsAStudyThatIsToBeRepeated_data()
    {
        QTest::addColumn<bool>("isMonitorGone");
        QTest::newRow("the monitor is closed") << false;
        QTest::newRow("the monitor has told of its end") << true;
    }

    void aLauncherThatGoesDropsAStudyThatIsToBeRepeated()
    {
        QFETCH(bool, isMonitorGone);
        auto user = std::make_unique<EcgUser>();
        user->start();
        user->record(200);
        clickMonitor("btnStop");
        QPointer<EcgMonitorWindow> monitor = openMonitor();
        clickMonitor("btnRepeat");
        QVERIFY(monitor && !monitor->isVisible());
        if (isMonitorGone)
            QCoreApplication::sendPostedEvents(monitor, QEvent::DeferredDelete);
        QCOMPARE(monitor.isNull(), isMonitorGone);
        user.reset();
        QVERIFY(!monitor);
        QVERIFY(RecentStudies::shown().empty());
        QVERIFY(studyDatabase()->listStudies().empty());
        QCOMPARE(m_home.studyFiles(), QStringList());
    }

    void twoStudiesOfAPatientAtTheSameTimeBothStart()
    {
        const EcgUser user;
        EcgExamination examination;
        const StudyInfo info =
            quickEcgInfo({QStringLiteral("Diaz"), QStringLiteral("Ana"), {}, {}, {}, {}, {}},
                         QDateTime(QDate(2024, 3, 5), QTime(7, 8, 9)));
        for (const char* time : {"20240305070809", "20240305070810"}) {
            QVERIFY(examination.start(info));
            openMonitor()->close();
            QVERIFY(QTest::qWaitFor([&] { return !examination.isRunning(); }));
            QVERIFY(times().contains(time));
        }
        QCOMPARE(times().size(), 2);
        QCOMPARE(m_home.studyFiles().size(), 6);
    }

    void theLongFormStartsAnEcgAsWell()
    {
        EcgUser user;
        user.fillIn();
        whenDialogOpens(this, [](QDialog& dialog) { dialog.accept(); });
        user.click("btnMoreEcg");
        QVERIFY(openMonitor());
        QVERIFY(!user.window.isEnabled());
        QCOMPARE(user.fields(), EcgUser::empty());
        const qint32 id = studyDatabase()->listStudies().at(0).id;
        openMonitor()->close();
        QVERIFY(user.waitForReturn());
        Study* study = studyDatabase()->openStudy(id);
        QVERIFY(study);
        QCOMPARE(study->value("patient/lastName"), QByteArray("Diaz"));
        QCOMPARE(study->value("patient/medicalHistoryNumber"), QByteArray("H-7"));
    }

    void aLongFormThatIsCancelledChangesNothing()
    {
        EcgUser user;
        user.fillIn();
        whenDialogOpens(this, [](QDialog& dialog) { dialog.reject(); });
        user.click("btnMoreEcg");
        QVERIFY(!openMonitor());
        QVERIFY(user.window.isEnabled());
        QCOMPARE(user.fields(), EcgUser::filledIn());
        QVERIFY(studyDatabase()->listStudies().empty());
    }

private:
    static QList<QByteArray> times()
    {
        QList<QByteArray> all;
        for (const StudyInfo& info : studyDatabase()->listStudies())
            all << info.studyDateTime;
        return all;
    }

    EcgHome m_home;
};

QTEST_MAIN(EcgExaminationTest)
#include "EcgExaminationTest.moc"
