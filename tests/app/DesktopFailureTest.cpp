#include "app/DesktopRun.h"
#include "platform/SingleInstance.h"

namespace {

QStringList error(const QString& text)
{
    return {QStringLiteral("critical, Error: ") + text};
}

/// Throws when a launcher is shown, which is before the program's event loop.
class FailingLauncher : public QObject
{
public:
    static inline bool isOn = false;

    static void install()
    {
        if (isOn)
            qApp->installEventFilter(new FailingLauncher(qApp));
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<MainWindow*>(watched))
            throw std::runtime_error("No launcher");
        return false;
    }

private:
    explicit FailingLauncher(QObject* parent) : QObject(parent) {}
};

void installFailingLauncher()
{
    FailingLauncher::install();
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(installFailingLauncher)

/// What is thrown in the whole program, several times in one process.
class DesktopFailureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home.prepare(); }
    void cleanup() { TestHome::closeStore(); }

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
        } catch (const std::exception& failure) {
            text = QString::fromUtf8(failure.what());
        }
        QVERIFY(!text.isEmpty());
        const DesktopRun run;
        QCOMPARE(run.boxes, error(text));
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
        QCOMPARE(run.boxes, error(QStringLiteral("It went wrong: d\u00e9j\u00e0 vu")));
        QVERIFY(!run.hadLauncher);
        QCOMPARE(run.code, 0);
    }

    void whatIsThrownBeforeTheEventLoopIsToldAsWell()
    {
        FailingLauncher::isOn = true;
        const DesktopRun run;
        FailingLauncher::isOn = false;
        QCOMPARE(run.boxes, error(QStringLiteral("No launcher")));
        QVERIFY(!run.hadLauncher);
        QCOMPARE(run.code, 0);
        // And the next run is as if nothing had been.
        const DesktopRun next;
        QCOMPARE(next.boxes, QStringList());
        QVERIFY(studyDatabase());
    }

    void whatLooksLikeTagsIsToldAsItIs()
    {
        const DesktopRun run([](MainWindow& window) {
            throwLater(window, std::runtime_error("Cannot read <b>this</b> &amp; that"));
        });
        QCOMPARE(run.boxes, error(QStringLiteral("Cannot read <b>this</b> &amp; that")));
    }

    void whatIsNoExceptionIsToldAsUnspecified()
    {
        const DesktopRun run([](MainWindow& window) { throwLater(window, 42); });
        QCOMPARE(run.boxes, error(QStringLiteral("Unspecified application error")));
        QCOMPARE(run.code, 0);
    }

    void theFirstOfSeveralExceptionsIsTold()
    {
        const DesktopRun run([](MainWindow& window) {
            throwLater(window, std::runtime_error("first"));
            throwLater(window, std::runtime_error("second"));
        });
        QCOMPARE(run.boxes, error(QStringLiteral("first")));
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
        QCOMPARE(run.boxes, error(QStringLiteral("within a dialog")));
    }

private:
    DesktopHome m_home;
};

QTEST_APPLESS_MAIN(DesktopFailureTest)
#include "DesktopFailureTest.moc"
