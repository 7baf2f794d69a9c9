#include "acq/DeviceDiscovery.h"

#include "acq/EcgDeviceFrame.h"
#include "acq/TAcqPort.h"
#include "base/Text.h"

#include <QByteArray>
#include <QMap>
#include <QSerialPortInfo>
#include <QtConcurrent>

#include <algorithm>
#include <atomic>
#include <exception>
#include <utility>

namespace {

// Under these identifiers the device shows at USB where its driver gives no description of ours.
constexpr int deviceVendor = 0x04D8;
constexpr int deviceProduct = 0x00DF;

using TPorts = std::vector<TPortDescription>;

std::atomic<int> probeTimeoutMs = TAcqPort::defaultReadTimeoutMs;

acq::TPortLister& portLister()
{
    static acq::TPortLister lister = acq::systemPorts;
    return lister;
}

bool isDescribedAsDevice(const TPortDescription& port)
{
    const QString text = port.description.toUpper().replace(QLatin1Char('_'), QLatin1Char(' '));
    return text.startsWith(QLatin1String("VELANTOR ECG"), Qt::CaseInsensitive) ||
           text.startsWith(QLatin1String("VELANTOR ERGO"), Qt::CaseInsensitive);
}

bool hasDeviceIdentifiers(const TPortDescription& port)
{
    return port.vendorIdentifier == deviceVendor && port.productIdentifier == deviceProduct;
}

/// A port that cannot be opened has no device that we could use.
bool isDevice(const QFuture<bool>& probe)
{
    try {
        return probe.result();
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

std::vector<TPortDescription> acq::systemPorts()
{
    TPorts ports;
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts())
        ports.push_back(
            {info.description(), info.portName(), info.vendorIdentifier(), info.productIdentifier()});
    return ports;
}

void acq::setPortLister(TPortLister lister)
{
    portLister() = lister ? std::move(lister) : systemPorts;
}

void acq::setProbeTimeout(int ms)
{
    probeTimeoutMs = ms > 0 ? ms : TAcqPort::defaultReadTimeoutMs;
}

std::string findUsbPort()
{
    const TPorts ports = portLister()();
    auto found = std::find_if(ports.begin(), ports.end(), isDescribedAsDevice);
    if (found == ports.end())
        found = std::find_if(ports.begin(), ports.end(), hasDeviceIdentifiers);
    if (found == ports.end())
        throw TError("Device not found");
    return found->portName.toStdString();
}

QStringList detectBluetoothPorts()
{
    QMap<QByteArray, QFuture<bool>> probes;
    for (const TPortDescription& port : portLister()()) {
        if (!port.description.contains(QLatin1String("Bluetooth")))
            continue;
        const QByteArray name = velantor::toText(port.portName);
        if (!probes.contains(name)) // Two probes of one port would shut each other out.
            probes.insert(name, QtConcurrent::run(probePort, name.toStdString()));
    }
    QStringList found;
    for (auto probe = probes.cbegin(); probe != probes.cend(); ++probe) {
        if (isDevice(probe.value()))
            found.append(velantor::fromText(probe.key()));
    }
    return found;
}

bool probePort(const std::string& port)
{
    TAcqPort line(port, acq::standardBaud, probeTimeoutMs);
    const QByteArray answer = QByteArray::fromStdString(identify(line)).trimmed().toLower();
    return answer.contains("ergo") || answer.contains("ecg");
}
