#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <string>
#include <vector>

/// A serial port that the system knows.
struct TPortDescription
{
    QString description;
    QString portName;
    /// USB identifiers, 0 if there are none.
    int vendorIdentifier = 0;
    int productIdentifier = 0;
};

namespace acq {

using TPortLister = std::function<std::vector<TPortDescription>()>;

/// The ports of this machine, in the system's order.
std::vector<TPortDescription> systemPorts();
/// Lets the searches look at other ports than those of this machine, so that they can be tried without a
/// device; an empty function takes them back to `systemPorts`. Not while a search runs.
void setPortLister(TPortLister lister);
/// How long a probe waits for an answer in place of 10 s; 0 takes it back. For tests with devices that are
/// silent.
void setProbeTimeout(int ms);

} // namespace acq

/// The port of the first device at USB: by its description, or else by its identifiers. Throws
/// TError("Device not found").
std::string findUsbPort();

/// The Bluetooth ports behind which a device answers, sorted by name. Tries them side by side on the global
/// thread pool, as many at a time as it has threads (one per processor), and waits until each has answered or
/// its time is over (10 s).
QStringList detectBluetoothPorts();

/// Whether a device answers at the port. Throws TError if the port cannot be opened.
bool probePort(const std::string& port);
