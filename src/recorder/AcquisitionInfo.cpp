#include "recorder/AcquisitionInfo.h"

#include "acq/TAcqDevice.h"
#include "study/StudyInfo.h"

#include <QByteArrayList>

void fillAcquisition(StudyInfo& info, const TAcqDevice& device)
{
    QByteArrayList names;
    for (int channel = 0; channel < device.channelCount(); ++channel)
        names << device.channelName(channel);
    info.sampleFormat = "short";
    info.channelNames = names.join(',');
    info.channelCount = device.channelCount();
    info.samplingRate = device.samplingRate();
    info.resolution = device.resolutionBits();
    info.gain = device.rangeMax();
}
