#pragma once

#include "base/Constants.h"
#include "base/Settings.h"
#include "study/LocalStudyDatabase.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <memory>

/// A user of the test's own: settings, temporary files and data folder lie in a folder that goes with it.
class TestHome
{
public:
    TestHome()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path("settings"));
        QCoreApplication::setOrganizationName(QLatin1String(velantor::organizationName));
        QCoreApplication::setApplicationName(QLatin1String(velantor::applicationName));
        QCoreApplication::setApplicationVersion(QLatin1String(velantor::applicationVersion));
        QSettings().clear();
        qputenv("XDG_DATA_HOME", QFile::encodeName(path("data")));
        // The mark of the running instance lies there: other runs on this machine must not meet it.
        QDir().mkpath(path("tmp"));
        qputenv("TMPDIR", QFile::encodeName(path("tmp")));
    }
    ~TestHome() { closeStore(); }

    QString path(const char* name) const { return m_folder.filePath(QLatin1String(name)); }
    QString dataFolder() const { return path("data/VelantorStress"); }

    /// Destroys the store of the process, if there is one.
    static void closeStore()
    {
        const std::unique_ptr<StudyDatabase> store(studyDatabase());
        setStudyDatabase(nullptr);
    }

    /// The demonstration recording becomes the device, in this folder.
    bool useDemo() const
    {
        settings::acqMode.setValue(QStringLiteral("demo"));
        const QString recording = path("ecg500.dat");
        return (QFile::exists(recording) || QFile::link(QStringLiteral(ECG500), recording)) &&
               QDir::setCurrent(m_folder.path());
    }

private:
    QTemporaryDir m_folder;
};
