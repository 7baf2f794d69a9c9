#include "acq/AcqDeviceFactory.h"

#include "acq/AcqChannels.h"
#include "acq/EcgDeviceFrame.h"
#include "acq/TDemoAcqDevice.h"
#include "acq/THRAcqDevice.h"
#include "acq/TStdAcqDevice.h"
#include "base/Settings.h"
#include "base/Text.h"

namespace {

std::unique_ptr<TPortAcqDevice> createBluetoothDevice(int mask)
{
    const QByteArray port = velantor::toText(settings::acqBluetoothPort.value());
    if (settings::hrProtocol.value())
        return std::make_unique<THRAcqDevice>(port.constData(), acq::highRateBaud);
    return std::make_unique<TStdAcqDevice>(port.constData(), acq::standardBaud, mask);
}

std::unique_ptr<TPortAcqDevice> createUsbDevice(int mask)
{
    if (settings::hrProtocol.value())
        return std::make_unique<THRAcqDevice>();
    return std::make_unique<TStdAcqDevice>(mask);
}

} // namespace

std::unique_ptr<TAcqDevice> createAcqDevice(bool reducedChannels)
{
    const int mask = reducedChannels ? acq::reducedChannels : acq::allChannels;
    const QString mode = settings::acqMode.value();
    if (mode == QLatin1String("demo"))
        return std::make_unique<TDemoAcqDevice>("ecg500.dat", 14, 500, 2, 16, 300.0, 0, mask);
    const bool bluetooth = mode == QLatin1String("bluetooth-com");
    auto device = bluetooth ? createBluetoothDevice(mask) : createUsbDevice(mask);
    const double gain = settings::signalGain.value();
    if (gain > 0.0)
        device->setRange(gain);
    return device;
}
