#pragma once

#include "platform/CommPort.h"

#include <string>
#include <utility>

#include <unistd.h>

/// A file descriptor that is closed with its owner.
class TDescriptor
{
public:
    explicit TDescriptor(int descriptor = -1) : m_descriptor(descriptor) {}
    ~TDescriptor() { reset(); }
    TDescriptor(TDescriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    TDescriptor& operator=(TDescriptor&& other) noexcept
    {
        reset(std::exchange(other.m_descriptor, -1));
        return *this;
    }

    int get() const { return m_descriptor; }
    bool isOpen() const { return m_descriptor >= 0; }
    void reset(int descriptor = -1)
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        m_descriptor = descriptor;
    }

private:
    int m_descriptor;
};

/// The opening and the settings of a serial port where ports are files. Both throw TCommError.
namespace serial {

/// Does not wait for a carrier, and lets nobody else have the port. `name` stands below /dev or is an
/// absolute path.
TDescriptor openAlone(const std::string& name);

/// Sets the port up and purges both directions.
void setUp(int port, const TCommSettings& settings);

} // namespace serial
