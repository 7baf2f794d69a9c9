#include "acq/AcqChannels.h"

#include <algorithm>
#include <iterator>

std::vector<int> acq::selectedChannels(int mask, int channels)
{
    std::vector<int> selected;
    for (int i = 0; i < std::min<int>(channels, std::size(channelNames)); ++i) {
        if ((static_cast<unsigned>(mask) >> i & 1U) != 0)
            selected.push_back(i);
    }
    return selected;
}
