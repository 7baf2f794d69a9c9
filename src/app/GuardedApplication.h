#pragma once

#include <QApplication>

#include <exception>
#include <functional>

/// An application whose event handlers may throw. Nothing must unwind through the event loops of Qt and of
/// the system, so the first exception is kept, the loops are ended, and `run` throws it once they are left.
class GuardedApplication : public QApplication
{
    Q_OBJECT

public:
    /// Like QApplication: `argc` and `argv` must outlive it.
    GuardedApplication(int& argc, char** argv);

    /// Runs the event loop and returns its exit code; throws what was thrown on the way, also before the
    /// call.
    int run();

    /// For a caller that can handle it: what event handlers throw while `action` runs is thrown to the caller
    /// when it has returned, and the program goes on. Under another application nothing is kept.
    static void call(const std::function<void()>& action);

    bool notify(QObject* receiver, QEvent* event) override;

private:
    void callKeeping(const std::function<void()>& action);
    void throwKept();

    std::exception_ptr m_exception;
    bool m_isCalling = false;
};
