#include "app/Desktop.h"

#include "app/BoxReader.h"
#include "app/LauncherUser.h"
#include "platform/SingleInstance.h"
#include "study/Study.h"
#include "study/TEcgFile.h"

#include <QLabel>
#include <QProcess>

#include <functional>
#include <iostream>
#include <optional>

namespace {

constexpr char recordWord[] = "record";

MainWindow* launcher()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = qobject_cast<MainWindow*>(widget))
            return window;
    }
    return nullptr;
}

/// One run of the program in this process, watched from its event loop on. Whatever is not told to happen
/// ends with the closing of the launcher.
class DesktopRun : private QObject
{
public:
    using TAction = std::function<void(MainWindow&)>;

    explicit DesktopRun(TAction whenReady = {}) : m_whenReady(std::move(whenReady))
    {
        // Events wait for the application.
        QMetaObject::invokeMethod(
            this, [this] { begin(); }, Qt::QueuedConnection);
        QByteArray name("velantor-ecg");
        std::array<char*, 2> arguments{name.data(), nullptr};
        code = runDesktop(1, arguments.data());
        m_timer.stop();
        boxes = m_reader->texts();
        m_reader.reset();
    }

    int code = -1;
    QStringList boxes;
    bool wasShown = false; ///< the launcher
    bool wasShownBeforeStore = false;
    bool wasEnabledBeforeStore = false;
    bool hadWaitCursor = false; ///< while a message box was shown
    bool hadLauncher = false;   ///< the same

private:
    void begin()
    {
        m_reader.emplace();
        connect(&m_timer, &QTimer::timeout, this, [this] { look(); });
        m_timer.start(1);
        look();
    }

    void look()
    {
        MainWindow* window = launcher();
        if (window && window->isVisible())
            lookAt(*window);
        if (qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            hadWaitCursor = hadWaitCursor || QApplication::overrideCursor();
            hadLauncher = hadLauncher || window;
        }
    }

    void lookAt(MainWindow& window)
    {
        wasShown = true;
        wasShownBeforeStore = wasShownBeforeStore || !studyDatabase();
        wasEnabledBeforeStore = wasEnabledBeforeStore || (!studyDatabase() && window.isEnabled());
        if (!window.isEnabled() || std::exchange(m_isReady, true))
            return;
        if (m_whenReady)
            m_whenReady(window);
        else
            window.close();
    }

    TAction m_whenReady;
    QTimer m_timer;
    std::optional<BoxReader> m_reader;
    bool m_isReady = false;
};

/// Throws `thrown` out of an event handler of the window.
template <typename Thrown> void throwLater(MainWindow& window, Thrown thrown)
{
    QMetaObject::invokeMethod(
        &window, [thrown] { throw thrown; }, Qt::QueuedConnection);
}

/// Begins a recording, tells of it, and goes on until the process is killed.
int recordUntilKilled()
{
    DesktopRun([](MainWindow& window) {
        window.findChild<QAbstractButton*>(QStringLiteral("btnNewStudyEcg"))->click();
        auto* section = window.findChild<QWidget*>(QStringLiteral("frameEcg"));
        section->findChild<QLineEdit*>(QStringLiteral("txtLastName"))->setText(QStringLiteral("Diaz"));
        section->findChild<QLineEdit*>(QStringLiteral("txtFirstName"))->setText(QStringLiteral("Ana"));
        window.findChild<QAbstractButton*>(QStringLiteral("btnStartEcg"))->click();
        openMonitor()->findChild<QAbstractButton*>(QStringLiteral("btnStart"))->click();
        QTimer::singleShot(3000, &window, [] { std::cout << "recording" << std::endl; });
    });
    return 0;
}

} // namespace

