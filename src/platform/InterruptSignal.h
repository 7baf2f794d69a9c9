#pragma once

#include <functional>
#include <memory>

/// The user's wish that the program ends (an interrupt or a request to terminate; on Windows Ctrl-C and
/// Ctrl-Break), told on the event loop instead of ending the program on the spot. One at a time, on the main
/// thread.
class InterruptSignal
{
public:
    /// `onInterrupt` is called by the event loop, once for each wish or for several that came together.
    explicit InterruptSignal(std::function<void()> onInterrupt);
    /// From here on such a wish ends the program again.
    ~InterruptSignal();
    InterruptSignal(const InterruptSignal&) = delete;
    InterruptSignal& operator=(const InterruptSignal&) = delete;

    /// Whether it has come since the construction. For work that keeps the event loop busy; any thread.
    static bool isRaised();

private:
    class TReceiver;

    std::unique_ptr<TReceiver> m_receiver;
};
