#include "acq/TAcqPort.h"

#include "acq/EcgDeviceFrame.h"

#include <algorithm>
#include <array>

namespace {

TCommSettings deviceSettings(int baud, int readTimeoutMs)
{
    TCommSettings settings;
    settings.baud = baud;
    settings.dataBits = 8;
    settings.stopBits = 1;
    settings.flowControl = TCommSettings::TFlowControl::None;
    settings.inputQueueBytes = 32768;
    settings.outputQueueBytes = 32768;
    settings.readTimeoutMs = readTimeoutMs;
    settings.writeTimeoutMs = 3000;
    return settings;
}

} // namespace

TAcqPort::TAcqPort(const std::string& name, int baud, int readTimeoutMs)
{
    try {
        m_port.open(name, deviceSettings(baud, readTimeoutMs));
    } catch (const TCommError& error) {
        if (error.reason() == TCommError::TReason::SetupFailed)
            throw;
        throw TError("No se pudo abrir el puerto (CreateFile)");
    }
}

// A command that does not go out shows in the reads that follow, so that nothing is said here.

void TAcqPort::sendStart()
{
    m_port.purgeInput();
    m_port.purgeOutput();
    send(acq::startCommand);
}

void TAcqPort::sendStop()
{
    send(acq::stopCommand);
}

void TAcqPort::sendKeepAlive()
{
    send(acq::keepAliveCommand);
}

bool TAcqPort::sendIdentify()
{
    return send(acq::identifyCommand);
}

std::string identify(TAcqPort& port)
{
    if (!port.sendIdentify())
        return {};
    std::array<char, acq::identityBytes> answer{};
    const int count = port.read(answer.data(), static_cast<int>(answer.size()));
    return {answer.data(), static_cast<std::size_t>(std::max(count, 0))};
}
