#pragma once

#include <QApplication>
#include <QImage>
#include <QString>
#include <QWidget>

#include <functional>
#include <stdexcept>
#include <type_traits>

/// What the tour expected and did not come.
class TTourError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The hands and eyes of somebody who uses the program: finds controls by their object names, presses them,
/// types, waits and takes pictures of the whole screen. It lives on a thread of its own, because a dialog
/// keeps the main thread until somebody closes it; all that touches a widget runs there. Every wait ends with
/// a TTourError that says what did not come.
class TourDriver
{
public:
    /// Pictures go to `folder` as PNG files with a running number.
    explicit TourDriver(const QString& folder);

    /// Runs `work` on the main thread and returns what it returns.
    template <typename Work> static auto onScreen(Work work)
    {
        using TResult = std::invoke_result_t<Work>;
        if constexpr (std::is_void_v<TResult>) {
            QMetaObject::invokeMethod(qApp, work, Qt::BlockingQueuedConnection);
        } else {
            TResult result{};
            QMetaObject::invokeMethod(
                qApp, [&] { result = work(); }, Qt::BlockingQueuedConnection);
            return result;
        }
    }

    /// `condition` is asked on the main thread.
    void waitFor(const QString& what, const std::function<bool()>& condition, int timeoutMs = 20000);
    /// Waits until a window of that class is to be seen.
    void waitForWindow(const char* className);
    void waitUntilGone(const char* className);
    void pause(int ms);

    /// Presses and releases the left button on a control as soon as it is enabled.
    void click(const char* name);
    /// Opens the context menu of a widget.
    void openMenu(const char* name);
    /// Types into a line edit in place of what it holds.
    void type(const char* name, const QString& text);
    void chooseRow(const char* name, int row);
    /// A key for whatever has the focus.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Tab until the control has the focus, as with the keyboard alone.
    void tabTo(const char* name);
    void typeAtFocus(const QString& text);
    /// Waits for a message box and closes it by its default button; returns its text.
    QString closeBox();

    /// The whole screen after a moment for animations.
    void picture(const QString& name);
    /// What the pictures so far show in part only: texts that are cut, windows that do not fit on the screen.
    QStringList cutTexts() const { return m_cutTexts; }

    /// A control among the windows that may be used now, or null.
    static QWidget* find(const char* name);

private:
    QString m_folder;
    int m_pictures = 0;
    QStringList m_cutTexts;
};
