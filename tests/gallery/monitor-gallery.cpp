#include "res/DarkStyle.h"
#include "res/Resources.h"
#include "windows/MonitorSession.h"

#include <QDir>

#include <cstdio>

// monitor-gallery DIR: pictures of the ECG monitor in each of its states, under the dark sheet. Also without
// a screen (QT_QPA_PLATFORM=offscreen).

namespace {

bool photograph(const MonitorSession& session, const QDir& folder, const char* state)
{
    QApplication::processEvents();
    const QString name =
        QStringLiteral("ecg-%1-%2.png").arg(QLatin1String(state)).arg(session.window->width());
    if (session.window->grab().save(folder.filePath(name)))
        return true;
    std::fprintf(stderr, "Cannot write %s\n", qPrintable(name));
    return false;
}

void alarm(MonitorSession& session)
{
    session.device.battery = 2.0;
    session.device.saturatedChannel = 8;
    session.device.offElectrodes = QStringList{QStringLiteral("V3"), QStringLiteral("LA")};
    session.device.ok = false;
    session.tick();
    session.device.ok = true;
}

bool photographStates(const QSize& size, const char* scheme, const QDir& folder)
{
    settings::ecgMonitorDisplay.displayColorScheme.setValue(QLatin1String(scheme));
    MonitorSession session;
    session.window->resize(size);
    bool ok = photograph(session, folder, "waiting");
    session.device.send(20.0);
    ok &= QTest::qWaitFor([&] { return session.display1().signal()->sampleCount() > 8000; });
    ok &= photograph(session, folder, "monitoring");
    session.click("btnStart");
    ok &= session.record(40.0);
    session.tick();
    ok &= photograph(session, folder, "recording");
    alarm(session);
    ok &= photograph(session, folder, "alarms");
    session.click("btnStop");
    return photograph(session, folder, "review") && ok;
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    if (argc != 2 || !QDir().mkpath(QFile::decodeName(argv[1]))) {
        std::fputs("Usage: monitor-gallery DIR\n", stderr);
        return 2;
    }
    const SettingsFolder settingsFolder;
    initResources();
    QApplication::setStyle(new DarkStyle);
    QFile sheet(QStringLiteral(":/styles/dark.css"));
    if (sheet.open(QIODevice::ReadOnly))
        application.setStyleSheet(QString::fromUtf8(sheet.readAll()));
    settings::acqMode.setValue(QStringLiteral("demo"));
    const QDir folder(QFile::decodeName(argv[1]));
    const bool small = photographStates(QSize(1280, 800), "Black", folder);
    return photographStates(QSize(1920, 1080), "", folder) && small ? 0 : 1;
}
