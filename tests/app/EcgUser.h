#pragma once

#include "app/LauncherUser.h"
#include "base/Error.h"
#include "study/Study.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QDialog>

#include <functional>

/// A store that a test can look into and make fail.
class TestStore : public LocalStudyDatabase
{
public:
    using LocalStudyDatabase::LocalStudyDatabase;

    bool isFull = false;       ///< studies cannot be saved
    bool cannotDelete = false; ///< nor removed
    bool losesStudies = false; ///< what is saved goes out of the index
    int refused = 0;           ///< studies, for they could not be saved
    Study* latest = nullptr;   ///< the study that was created last; gone when it is closed

    Study* createStudy(StudyInfo& info) override { return latest = LocalStudyDatabase::createStudy(info); }
    void saveStudy(Study* study) override
    {
        if (isFull) {
            ++refused;
            throw TError("No space left on device");
        }
        LocalStudyDatabase::saveStudy(study);
    }
    void closeStudy(Study* study) override
    {
        const qint32 id = study->id();
        LocalStudyDatabase::closeStudy(study);
        if (losesStudies)
            LocalStudyDatabase::deleteStudy(id);
    }
    void deleteStudy(qint32 id) override
    {
        if (cannotDelete)
            throw TError("Read-only file system");
        LocalStudyDatabase::deleteStudy(id);
    }
};

inline QAbstractButton* monitorButton(const char* name)
{
    EcgMonitorWindow* monitor = openMonitor();
    require(monitor, "There is no monitor");
    return monitor->findChild<QAbstractButton*>(QLatin1String(name));
}

inline void clickMonitor(const char* name)
{
    QTest::mouseClick(monitorButton(name), Qt::LeftButton);
}

/// What the next dialog that is run gets from its user.
inline void whenDialogOpens(QObject* context, const std::function<void(QDialog&)>& action)
{
    QTimer::singleShot(0, context, [action] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        require(dialog, "There is no dialog");
        action(*dialog);
    });
}

/// Someone at a launcher who takes resting ECGs of the demonstration device. The store is the test's own.
class EcgUser : public LauncherUser
{
public:
    EcgUser() : store(dynamic_cast<TestStore*>(studyDatabase())) { require(store, "Not the test's store"); }

    void fillIn()
    {
        if (find("frameEcg")->isHidden())
            openEcg();
        type("txtLastName", "Diaz");
        type("txtFirstName", "Ana");
        type("txtAge", "50");
        type("txtPatientId", "H-7");
        type("txtPersonId", "30111");
        click("btnFemale", "frameEcg");
    }
    /// All of the quick fields, as they stand.
    QStringList fields()
    {
        QStringList all;
        for (const char* field : {"txtLastName", "txtFirstName", "txtAge", "txtPatientId", "txtPersonId"})
            all << text(field);
        for (const char* sex : {"btnMale", "btnFemale"})
            all << QString::number(find<QAbstractButton>(sex, "frameEcg")->isChecked());
        return all;
    }
    static QStringList filledIn()
    {
        return QStringLiteral("Diaz Ana 50 H-7 30111 0 1").split(QLatin1Char(' '));
    }
    static QStringList empty() { return QStringLiteral("|||||0|0").split(QLatin1Char('|')); }

    void start()
    {
        fillIn();
        click("btnStartEcg");
        require(openMonitor(), "There is no monitor");
        require(QTest::qWaitFor([] { return openMonitor()->isFullScreen(); }), "Not on the full screen");
    }
    void record(int samples)
    {
        clickMonitor("btnStart");
        constexpr int patienceMs = 60000;
        const auto holds = [&] { return store->latest->ecg()->sampleCount() >= samples; };
        require(QTest::qWaitFor(holds, patienceMs), "The samples did not come");
        require(monitorButton("btnStop")->isEnabled(), "The recording cannot be stopped");
    }
    bool waitForReturn()
    {
        return QTest::qWaitFor([this] { return window.isEnabled(); });
    }

    TestStore* store;
};

/// The surroundings of each test of an ECG.
class EcgHome : public TestHome
{
public:
    void prepare()
    {
        QSettings().clear();
        closeStore();
        QDir(dataFolder()).removeRecursively();
        require(useDemo(), "There is no demonstration recording");
        setStudyDatabase(new TestStore(dataFolder()));
    }
    QStringList studyFiles() const
    {
        return QDir(dataFolder()).entryList({QStringLiteral("*.vt*")}, QDir::Files);
    }
};
