#include "study/TStudyResults.h"

#include "base/Constants.h"

namespace {

// A new result is one more row of one of these tables.
struct TValueEntry
{
    const char* name;
    double initial;
};

constexpr TValueEntry valueTable[] = {
    {"maxBPM", 0.0},
    {"maxSysBP", 0.0},
    {"maxDiaBP", 0.0},
    {"maxMETS", 0.0},
    {"maxDP", 0.0},
    {"maxVO2", 0.0},
    {"measurementChannel", -1.0},
    {"POnset", 0.0},
    {"PPeak", 0.0},
    {"POffset", 0.0},
    {"QRSOnset", 0.0},
    {"QRSOffset", 0.0},
    {"TOnset", 0.0},
    {"TPeak", 0.0},
    {"TOffset", 0.0},
    {"PAmp", 0.0},
    {"QRSAmp", 0.0},
    {"TAmp", 0.0},
    {"avgRRInterval", 0.0},
    {"QRSAxis", -999.0},
};

constexpr const char* listTable[] = {"BPMPerStage",  "sysBPPerStage", "diaBPPerStage",
                                     "METSPerStage", "DPPerStage",    "pacemakerPulses"};
constexpr const char* trendTable[] = {"BPMTrend", "sysBPTrend", "diaBPTrend", "METSTrend", "DPTrend"};

// One entry per channel.
constexpr const char* channelListTable[] = {"STLevelPerStage(%i)", "STSlopePerStage(%i)"};
constexpr const char* channelTrendTable[] = {"STLevelTrend(%i)", "STSlopeTrend(%i)"};

} // namespace

TStudyResults::TStudyResults()
{
    for (const TValueEntry& entry : valueTable)
        m_items.emplace(entry.name, std::make_unique<TResultValue>(entry.name, entry.initial));
    for (const char* name : listTable)
        m_items.emplace(name, std::make_unique<TResultList>(name));
    for (const char* name : trendTable)
        m_items.emplace(name, std::make_unique<TResultTrend>(name));
    for (int channel = 0; channel < velantor::maxChannels; ++channel) {
        for (const char* pattern : channelListTable) {
            const QByteArray name = channelName(pattern, channel);
            m_items.emplace(name, std::make_unique<TResultList>(name));
        }
        for (const char* pattern : channelTrendTable) {
            const QByteArray name = channelName(pattern, channel);
            m_items.emplace(name, std::make_unique<TResultTrend>(name));
        }
    }
    m_cursor = m_items.cbegin();
}

QByteArray TStudyResults::first()
{
    m_cursor = m_items.cbegin();
    return nameAtCursor();
}

QByteArray TStudyResults::next()
{
    if (m_cursor != m_items.cend())
        ++m_cursor;
    return nameAtCursor();
}

QByteArray TStudyResults::nameAtCursor() const
{
    return m_cursor == m_items.cend() ? QByteArray() : m_cursor->first;
}

TResultItem* TStudyResults::get(const QByteArray& name)
{
    const auto found = m_items.find(name);
    return found == m_items.end() ? nullptr : found->second.get();
}

const TResultItem* TStudyResults::get(const QByteArray& name) const
{
    const auto found = m_items.find(name);
    return found == m_items.end() ? nullptr : found->second.get();
}

TResultValue* TStudyResults::value(const QByteArray& name)
{
    return dynamic_cast<TResultValue*>(get(name));
}

TResultList* TStudyResults::list(const QByteArray& name)
{
    return dynamic_cast<TResultList*>(get(name));
}

TResultTrend* TStudyResults::trend(const QByteArray& name)
{
    return dynamic_cast<TResultTrend*>(get(name));
}

QByteArray TStudyResults::channelName(const char* pattern, int channel)
{
    return QByteArray(pattern).replace("%i", QByteArray::number(channel));
}
