#include "cli/TExaminationOutput.h"

#include "acq/EcgDeviceFrame.h"
#include "analysis/beats/TBeat.h"
#include "analysis/signals/TChannel.h"
#include "base/Error.h"
#include "base/Text.h"
#include "cli/JsonOutput.h"
#include "recorder/TStudyRecorder.h"
#include "study/StudyInfo.h"

#include <QJsonArray>

#include <cmath>

using velantor::fromText;

namespace {

QJsonValue positiveOrNull(double value)
{
    return value > 0.0 ? QJsonValue(value) : QJsonValue();
}

} // namespace

TDeviceStatus TDeviceStatus::of(TStudyRecorder& recorder)
{
    TDeviceStatus status;
    for (const char* electrode : acq::electrodeNames) {
        if (recorder.driver().isElectrodeOff(electrode))
            status.electrodesOff << QLatin1String(electrode);
    }
    const TSignal& signal = recorder.rawSignal();
    for (int channel = 0; channel < signal.channelCount(); ++channel) {
        if (recorder.isChannelSaturated(channel))
            status.saturated << fromText(signal.channel(channel)->name());
    }
    const double volts = recorder.driver().batteryVoltage();
    if (volts > 0.0)
        status.battery = std::round(volts * 100.0) / 100.0;
    return status;
}

bool TDeviceStatus::differsFrom(const TDeviceStatus& other) const
{
    const bool knowledgeDiffers = battery.has_value() != other.battery.has_value();
    return electrodesOff != other.electrodesOff || saturated != other.saturated || knowledgeDiffers ||
           (battery && std::fabs(*battery - *other.battery) >= batteryStep);
}

void TExaminationOutput::started(const StudyInfo& info)
{
    tell("started", {{QLatin1String("id"), info.id},
                     {QLatin1String("baseFilename"), fromText(info.baseFilename)},
                     {QLatin1String("channels"),
                      QJsonArray::fromStringList(fromText(info.channelNames).split(QLatin1Char(',')))},
                     {QLatin1String("samplingRate"), info.samplingRate}});
}

void TExaminationOutput::beat(const TBeat& beat)
{
    const double rr = beat.value(TBeat::rr);
    tell("beat", {{QLatin1String("time"), beat.value(TBeat::beatTime)},
                  {QLatin1String("rr"), positiveOrNull(rr)},
                  {QLatin1String("bpm"), rr > 0.0 ? QJsonValue(60.0 / rr) : QJsonValue()}});
}

void TExaminationOutput::stage(int index, double time)
{
    tell("stage", {{QLatin1String("index"), index}, {QLatin1String("time"), time}});
}

void TExaminationOutput::status(const TDeviceStatus& status)
{
    if (!status.differsFrom(m_status))
        return;
    m_status = status;
    tell("status", {{QLatin1String("electrodesOff"), QJsonArray::fromStringList(status.electrodesOff)},
                    {QLatin1String("saturated"), QJsonArray::fromStringList(status.saturated)},
                    {QLatin1String("battery"), status.battery ? QJsonValue(*status.battery) : QJsonValue()}});
}

void TExaminationOutput::warning(const char* text)
{
    tell("warning", {{QLatin1String("text"), QString::fromUtf8(text)}});
}

void TExaminationOutput::finished(qint32 id, int samples, int beats)
{
    tell("finished",
         {{QLatin1String("id"), id}, {QLatin1String("samples"), samples}, {QLatin1String("beats"), beats}});
}

bool TExaminationOutput::isReaderGone() const
{
    return m_output.isReaderGone();
}

void TExaminationOutput::tell(const char* event, QJsonObject object)
{
    if (m_failed)
        return;
    object.insert(QLatin1String("event"), QLatin1String(event));
    try {
        m_output.writeLine(object);
        m_output.finish();
    } catch (const TError&) {
        m_failed = true;
    }
}
