#include "app/GuardedApplication.h"

#include <utility>

GuardedApplication::GuardedApplication(int& argc, char** argv) : QApplication(argc, argv) {}

int GuardedApplication::run()
{
    throwKept();
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
    exit(0);
    return false;
}

void GuardedApplication::throwKept()
{
    if (m_exception)
        std::rethrow_exception(std::exchange(m_exception, nullptr));
}
