#include "windows/MonitorSession.h"

#include "study/FullDisk.h"

#include <QMessageBox>

namespace {

const QString diskText = QStringLiteral("The recording cannot be written. Is the disk full?");
const QString deviceText = QStringLiteral("Device read error");

QMessageBox* openBox()
{
    return qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
}

/// As a user does it: what a box blocks is not pressed.
void press(const MonitorSession& session, const char* name)
{
    const QWidget* button = session.part(name);
    const QPoint place = button->mapTo(session.window.get(), button->rect().center());
    QTest::mouseClick(session.window->windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
}

/// A disk that takes no more of the recording than it has now.
class TFullRecordingDisk : public FullDisk
{
public:
    explicit TFullRecordingDisk(const MonitorSession& session)
        : FullDisk(rlim_t(QFileInfo(session.folder.ecgFile(session.info.baseFilename)).size()))
    {
    }
};

bool allIsRead(const MonitorSession& session)
{
    // What the pump keeps back for the next block.
    const int few = 51 * session.device.channelCount() * int(sizeof(qint16));
    const bool isRead = QTest::qWaitFor([&] { return session.device.bytesAvailable() <= few; }, 30000);
    QTest::qWait(20);
    return isRead;
}

} // namespace

/// What the monitor says of failures, and that it goes on.
class EcgMonitorFailureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QSettings().clear(); }

    void aFailureIsTold();
    void failuresAreShownOneByOneOnceEach();
    void aFullDiskStopsNothing();
    void whatFailsAtTheCloseIsLeftForWhoeverOpenedTheWindow();
    void whatWasShownIsNotLeft();
    void aFailureDoesNotOutliveTheWindow();
    void aRecordingIsStoppedOnceItsFailureIsRead();

private:
    SettingsFolder m_settings;
};

void EcgMonitorFailureTest::aFailureIsTold()
{
    MonitorSession session;
    session.device.readFails = true;
    session.device.send(1.0);
    QTRY_VERIFY(openBox());
    QCOMPARE(openBox()->windowTitle(), QStringLiteral("Warning"));
    QCOMPARE(openBox()->text(), deviceText);
    QCOMPARE(openBox()->icon(), QMessageBox::Warning);
    QVERIFY(openBox()->isModal());
    openBox()->button(QMessageBox::Ok)->click();
    QTRY_VERIFY(!QApplication::activeModalWidget());
    QCOMPARE(session.enabled(), QStringLiteral("Sta - - -"));
}

void EcgMonitorFailureTest::failuresAreShownOneByOneOnceEach()
{
    MonitorSession session;
    session.click("btnStart");
    QVERIFY(session.record(2.0));
    // The disk is full, has room again and is full once more, while its first box is open.
    for (int time = 0; time < 2; ++time) {
        const int frames = session.recordedFrames();
        {
            const TFullRecordingDisk full(session);
            session.device.send(1.0);
            QVERIFY(allIsRead(session));
            QCOMPARE(session.recordedFrames(), frames);
        }
        QVERIFY(session.record(1.0));
    }
    session.device.readFails = true;
    session.device.send(1.0);
    QVERIFY(allIsRead(session));
    QCOMPARE(session.window->findChildren<QMessageBox*>().size(), 1);
    QCOMPARE(openBox()->text(), diskText);
    openBox()->button(QMessageBox::Ok)->click();
    QTRY_VERIFY(openBox() && openBox()->text() == deviceText);
    openBox()->button(QMessageBox::Ok)->click();
    QTest::qWait(20);
    QVERIFY(!QApplication::activeModalWidget());
}

void EcgMonitorFailureTest::aFullDiskStopsNothing()
{
    MonitorSession session;
    session.click("btnStart");
    QVERIFY(session.record(2.0));
    const int frames = session.recordedFrames();
    {
        const TFullRecordingDisk full(session);
        const int shown = session.display1().signal()->sampleCount();
        for (int time = 0; time < 3; ++time) {
            session.device.send(1.0);
            QVERIFY(allIsRead(session));
        }
        QCOMPARE(openBox()->text(), diskText);
        openBox()->button(QMessageBox::Ok)->click();
        session.device.send(1.0);
        QVERIFY(allIsRead(session));
        QVERIFY2(!openBox(), "told once");
        QVERIFY(session.display1().signal()->sampleCount() > shown + 1800);
        QCOMPARE(session.enabled(), QStringLiteral("- Sto - -"));
        QCOMPARE(session.recordedFrames(), frames);
    }
    session.device.send(1.0);
    QTRY_VERIFY(session.recordedFrames() > frames + 2400);
    press(session, "btnStop");
    QCOMPARE(session.enabled(), QStringLiteral("- - Rep Sav"));
    QVERIFY(!openBox());
}

void EcgMonitorFailureTest::whatFailsAtTheCloseIsLeftForWhoeverOpenedTheWindow()
{
    for (const bool fails : {true, false}) {
        MonitorSession session;
        session.click("btnStart");
        QVERIFY(session.record(2.0));
        QString untold = QStringLiteral("not asked");
        connect(session.window.get(), &QObject::destroyed, this,
                [&untold](const QObject* left) { untold = EcgMonitorWindow::untoldFailure(left); });
        {
            // Not even the document of the study finds room.
            const auto full = fails ? std::make_unique<FullDisk>(0) : nullptr;
            QVERIFY(session.window->close());
        }
        QCoreApplication::processEvents();
        QVERIFY(!openBox());
        session.window.reset();
        QCOMPARE(untold, fails ? diskText : QString());
    }
}

void EcgMonitorFailureTest::whatWasShownIsNotLeft()
{
    MonitorSession session;
    QString untold = QStringLiteral("not asked");
    connect(session.window.get(), &QObject::destroyed, this,
            [&untold](const QObject* left) { untold = EcgMonitorWindow::untoldFailure(left); });
    session.device.readFails = true;
    session.device.send(1.0);
    QTRY_VERIFY(openBox());
    session.window->close();
    session.window.reset();
    QCOMPARE(untold, QString());
}

void EcgMonitorFailureTest::aFailureDoesNotOutliveTheWindow()
{
    for (const bool isOpen : {true, false}) {
        MonitorSession session;
        session.device.readFails = true;
        session.device.send(1.0);
        if (isOpen)
            QTRY_VERIFY(QApplication::activeModalWidget());
        else
            QTRY_VERIFY(session.device.bytesAvailable() == 0);
        session.window->close();
        session.window.reset();
        QTest::qWait(20);
        QVERIFY(!QApplication::activeModalWidget());
    }
}

void EcgMonitorFailureTest::aRecordingIsStoppedOnceItsFailureIsRead()
{
    MonitorSession session;
    QVERIFY(QTest::qWaitForWindowExposed(session.window.get()));
    session.click("btnStart");
    QVERIFY(session.record(2.0));
    session.device.readFails = true;
    session.device.send(1.0);
    QTRY_VERIFY(openBox());
    press(session, "btnStop");
    QCOMPARE(session.enabled(), QStringLiteral("- Sto - -"));
    openBox()->button(QMessageBox::Ok)->click();
    QTRY_VERIFY(!openBox());
    press(session, "btnStop");
    QCOMPARE(session.enabled(), QStringLiteral("- - Rep Sav"));
    QVERIFY(session.recordedFrames() > 900);
}

QTEST_MAIN(EcgMonitorFailureTest)
#include "EcgMonitorFailureTest.moc"
