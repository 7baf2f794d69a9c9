#pragma once

#include <memory>

class TEquipmentThread;

/// A treadmill or an ergometer that follows a stress test. A thin front: the calls return at once and a
/// thread of the driver talks to the device. One thread uses it.
class TEquipment
{
public:
    enum TKind
    {
        Treadmill = 0,
        Ergometer = 1
    };

    /// Asks the thread to end, waits for it as long as it takes, and destroys it.
    virtual ~TEquipment();
    TEquipment(const TEquipment&) = delete;
    TEquipment& operator=(const TEquipment&) = delete;

    /// False from any of these tells that the device cannot be driven any more.
    virtual bool isOk() = 0;
    virtual bool start() = 0;
    virtual bool stop() = 0;
    /// Lets the values of the last `setValue` calls go out.
    virtual bool commit() = 0;
    /// `name`, in any case of letters, is "speed" in km/h, "incline" in percent or "workload" in watts.
    virtual bool setValue(const char* name, double value) = 0;

    TKind kind() const { return m_kind; }

protected:
    /// `thread` may be null.
    TEquipment(TKind kind, std::unique_ptr<TEquipmentThread> thread);

    TEquipmentThread& thread() { return *m_thread; }

private:
    const TKind m_kind;
    std::unique_ptr<TEquipmentThread> m_thread;
};
