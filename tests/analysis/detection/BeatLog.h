#pragma once

#include "analysis/beats/TBeat.h"
#include "analysis/detection/TBeatListener.h"

#include <vector>

/// Keeps the beats that it is told of.
class TBeatLog : public TBeatListener
{
public:
    void beatFound(const TBeat& beat) override { beats.push_back(beat); }

    std::vector<double> times() const
    {
        std::vector<double> times;
        for (const TBeat& beat : beats)
            times.push_back(beat.value(TBeat::beatTime));
        return times;
    }

    std::vector<TBeat> beats;
};
