#pragma once

#include "simulators/heart/DemoRecording.h"

#include <string>
#include <vector>

namespace heart {

/// A page of ten seconds.
struct TPaperPage
{
    std::string title;
    double start; ///< seconds; the page ends within the recording
};

/// The pages below each other as an SVG picture of ECG paper: 25 mm/s, 10 mm/mV, twelve leads in four columns
/// of 2.5 s, with lead II over the whole width below. Each strip is centred on its mean.
std::string ecgPaper(const std::vector<TFrame>& frames, const std::vector<TPaperPage>& pages);

} // namespace heart
