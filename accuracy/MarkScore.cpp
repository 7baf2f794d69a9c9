#include "accuracy/MarkScore.h"

#include <algorithm>
#include <cmath>

namespace accuracy {

namespace {

constexpr double msPerSecond = 1000.0;
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

std::vector<double> timesOf(const std::vector<TMarkedBeat>& beats)
{
    std::vector<double> times(beats.size());
    std::transform(beats.begin(), beats.end(), times.begin(), [](const TMarkedBeat& beat) { return beat.r; });
    return times;
}

/// For each reference beat what the leads have in its place; leads without it are left out.
std::vector<std::vector<const TMarkedBeat*>> partnersOf(const std::vector<TMarkedBeat>& reference,
                                                        const std::vector<std::vector<TMarkedBeat>>& leads)
{
    std::vector<std::vector<const TMarkedBeat*>> partners(reference.size());
    for (const std::vector<TMarkedBeat>& lead : leads) {
        const std::vector<int> places = matchBeats(timesOf(reference), timesOf(lead));
        for (std::size_t i = 0; i < places.size(); ++i) {
            if (places[i] >= 0)
                partners[i].push_back(&lead[static_cast<std::size_t>(places[i])]);
        }
    }
    return partners;
}

/// Seconds; empty if no lead has the mark.
std::optional<double> leastError(const std::vector<const TMarkedBeat*>& beats, std::size_t mark,
                                 double reference)
{
    std::optional<double> least;
    for (const TMarkedBeat* beat : beats) {
        if (!beat->marks[mark])
            continue;
        const double error = *beat->marks[mark] - reference;
        if (!least || std::abs(error) < std::abs(*least))
            least = error;
    }
    return least;
}

void scoreMark(TMarkStatistics& statistics, const std::optional<double>& reference,
               const std::vector<const TMarkedBeat*>& beats, std::size_t mark)
{
    if (reference) {
        const std::optional<double> error = leastError(beats, mark, *reference);
        error ? statistics.addError(*error) : statistics.addMissed();
    } else if (!beats.empty() && std::all_of(beats.begin(), beats.end(), [mark](const TMarkedBeat* beat) {
                   return beat->marks[mark].has_value();
               })) {
        statistics.addExtra();
    }
}

} // namespace

const char* markName(int mark)
{
    static constexpr const char* names[] = {"P onset",    "P peak",  "P offset", "QRS onset",
                                            "QRS offset", "T onset", "T peak",   "T offset"};
    return mark >= 0 && mark < markCount ? names[mark] : "";
}

void TMarkStatistics::addError(double seconds)
{
    const double error = seconds * msPerSecond;
    const double distance = error - m_mean;
    ++m_found;
    m_mean += distance / m_found;
    m_squares += distance * (error - m_mean);
}

TMarkStatistics& TMarkStatistics::operator+=(const TMarkStatistics& other)
{
    const int found = m_found + other.m_found;
    if (other.m_found > 0) {
        const double distance = other.m_mean - m_mean;
        const double share = static_cast<double>(other.m_found) / found;
        m_squares += other.m_squares + distance * distance * m_found * share;
        m_mean += distance * share;
    }
    m_found = found;
    m_missed += other.m_missed;
    m_extra += other.m_extra;
    return *this;
}

double TMarkStatistics::detectionRate() const
{
    return reference() > 0 ? static_cast<double>(m_found) / reference() : noNumber;
}

double TMarkStatistics::mean() const
{
    return m_found > 0 ? m_mean : noNumber;
}

double TMarkStatistics::standardDeviation() const
{
    return m_found > 1 ? std::sqrt(m_squares / (m_found - 1)) : noNumber;
}

TMarkScores& operator+=(TMarkScores& scores, const TMarkScores& other)
{
    for (std::size_t mark = 0; mark < markCount; ++mark)
        scores[mark] += other[mark];
    return scores;
}

TMarkScores scoreMarks(const std::vector<TMarkedBeat>& reference,
                       const std::vector<std::vector<TMarkedBeat>>& leads)
{
    const auto partners = partnersOf(reference, leads);
    TMarkScores scores;
    for (std::size_t i = 0; i < reference.size(); ++i) {
        for (std::size_t mark = 0; mark < markCount; ++mark)
            scoreMark(scores[mark], reference[i].marks[mark], partners[i], mark);
    }
    return scores;
}

} // namespace accuracy
