#include "cli/RecordDevice.h"

#include "acq/AcqChannels.h"
#include "acq/EcgDeviceFrame.h"
#include "acq/TDemoAcqDevice.h"
#include "acq/THRAcqDevice.h"
#include "acq/TStdAcqDevice.h"
#include "base/Settings.h"
#include "cli/RecordOptions.h"

#include <QCoreApplication>
#include <QFile>

namespace {

/// In the working folder or with the program, where it is installed or where it was built. The plain name if
/// there is none.
QString demoRecording()
{
    QString name = QStringLiteral("ecg500.dat");
    const QString program = QCoreApplication::applicationDirPath();
    for (const QString& path :
         {name, program + QLatin1Char('/') + name, program + QLatin1String("/../") + name,
          program + QLatin1String("/../../") + name}) {
        if (QFile::exists(path))
            return path;
    }
    return name;
}

std::unique_ptr<TAcqDevice> makeDemoDevice(const TRecordOptions& options, int mask)
{
    const QString path = options.place.isEmpty() ? demoRecording() : options.place;
    auto device = std::make_unique<TDemoAcqDevice>(QFile::encodeName(path).constData(),
                                                   acq::deviceChannelCount, 500, 2, 16, 300.0, 0, mask);
    device->setPaced(!options.unpaced);
    return device;
}

std::unique_ptr<TPortAcqDevice> makePortDevice(const TRecordOptions& options, int mask)
{
    const QByteArray port = options.place.toLocal8Bit();
    if (options.source == TRecordOptions::Usb) {
        if (options.highRate)
            return std::make_unique<THRAcqDevice>();
        return std::make_unique<TStdAcqDevice>(mask);
    }
    if (options.highRate)
        return std::make_unique<THRAcqDevice>(port.constData(), acq::highRateBaud);
    return std::make_unique<TStdAcqDevice>(port.constData(), acq::standardBaud, mask);
}

} // namespace

std::unique_ptr<TAcqDevice> makeRecordDevice(const TRecordOptions& options)
{
    const int mask = options.reducedChannels ? acq::reducedChannels : acq::allChannels;
    if (options.source == TRecordOptions::Demo)
        return makeDemoDevice(options, mask);
    auto device = makePortDevice(options, mask);
    // How the device was calibrated on this machine holds for every program.
    const double gain = settings::signalGain.value();
    if (gain > 0.0)
        device->setRange(gain);
    return device;
}
