#include "acq/TStdAcqThread.h"

#include "acq/LeadComputation.h"
#include "acq/TSamplePacker.h"

#include <utility>

TStdAcqThread::TStdAcqThread(TAcqBuffer& buffer, std::string port, int baud, int channelMask)
    : TPortAcqThread(buffer, std::move(port), baud, acq::standardKeepAliveFrames), m_channelMask(channelMask)
{
}

TStdAcqThread::~TStdAcqThread()
{
    stopReading();
}

void TStdAcqThread::stream()
{
    TStdFrameParser parser;
    TSamplePacker packer(m_channelMask);
    TEcgSample sample;
    while (nextFrame(parser, sample)) {
        acq::computeAugmentedLeads(sample);
        publishBattery(sample);
        countSaturation(sample);
        publishElectrodes(sample);
        acq::zeroDetachedLeads(sample);
        push(packer.pack(sample), packer.size());
        frameDone();
    }
}
