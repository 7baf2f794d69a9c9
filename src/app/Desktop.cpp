#include "app/Desktop.h"

#include "app/GuardedApplication.h"
#include "app/MainWindow.h"
#include "app/MessageBox.h"
#include "base/Constants.h"
#include "dialogs/FailureText.h"
#include "platform/SingleInstance.h"
#include "res/DarkStyle.h"
#include "res/Resources.h"

#include <QFile>
#include <QIcon>
#include <QTranslator>

namespace {

void setNames()
{
    QCoreApplication::setOrganizationName(QLatin1String(velantor::organizationName));
    QCoreApplication::setApplicationName(QLatin1String(velantor::applicationName));
    QCoreApplication::setApplicationVersion(QLatin1String(velantor::applicationVersion));
}

/// The translations that are shipped beside the executable; without them the program speaks English.
class TTranslations
{
public:
    TTranslations()
    {
        install(m_qt, QStringLiteral("qt_es"));
        install(m_application, QStringLiteral("VelantorStressECG_es"));
        install(m_report, QStringLiteral("report_es"));
    }

private:
    static void install(QTranslator& translator, const QString& name)
    {
        if (translator.load(name, QCoreApplication::applicationDirPath()))
            QCoreApplication::installTranslator(&translator);
    }

    QTranslator m_qt;
    QTranslator m_application;
    QTranslator m_report;
};

void setStyle(GuardedApplication& application)
{
    initResources();
    QApplication::setStyle(new DarkStyle);
    QFile style(QStringLiteral(":/styles/dark.css"));
    if (style.open(QIODevice::ReadOnly))
        application.setStyleSheet(QString::fromUtf8(style.readAll()));
    application.setWindowIcon(QIcon(QStringLiteral(":/res/logo")));
}

int runLauncher(GuardedApplication& application)
{
    MainWindow window;
    // Windows of finished studies don't keep the program alive.
    QObject::connect(&window, &MainWindow::closed, &application, &QCoreApplication::quit);
    window.show();
    return application.run();
}

void showError(const QString& text)
{
    showBox(nullptr, QMessageBox::Critical, QCoreApplication::translate("Desktop", "Error"), text);
}

} // namespace

int runDesktop(int argc, char** argv)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, true);
    GuardedApplication application(argc, argv);
    setNames();
    const TTranslations translations;
    const TSingleInstance instance;
    if (!instance.isFirst()) {
        showBox(nullptr, QMessageBox::Information, QCoreApplication::translate("Desktop", "Information"),
                QCoreApplication::translate("Desktop", "%1 is already running").arg(instance.key()));
        return 0;
    }
    setStyle(application);
    try {
        return runLauncher(application);
    } catch (const std::exception& error) {
        showError(failureText(error.what()));
    } catch (...) {
        showError(QCoreApplication::translate("Desktop", "Unspecified application error"));
    }
    return 0;
}
