#pragma once

#include <QApplication>

#include <exception>

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

    bool notify(QObject* receiver, QEvent* event) override;

private:
    void throwKept();

    std::exception_ptr m_exception;
};
