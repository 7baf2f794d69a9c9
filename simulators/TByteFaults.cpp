#include "simulators/TByteFaults.h"

TByteFaults::TByteFaults(double garbled, double lost, unsigned seed)
    : m_garbled(garbled), m_lost(lost), m_random(seed)
{
}

void TByteFaults::pass(const std::vector<std::uint8_t>& bytes, std::vector<char>& out)
{
    for (const std::uint8_t byte : bytes) {
        if (happens(m_lost))
            continue;
        const auto change = happens(m_garbled) ? m_random() % 255 + 1 : 0;
        out.push_back(static_cast<char>(byte ^ change));
    }
}

bool TByteFaults::happens(double probability)
{
    return probability > 0.0 && std::generate_canonical<double, 32>(m_random) < probability;
}
