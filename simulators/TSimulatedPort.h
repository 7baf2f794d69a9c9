#pragma once

#include <string>

/// The device's end of a pseudo-terminal: what the simulators speak through. With a link, the program finds
/// the port under the same name after each return of the device.
class TSimulatedPort
{
public:
    /// `link` is made a symbolic link to the port, in place of one that is there, or is empty. A file of
    /// another kind stays and is an error.
    explicit TSimulatedPort(const std::string& link = {});
    ~TSimulatedPort();
    TSimulatedPort(const TSimulatedPort&) = delete;
    TSimulatedPort& operator=(const TSimulatedPort&) = delete;

    /// Plugs the device in. Throws TError "Cannot create pseudo-terminal".
    void open();
    /// Pulls the cable: the port hangs up and vanishes.
    void close();
    bool isOpen() const { return m_device >= 0; }

    /// The link if there is one, else the port itself.
    std::string path() const { return m_link.empty() ? m_port : m_link; }

    /// Bytes taken, 0 if there are none within `timeoutMs`.
    int read(char* data, int size, int timeoutMs);
    /// Bytes that found room.
    int write(const char* data, int size);
    /// Waits for room to write; false at the time-out.
    bool waitForRoom(int timeoutMs);
    /// Passes the time while the line is cut.
    static void sleep(int ms);

private:
    std::string m_link;
    std::string m_port;
    int m_device = -1;
    /// Our own hold of the port, so that the line stays up while no program has it open.
    int m_holder = -1;
};