/// The whole program, several times in one process.
class DesktopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QSettings().clear();
        TestHome::closeStore();
        QFile::remove(m_home.path("data"));
        QDir(m_home.path("data")).removeRecursively();
        QVERIFY(QDir().mkpath(m_home.path("data")));
    }

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

    void itSpeaksEnglishWithoutTranslations()
    {
        QString text;
        QString font;
        const DesktopRun run([&](MainWindow& window) {
            text = window.findChild<QAbstractButton*>(QStringLiteral("btnClose"))->text();
            font = window.findChild<QLabel*>(QStringLiteral("lblVersion"))->font().family();
            QCOMPARE(window.windowTitle(), QStringLiteral("Velantor ECG"));
            QVERIFY(!qApp->styleSheet().isEmpty());
            window.close();
        });
        QCOMPARE(text.remove(QLatin1Char('&')), QStringLiteral("Close"));
        QCOMPARE(font, QStringLiteral("Liberation Sans"));
    }

    void aSecondInstanceTellsSoAndEnds()
    {
        const TSingleInstance first;
        QVERIFY(first.isFirst());
        for (int i = 0; i < 2; ++i) {
            const DesktopRun run;
            QCOMPARE(run.code, 0);
            QCOMPARE(run.boxes, QStringList(QStringLiteral("Information: Velantor ECG is already running")));
            QVERIFY(!run.wasShown);
            QVERIFY(!run.hadLauncher);
            QVERIFY(!studyDatabase());
            // The first one is undisturbed.
            QVERIFY(!TSingleInstance().isFirst());
        }
    }

    void aStoreThatCannotBeMadeEndsTheProgram()
    {
        QDir(m_home.path("data")).removeRecursively();
        QFile file(m_home.path("data"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QString text;
        try {
            QCoreApplication* const none = QCoreApplication::instance();
            QVERIFY(!none);
            int count = 0;
            const QCoreApplication application(count, nullptr);
            const LocalStudyDatabase store(m_home.dataFolder());
        } catch (const std::exception& error) {
            text = QString::fromUtf8(error.what());
        }
        QVERIFY(!text.isEmpty());
        const DesktopRun run;
        QCOMPARE(run.boxes, QStringList(QStringLiteral("Error: ") + text));
        QCOMPARE(run.code, 0);
        QVERIFY(run.wasShown);
        QVERIFY(!run.hadLauncher);
        QVERIFY(!run.hadWaitCursor);
        QVERIFY(!studyDatabase());
        QVERIFY(TSingleInstance().isFirst());
    }

    void whatAnEventHandlerThrowsIsToldAndEndsTheProgram()
    {
        const DesktopRun run([](MainWindow& window) {
            throwLater(window, std::runtime_error("It went wrong: d\xc3\xa9j\xc3\xa0 vu"));
        });
        QCOMPARE(run.boxes, QStringList(QStringLiteral("Error: It went wrong: d\u00e9j\u00e0 vu")));
        QVERIFY(!run.hadLauncher);
        QCOMPARE(run.code, 0);
    }

    void whatIsNoExceptionIsToldAsUnspecified()
    {
        const DesktopRun run([](MainWindow& window) { throwLater(window, 42); });
        QCOMPARE(run.boxes, QStringList(QStringLiteral("Error: Unspecified application error")));
        QCOMPARE(run.code, 0);
    }

    void theFirstOfSeveralExceptionsIsTold()
    {
        const DesktopRun run([](MainWindow& window) {
            throwLater(window, std::runtime_error("first"));
            throwLater(window, std::runtime_error("second"));
        });
        QCOMPARE(run.boxes, QStringList(QStringLiteral("Error: first")));
    }

    void anExceptionLeavesADialogToo()
    {
        bool hasReturned = false;
        const DesktopRun run([&](MainWindow& window) {
            throwLater(window, std::runtime_error("within a dialog"));
            QDialog(&window).exec();
            hasReturned = true;
        });
        QVERIFY(hasReturned);
        QCOMPARE(run.boxes, QStringList(QStringLiteral("Error: within a dialog")));
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
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.setWorkingDirectory(QFileInfo(m_home.path("ecg500.dat")).path());
        process.start(m_program, {QLatin1String(recordWord)});
        QVERIFY(process.waitForReadyRead(60000));
        QCOMPARE(process.readLine().trimmed(), QByteArray("recording"));
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
        // Of three seconds, less the last one.
        QVERIFY2(samples >= 1000, QByteArray::number(samples).constData());
    }

public:
    explicit DesktopTest(const QString& program) : m_program(program) {}

private:
    TestHome m_home;
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
