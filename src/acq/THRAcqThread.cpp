#include "acq/THRAcqThread.h"

#include "acq/LeadComputation.h"
#include "acq/TPairAverager.h"
#include "acq/TSamplePacker.h"

#include <utility>

THRAcqThread::THRAcqThread(TAcqBuffer& buffer, std::string port, int baud)
    : TPortAcqThread(buffer, std::move(port), baud, acq::highRateKeepAliveFrames)
{
}

THRAcqThread::~THRAcqThread()
{
    stopReading();
}

void THRAcqThread::stream()
{
    THRFrameParser parser;
    TPairAverager averager;
    TSamplePacker packer(acq::allChannels);
    TEcgSample sample;
    while (nextFrame(parser, sample)) {
        acq::computeAugmentedLeads(sample);
        publishBattery(sample);
        publishElectrodes(sample);
        if (averager.add(sample))
            push(packer.pack(sample), packer.size());
        frameDone();
    }
}
