#include "platform/InterruptSignal.h"

#include <QtGlobal>

#include <atomic>
#include <iterator>
#include <utility>

#ifdef Q_OS_WIN
#include <QObject>
#include <mutex>
#include <windows.h>
#else
#include "base/Error.h"

#include <QSocketNotifier>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

std::atomic<bool> raised = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

} // namespace

#ifdef Q_OS_WIN

class InterruptSignal::TReceiver : public QObject
{
public:
    explicit TReceiver(std::function<void()> onInterrupt) : m_onInterrupt(std::move(onInterrupt))
    {
        const std::lock_guard<std::mutex> lock(s_mutex);
        s_receiver = this;
        SetConsoleCtrlHandler(note, TRUE);
    }
    ~TReceiver() override
    {
        SetConsoleCtrlHandler(note, FALSE);
        const std::lock_guard<std::mutex> lock(s_mutex);
        s_receiver = nullptr;
    }

private:
    /// On a thread that the system makes for it.
    static BOOL WINAPI note(DWORD event)
    {
        if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
            return FALSE;
        raised = true;
        const std::lock_guard<std::mutex> lock(s_mutex);
        if (s_receiver)
            QMetaObject::invokeMethod(s_receiver, s_receiver->m_onInterrupt, Qt::QueuedConnection);
        return TRUE;
    }

    inline static std::mutex s_mutex;
    inline static TReceiver* s_receiver = nullptr;
    std::function<void()> m_onInterrupt;
};

#else

namespace {

constexpr int signalNumbers[] = {SIGINT, SIGTERM};
/// The end of the pipe that the handler writes to: all that it may do to wake the event loop.
std::atomic<int> wakeEnd = -1;

void note(int)
{
    const int before = errno;
    raised = true;
    const char byte = 0;
    // A full pipe wakes as well.
    [[maybe_unused]] const ssize_t written = ::write(wakeEnd, &byte, 1);
    errno = before;
}

} // namespace

class InterruptSignal::TReceiver
{
public:
    explicit TReceiver(std::function<void()> onInterrupt)
    {
        if (::pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
            throw TError("Cannot create pipe");
        m_notifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                         [this, call = std::move(onInterrupt)] {
                             drain();
                             call();
                         });
        wakeEnd = m_pipe[1];
        for (int i = 0; i < signalCount; ++i)
            install(signalNumbers[i], m_before[i]);
    }
    ~TReceiver()
    {
        for (int i = 0; i < signalCount; ++i)
            ::sigaction(signalNumbers[i], &m_before[i], nullptr);
        wakeEnd = -1;
        m_notifier.reset();
        ::close(m_pipe[0]);
        ::close(m_pipe[1]);
    }
    TReceiver(const TReceiver&) = delete;
    TReceiver& operator=(const TReceiver&) = delete;

private:
    static constexpr int signalCount = std::size(signalNumbers);

    static void install(int number, struct sigaction& before)
    {
        struct sigaction action = {};
        action.sa_handler = note;
        action.sa_flags = SA_RESTART;
        ::sigaction(number, &action, &before);
    }

    void drain() const
    {
        char bytes[64];
        while (::read(m_pipe[0], bytes, sizeof bytes) > 0) {
        }
    }

    int m_pipe[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> m_notifier;
    struct sigaction m_before[signalCount] = {};
};

#endif

InterruptSignal::InterruptSignal(std::function<void()> onInterrupt)
{
    raised = false;
    m_receiver = std::make_unique<TReceiver>(std::move(onInterrupt));
}

InterruptSignal::~InterruptSignal() = default;

bool InterruptSignal::isRaised()
{
    return raised;
}
