#include "analysis/filters/TOfflineFilterChain.h"
#include "analysis/filters/TRealtimeFilterChain.h"
#include "analysis/signals/TInt16Signal.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/JsonOutput.h"
#include "cli/StudyAccess.h"
#include "study/Study.h"
#include "study/TEcgFile.h"

#include <algorithm>
#include <limits>

namespace {

/// Samples of one channel from `from` on; those outside the recording are 0.
struct TSpan
{
    int channel;
    int from;
    int count;
};

TSpan spanOf(const TCommandContext& context)
{
    constexpr int lowest = std::numeric_limits<int>::min();
    return {parseNumber(context.arguments().at(1), "channel number", lowest),
            parseNumber(context.arguments().at(2), "sample position", lowest),
            parseNumber(context.arguments().at(3), "sample count", 0)};
}

template <typename Chain> void applySwitches(Chain& chain, const TOptions& options)
{
    chain.apply(options.has("--notch"), options.has("--muscle"), options.has("--baseline"));
}

/// One channel of a recording, fed in pieces of 4096 samples through the chain that runs while recording. It
/// runs at the recording's own rate, so that samples keep their positions; the live display halves 1000 Hz.
class TReplay
{
public:
    TReplay(TEcgFile& ecg, int channel, const TOptions& options)
        : m_ecg(ecg), m_channel(channel), m_ring(step, ringSteps * step, 1, ecg.samplingRate()),
          m_chain(&m_ring)
    {
        applySwitches(m_chain, options);
    }

    /// The output for [from, to), fewer values where it ends before. `from` not below 0.
    std::vector<int> run(int from, int to)
    {
        std::vector<int> values;
        for (qint64 fed = 0; fed < m_ecg.sampleCount() && reached() < to; fed += step) {
            feed(static_cast<int>(fed), static_cast<int>(std::min<qint64>(step, m_ecg.sampleCount() - fed)));
            const int end = std::min(to, reached());
            for (int i = from + static_cast<int>(values.size()); i < end; ++i)
                values.push_back(m_chain.current()->sample(0, i));
        }
        return values;
    }

private:
    static constexpr int step = 4096;
    static constexpr int ringSteps = 20;

    int reached() const { return m_chain.current()->sampleCount(); }

    void feed(int from, int count)
    {
        m_samples.resize(count);
        m_ecg.readDoubles(m_channel, from, count, m_samples.data());
        const double* const rows[] = {m_samples.data()};
        m_ring.addPerChannelDouble(rows, count);
        m_chain.update();
    }

    TEcgFile& m_ecg;
    int m_channel;
    TInt16Signal m_ring;
    TRealtimeFilterChain m_chain;
    std::vector<double> m_samples;
};

void printRealtime(TCommandContext& context, TEcgFile& ecg, const TSpan& span)
{
    const int first = std::max(span.from, 0);
    const qint64 end = std::clamp<qint64>(static_cast<qint64>(span.from) + span.count, first,
                                          std::max(ecg.sampleCount(), first));
    std::vector<int> values;
    if (span.channel >= 0 && span.channel < ecg.channelCount())
        values = TReplay(ecg, span.channel, context.options()).run(first, static_cast<int>(end));
    context.output().writeValues(span.count, [&](int i) {
        const qint64 at = static_cast<qint64>(span.from) + i - first;
        return at >= 0 && at < static_cast<qint64>(values.size()) ? values[at] : 0;
    });
}

void printOffline(TCommandContext& context, TEcgFile& ecg, const TSpan& span)
{
    TOfflineFilterChain chain(&ecg);
    applySwitches(chain, context.options());
    TSignal& filtered = *chain.current();
    context.output().writeValues(span.count, [&](int i) {
        const qint64 index = static_cast<qint64>(span.from) + i;
        return index < ecg.sampleCount() ? filtered.sample(span.channel, static_cast<int>(index)) : 0;
    });
}

void filter(TCommandContext& context)
{
    const TSpan span = spanOf(context);
    TEcgFile& ecg = *openStudy(context).ecg();
    if (context.options().has("--realtime"))
        printRealtime(context, ecg, span);
    else
        printOffline(context, ecg, span);
}

constexpr TOption filterOptions[] = {{"--notch"}, {"--muscle"}, {"--baseline"}, {"--realtime"}};

constexpr TCommand commands[] = {
    {"filter", "ID CHANNEL FROM COUNT",
     "samples as they are drawn, with the filters that are switched on;\n"
     "      --realtime works at the recording's rate, the live display at 500 Hz",
     filter, filterOptions},
};

} // namespace

std::span<const TCommand> signalCommands()
{
    return commands;
}
