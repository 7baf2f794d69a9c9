#include "app/BoxReader.h"
#include "app/EcgUser.h"
#include "app/GuardedApplication.h"
#include "app/RecentStudies.h"
#include "study/FullDisk.h"

namespace {

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

QStringList error(const char* text)
{
    return {QLatin1String("critical, Error: ") + QLatin1String(text)};
}

QLineEdit* field(QDialog& dialog, const char* name)
{
    auto* found = dialog.findChild<QLineEdit*>(QLatin1String(name));
    require(found, name);
    return found;
}

/// In the category list of the form every page is there at once, so hidden fields can be filled too.
void typeWeight(QDialog& dialog)
{
    field(dialog, "txtWeight")->setText(QStringLiteral("61"));
}

} // namespace

/// Resting ECGs with which something goes wrong, under the application that the program has: what event
/// handlers throw reaches none of the callers by itself.
class EcgFailureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { wearTheStyle(); }
    void init() { m_home.prepare(); }
    void cleanup() { QVERIFY(!openMonitor()); }

    void aScreenThatFailsLeavesNoStudy()
    {
        BoxReader reader;
        EcgUser user;
        user.fillIn();
        {
            const FailingScreen screen;
            user.click("btnStartEcg");
        }
        QCOMPARE(reader.texts(), error("No screen"));
        QVERIFY(!openMonitor());
        expectNothing(user);
        QCOMPARE(user.fields(), EcgUser::filledIn());
        // The program goes on, and the next one starts.
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCOMPARE(static_cast<GuardedApplication*>(qApp)->run(), 0);
        user.click("btnStartEcg");
        QVERIFY(openMonitor());
        openMonitor()->close();
        QVERIFY(user.waitForReturn());
        QCOMPARE(studyDatabase()->listStudies().size(), size_t(1));
    }

    void aStudyThatCannotBeRemovedIsClosedAtLeast()
    {
        BoxReader reader;
        EcgUser user;
        user.fillIn();
        user.store->cannotDelete = true;
        {
            const FailingScreen screen;
            user.click("btnStartEcg");
        }
        // What failed first is what counts.
        QCOMPARE(reader.texts(), error("No screen"));
        QVERIFY(user.window.isEnabled());
        const std::vector<StudyInfo> studies = studyDatabase()->listStudies();
        QCOMPARE(studies.size(), size_t(1));
        QVERIFY(!studyDatabase()->isStudyOpen(studies[0].id));
        QVERIFY(RecentStudies::shown().empty());
        user.click("btnStartEcg");
        QVERIFY(openMonitor());
        openMonitor()->close();
        QVERIFY(user.waitForReturn());
    }

    void aRepetitionWithoutADeviceKeepsWhatWasTyped()
    {
        BoxReader reader;
        EcgUser user;
        user.start();
        user.record(100);
        clickMonitor("btnStop");
        QVERIFY(QFile::remove(m_home.path("ecg500.dat")));
        clickMonitor("btnRepeat");
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled() && !reader.boxes().empty(); }));
        QVERIFY(QTest::qWaitFor([&] { return user.fields() != EcgUser::empty(); }));
        QCOMPARE(reader.texts(), error("Cannot open file"));
        expectNothing(user);
        QCOMPARE(user.fields(), EcgUser::filledIn());
        QVERIFY(user.find("btnStartEcg")->isEnabled());
    }

    void aRepetitionOfTheLongFormComesBackToIt()
    {
        BoxReader reader;
        EcgUser user;
        user.fillIn();
        whenDialogOpens(this, [](QDialog& dialog) {
            typeWeight(dialog);
            dialog.accept();
        });
        user.click("btnMoreEcg");
        QVERIFY(openMonitor());
        user.record(100);
        clickMonitor("btnStop");
        QVERIFY(QFile::remove(m_home.path("ecg500.dat")));
        clickMonitor("btnRepeat");
        QDialog* dialog = nullptr;
        QString weight;
        QTimer look;
        connect(&look, &QTimer::timeout, this, [&] {
            dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (!dialog || qobject_cast<QMessageBox*>(dialog))
                return;
            weight = field(*dialog, "txtWeight")->text();
            dialog->reject();
        });
        look.start(5);
        QVERIFY(QTest::qWaitFor([&] { return !weight.isEmpty(); }));
        QVERIFY(QTest::qWaitFor([&] { return !QApplication::activeModalWidget(); }));
        QCOMPARE(weight, QStringLiteral("61"));
        QCOMPARE(reader.texts(), error("Cannot open file"));
        expectNothing(user);
        QCOMPARE(user.fields(), EcgUser::filledIn());
    }

    void aLongFormThatDoesNotStartComesUpAgain()
    {
        BoxReader reader;
        EcgUser user;
        user.fillIn();
        QString number;
        QString weight;
        whenDialogOpens(this, [&](QDialog& first) {
            field(first, "txtMedicalHistoryNumber")->setText(QStringLiteral("12/345"));
            typeWeight(first);
            // The box of the failure comes between the two.
            QTimer::singleShot(0, this, [&] { correct(number, weight); });
            first.accept();
        });
        user.click("btnMoreEcg");
        QCOMPARE(reader.texts(), error("Cannot create file"));
        QCOMPARE(number, QStringLiteral("12/345"));
        QCOMPARE(weight, QStringLiteral("61"));
        QVERIFY(openMonitor());
        QCOMPARE(user.fields(), EcgUser::empty());
        openMonitor()->close();
        QVERIFY(user.waitForReturn());
        const std::vector<StudyInfo> studies = studyDatabase()->listStudies();
        QCOMPARE(studies.size(), size_t(1));
        Study* study = studyDatabase()->openStudy(studies[0].id);
        QCOMPARE(study->value("patient/medicalHistoryNumber"), QByteArray("12345"));
    }

    void aFullDiskIsToldAndTheStudyIsClosed()
    {
        BoxReader reader;
        EcgUser user;
        user.store->isFull = true;
        user.start();
        user.record(200);
        const qint32 id = studyDatabase()->listStudies().at(0).id;
        openMonitor()->close();
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled() && !reader.boxes().empty(); }));
        // The monitor may have told of it before; what could not be filed is told once.
        QCOMPARE(reader.texts().last(), error("No space left on device").first());
        QCOMPARE(reader.texts().filter(QStringLiteral("Error:")).size(), 1);
        QVERIFY(!studyDatabase()->isStudyOpen(id));
        QCOMPARE(RecentStudies::shown().at(0).id, QString::number(id));
        // What was recorded is there all the same.
        Study* study = studyDatabase()->openStudy(id);
        QVERIFY(study && study->ecg()->sampleCount() > 0);
    }

    void whatTheMonitorHadNoTimeToTellIsTold()
    {
        BoxReader reader;
        EcgUser user;
        user.start();
        user.record(200);
        {
            const FullDisk full(0);
            openMonitor()->close();
        }
        QVERIFY(QTest::qWaitFor([&] { return user.window.isEnabled() && !reader.boxes().empty(); }));
        QVERIFY(user.waitForReturn());
        QCOMPARE(reader.texts(), error("The recording cannot be written. Is the disk full?"));
        QVERIFY(studyDatabase()->openStudy(studyDatabase()->listStudies().at(0).id));
    }

    void aFullDiskDoesNotStopARepetition()
    {
        BoxReader reader;
        EcgUser user;
        user.start();
        user.record(100);
        clickMonitor("btnStop");
        user.store->isFull = true;
        QPointer<EcgMonitorWindow> before = openMonitor();
        clickMonitor("btnRepeat");
        QVERIFY(QTest::qWaitFor([&] { return !before && openMonitor(); }));
        QVERIFY(user.store->refused > 0);
        QCOMPARE(reader.texts(), QStringList());
        QCOMPARE(studyDatabase()->listStudies().size(), size_t(1));
        user.store->isFull = false;
        openMonitor()->close();
        QVERIFY(user.waitForReturn());
        QCOMPARE(RecentStudies::shown().size(), size_t(1));
    }

    void aStudyThatCannotBeRemovedStopsARepetition()
    {
        BoxReader reader;
        EcgUser user;
        user.start();
        user.record(100);
        clickMonitor("btnStop");
        user.store->cannotDelete = true;
        clickMonitor("btnRepeat");
        QVERIFY(
            QTest::qWaitFor([&] { return user.fields() != EcgUser::empty() && !reader.boxes().empty(); }));
        QVERIFY(user.waitForReturn());
        QCOMPARE(reader.texts(), error("Read-only file system"));
        QCOMPARE(user.fields(), EcgUser::filledIn());
        QVERIFY(RecentStudies::shown().empty());
        QVERIFY(!studyDatabase()->isStudyOpen(studyDatabase()->listStudies().at(0).id));
    }

private:
    /// The user of the form that came up again.
    static void correct(QString& number, QString& weight)
    {
        auto* look = new QTimer(qApp);
        connect(look, &QTimer::timeout, look, [look, &number, &weight] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (!dialog || qobject_cast<QMessageBox*>(dialog) || !dialog->isVisible())
                return;
            look->deleteLater();
            number = field(*dialog, "txtMedicalHistoryNumber")->text();
            weight = field(*dialog, "txtWeight")->text();
            field(*dialog, "txtMedicalHistoryNumber")->setText(QStringLiteral("12345"));
            dialog->accept();
        });
        look->start(5);
    }

    void expectNothing(LauncherUser& user) const
    {
        require(user.window.isEnabled(), "The launcher cannot be used");
        require(studyDatabase()->listStudies().empty(), "A study is left");
        require(m_home.studyFiles().isEmpty(), "Files of a study are left");
        require(RecentStudies::shown().empty(), "A study is in the recent list");
    }

    EcgHome m_home;
};

int main(int argc, char* argv[])
{
    GuardedApplication application(argc, argv);
    EcgFailureTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "EcgFailureTest.moc"
