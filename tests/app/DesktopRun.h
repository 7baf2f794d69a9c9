#pragma once

#include "app/BoxReader.h"
#include "app/Desktop.h"
#include "app/LauncherUser.h"

#include <functional>
#include <optional>

inline MainWindow* launcher()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = qobject_cast<MainWindow*>(widget))
            return window;
    }
    return nullptr;
}

/// Throws `thrown` out of an event handler of the window.
template <typename Thrown> void throwLater(MainWindow& window, Thrown thrown)
{
    QMetaObject::invokeMethod(
        &window, [thrown] { throw thrown; }, Qt::QueuedConnection);
}

/// What the user of a run does. Whatever is not told to happen ends with the closing of the launcher.
struct TDesktopUser
{
    using TAction = std::function<void(MainWindow&)>;

    TAction whenReady = [](MainWindow& window) { window.close(); };
    TAction whenShown; ///< the launcher is there, and what it starts with is still to come
    QList<QByteArray> arguments;
};

/// One run of the program in this process, watched from its event loop on.
class DesktopRun : private QObject
{
public:
    DesktopRun() : DesktopRun(TDesktopUser()) {}
    explicit DesktopRun(TDesktopUser::TAction whenReady)
        : DesktopRun(TDesktopUser{std::move(whenReady), {}, {}})
    {
    }
    explicit DesktopRun(TDesktopUser user) : m_user(std::move(user))
    {
        // Events wait for the application.
        QMetaObject::invokeMethod(
            this, [this] { begin(); }, Qt::QueuedConnection);
        QList<QByteArray> words{"velantor-ecg"};
        words += m_user.arguments;
        std::vector<char*> pointers;
        for (QByteArray& word : words)
            pointers.push_back(word.data());
        pointers.push_back(nullptr);
        code = runDesktop(words.size(), pointers.data());
        m_timer.stop();
        if (m_reader)
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
        if (!std::exchange(wasShown, true) && m_user.whenShown)
            m_user.whenShown(window);
        wasShownBeforeStore = wasShownBeforeStore || !studyDatabase();
        wasEnabledBeforeStore = wasEnabledBeforeStore || (!studyDatabase() && window.isEnabled());
        if (window.isEnabled() && !std::exchange(m_isReady, true))
            m_user.whenReady(window);
    }

    TDesktopUser m_user;
    QTimer m_timer;
    std::optional<BoxReader> m_reader;
    bool m_isReady = false;
};

/// Each run finds a user who is new to the program.
class DesktopHome : public TestHome
{
public:
    void prepare()
    {
        QSettings().clear();
        closeStore();
        QFile::remove(path("data"));
        QDir(path("data")).removeRecursively();
        require(QDir().mkpath(path("data")), "There is no data folder");
    }
};
