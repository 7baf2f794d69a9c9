#include "app/GuardedApplication.h"

#include <utility>

GuardedApplication::GuardedApplication(int& argc, char** argv) : QApplication(argc, argv) {}

int GuardedApplication::run()
{
    // Also after a failure before it: until a loop has been run, every later box would return at once.
    if (m_exception)
        QMetaObject::invokeMethod(this, &QCoreApplication::quit, Qt::QueuedConnection);
    const int code = exec();
    throwKept();
    return code;
}

bool GuardedApplication::notify(QObject* receiver, QEvent* event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        // What follows from the first failure tells nothing new.
        if (!m_exception)
            m_exception = std::current_exception();
    }
    if (!m_isCalling)
        exit(0);
    return false;
}

void GuardedApplication::call(const std::function<void()>& action)
{
    auto* guard = qobject_cast<GuardedApplication*>(QCoreApplication::instance());
    // A program that is failing already tells of its first failure.
    if (guard && !guard->m_isCalling && !guard->m_exception)
        guard->callKeeping(action);
    else
        action();
}

void GuardedApplication::callKeeping(const std::function<void()>& action)
{
    m_isCalling = true;
    try {
        action();
    } catch (...) {
        if (!m_exception)
            m_exception = std::current_exception();
    }
    m_isCalling = false;
    throwKept();
}

void GuardedApplication::throwKept()
{
    if (m_exception)
        std::rethrow_exception(std::exchange(m_exception, nullptr));
}
