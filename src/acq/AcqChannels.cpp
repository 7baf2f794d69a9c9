#include "acq/AcqChannels.h"

#include <algorithm>
#include <cstring>
#include <iterator>

int acq::placeOfChannel(const char* name)
{
    const auto found = std::find_if(std::begin(channelNames), std::end(channelNames),
                                    [name](const char* known) { return std::strcmp(known, name) == 0; });
    return found == std::end(channelNames) ? -1 : static_cast<int>(found - std::begin(channelNames));
}

std::vector<int> acq::selectedChannels(int mask, int channels)
{
    std::vector<int> selected;
    for (int i = 0; i < std::min<int>(channels, std::size(channelNames)); ++i) {
        if ((static_cast<unsigned>(mask) >> i & 1U) != 0)
            selected.push_back(i);
    }
    return selected;
}
