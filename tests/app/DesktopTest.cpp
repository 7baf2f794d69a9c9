#include "app/DesktopRun.h"
#include "platform/SingleInstance.h"
#include "study/Study.h"
#include "study/StudyFiles.h"
#include "study/TEcgFile.h"

#include <QLabel>
#include <QProcess>

namespace {

constexpr char recordWord[] = "record";

/// Begins a recording and goes on until the process is killed.
int recordUntilKilled()
{
    const DesktopRun run([](MainWindow& window) {
        window.findChild<QAbstractButton*>(QStringLiteral("btnNewStudyEcg"))->click();
        auto* section = window.findChild<QWidget*>(QStringLiteral("frameEcg"));
        section->findChild<QLineEdit*>(QStringLiteral("txtLastName"))->setText(QStringLiteral("Diaz"));
        section->findChild<QLineEdit*>(QStringLiteral("txtFirstName"))->setText(QStringLiteral("Ana"));
        window.findChild<QAbstractButton*>(QStringLiteral("btnStartEcg"))->click();
        openMonitor()->findChild<QAbstractButton*>(QStringLiteral("btnStart"))->click();
    });
    return run.code;
}

} // namespace

/// The whole program, several times in one process.
class DesktopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home.prepare(); }
    void cleanup() { TestHome::closeStore(); }

    void itRunsUntilTheLauncherIsClosed()
    {
        for (int i = 0; i < 3; ++i) {
            const DesktopRun run;
            QCOMPARE(run.code, 0);
            QCOMPARE(run.boxes, QStringList());
            QVERIFY(run.wasShown);
            QVERIFY(studyDatabase());
            QCOMPARE(studyDatabase()->folder(), m_home.dataFolder());
            QVERIFY(QFile::exists(m_home.dataFolder() + QStringLiteral("/data/studies.sqlite")));
            QVERIFY(TSingleInstance().isFirst());
            TestHome::closeStore();
        }
    }

    void theLauncherIsOnTheScreenBeforeTheStore()
    {
        const DesktopRun run;
        QVERIFY(run.wasShownBeforeStore);
        QVERIFY(!run.wasEnabledBeforeStore);
    }

    void aLauncherThatIsClosedAtOnceEndsTheProgram()
    {
        TDesktopUser user;
        user.whenShown = [](MainWindow& window) { window.close(); };
        const DesktopRun run(user);
        QCOMPARE(run.code, 0);
        QCOMPARE(run.boxes, QStringList());
        QVERIFY(run.wasShown);
        QVERIFY(TSingleInstance().isFirst());
    }

    void argumentsAreNotInterpreted()
    {
        TDesktopUser user;
        user.arguments = {"--help", "-v", "study.vtstudy", "record", "/?"};
        QStringList arguments;
        user.whenReady = [&](MainWindow& window) {
            arguments = QCoreApplication::arguments();
            window.close();
        };
        const DesktopRun run(user);
        QCOMPARE(run.code, 0);
        QCOMPARE(run.boxes, QStringList());
        QVERIFY(run.wasShown);
        QCOMPARE(arguments.size(), 6);
    }

    void itScalesWithTheScreen()
    {
        QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, false);
        QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, false);
        const DesktopRun run;
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling));
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps));
    }

    void itWearsItsStyleAndSpeaksEnglishWithoutTranslations()
    {
        QString text;
        QString font;
        QString title;
        QString style;
        const DesktopRun run([&](MainWindow& window) {
            text = window.findChild<QAbstractButton*>(QStringLiteral("btnClose"))->text();
            font = window.findChild<QLabel*>(QStringLiteral("lblVersion"))->font().family();
            title = window.windowTitle();
            style = qApp->styleSheet();
            window.close();
        });
        QCOMPARE(text.remove(QLatin1Char('&')), QStringLiteral("Close"));
        QCOMPARE(font, QStringLiteral("Liberation Sans"));
        QCOMPARE(title, QStringLiteral("Velantor ECG"));
        QFile file(QStringLiteral(":/styles/dark.css"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(style, QString::fromUtf8(file.readAll()));
    }

    void aSecondInstanceTellsSoAndEnds()
    {
        const TSingleInstance first;
        QVERIFY(first.isFirst());
        for (int i = 0; i < 2; ++i) {
            const DesktopRun run;
            QCOMPARE(run.code, 0);
            QCOMPARE(run.boxes, QStringList(QStringLiteral(
                                    "information, Information: Velantor ECG is already running")));
            QVERIFY(!run.wasShown);
            QVERIFY(!run.hadLauncher);
            QVERIFY(!studyDatabase());
            // The first one is undisturbed.
            QVERIFY(!TSingleInstance().isFirst());
        }
    }

    void aKilledRecordingIsThereAtTheNextStart()
    {
        {
            const DesktopRun run; // makes the store
        }
        TestHome::closeStore();
        QVERIFY(m_home.useDemo());
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("VELANTOR_SETTINGS"), m_home.path("settings"));
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.setWorkingDirectory(QFileInfo(m_home.path("ecg500.dat")).path());
        process.start(m_program, {QLatin1String(recordWord)});
        QVERIFY(process.waitForStarted());
        constexpr int patienceMs = 60000;
        QTRY_VERIFY_WITH_TIMEOUT(samplesOnDisk() >= 1000, patienceMs);
        QCOMPARE(process.state(), QProcess::Running);
        process.kill();
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);

        std::vector<StudyInfo> studies;
        int samples = 0;
        const DesktopRun run([&](MainWindow& window) {
            studies = studyDatabase()->listStudies();
            Study* study = studies.empty() ? nullptr : studyDatabase()->openStudy(studies[0].id);
            samples = study ? study->ecg()->sampleCount() : 0;
            window.close();
        });
        QCOMPARE(run.boxes, QStringList());
        QCOMPARE(studies.size(), size_t(1));
        QCOMPARE(studies[0].lastName, QByteArray("Diaz"));
        QVERIFY2(samples >= 1000, QByteArray::number(samples).constData());
    }

public:
    explicit DesktopTest(const QString& program) : m_program(program) {}

private:
    /// Of the one study.
    qint64 samplesOnDisk() const
    {
        constexpr int bytesPerSample = 14 * 2;
        const QDir folder(m_home.dataFolder(), QStringLiteral("*.vtecg"));
        const QFileInfoList files = folder.entryInfoList();
        return files.isEmpty() ? 0 : (files.first().size() - ecgHeaderSize) / bytesPerSample;
    }

    DesktopHome m_home;
    const QString m_program;
};

int main(int argc, char* argv[])
{
    if (argc == 2 && qstrcmp(argv[1], recordWord) == 0) {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           qEnvironmentVariable("VELANTOR_SETTINGS"));
        return recordUntilKilled();
    }
    DesktopTest test(QFileInfo(QString::fromLocal8Bit(argv[0])).absoluteFilePath());
    return QTest::qExec(&test, argc, argv);
}
#include "DesktopTest.moc"
