#pragma once

#include "app/MainWindow.h"
#include "app/QuickFields.h"
#include "app/TestHome.h"
#include "support/ProgramStyle.h"
#include "windows/EcgMonitorWindow.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QtTest>

/// For helpers, out of which a failed check would only return.
inline void require(bool condition, const char* what)
{
    if (!condition)
        qFatal("%s", what);
}

/// The monitor that is open, or null.
inline EcgMonitorWindow* openMonitor()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* monitor = qobject_cast<EcgMonitorWindow*>(widget);
        if (monitor && monitor->isVisible())
            return monitor;
    }
    return nullptr;
}

/// A launcher on the screen and the hands of its user.
class LauncherUser
{
public:
    LauncherUser()
    {
        window.show();
        require(QTest::qWaitFor([this] { return window.isEnabled(); }), "The launcher did not start");
    }

    template <typename T = QWidget> T* find(const char* name, const char* section = nullptr)
    {
        QWidget* parent = section ? window.findChild<QWidget*>(QLatin1String(section)) : &window;
        T* found = parent ? parent->findChild<T*>(QLatin1String(name)) : nullptr;
        if (!found)
            qFatal("There is no %s", name);
        return found;
    }
    void click(const char* name, const char* section = nullptr)
    {
        QTest::mouseClick(find<QAbstractButton>(name, section), Qt::LeftButton);
    }
    void type(const char* name, const char* text, const char* section = "frameEcg")
    {
        auto* field = find<QLineEdit>(name, section);
        field->clear();
        QTest::keyClicks(field, QString::fromUtf8(text));
    }
    QString text(const char* name, const char* section = "frameEcg")
    {
        return find<QLineEdit>(name, section)->text();
    }
    /// Opens a section and waits until it stands.
    void open(const char* button, const char* section)
    {
        click(button);
        const auto stands = [&] {
            return find(section)->maximumHeight() == QWIDGETSIZE_MAX && find(section)->isVisible();
        };
        require(QTest::qWaitFor(stands), "The section did not open");
        QCoreApplication::processEvents();
    }
    void openEcg() { open("btnNewStudyEcg", "frameEcg"); }

    MainWindow window;
};
