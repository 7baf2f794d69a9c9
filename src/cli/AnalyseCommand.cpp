#include "analysis/detection/TBeatListener.h"
#include "analysis/detection/TStoredAnalysis.h"
#include "analysis/signals/TChannel.h"
#include "base/Text.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/JsonOutput.h"
#include "cli/StudyAccess.h"
#include "study/Study.h"
#include "study/TEcgFile.h"

#include <QJsonArray>

#include <limits>

using velantor::fromText;

namespace {

/// A value of a beat under the name that the tool gives it.
struct TSlotName
{
    const char* name;
    int slot;
};

constexpr TSlotName slotNames[]{
    {"P", TBeat::pPeak},          {"QRSon", TBeat::qrsOnset}, {"R", TBeat::rPosition},
    {"QRSoff", TBeat::qrsOffset}, {"T", TBeat::tPeak},        {"pType", TBeat::pType},
    {"qrsType", TBeat::qrsType},  {"tType", TBeat::tType},    {"qrsDuration", TBeat::qrsDuration},
    {"pq", TBeat::pqInterval},    {"qt", TBeat::qtInterval},
};

struct TPlaceName
{
    const char* name;
    int (TAverageBeatDelineator::*place)() const;
};

constexpr TPlaceName placeNames[]{
    {"POn", &TAverageBeatDelineator::pOnset},   {"PPeak", &TAverageBeatDelineator::pPeak},
    {"POff", &TAverageBeatDelineator::pOffset}, {"QRSOn", &TAverageBeatDelineator::qrsOnset},
    {"R", &TAverageBeatDelineator::rPosition},  {"QRSOff", &TAverageBeatDelineator::qrsOffset},
    {"TOn", &TAverageBeatDelineator::tOnset},   {"TPeak", &TAverageBeatDelineator::tPeak},
    {"TOff", &TAverageBeatDelineator::tOffset},
};

QJsonObject describeChannel(const TBeat& beat, int channel)
{
    QJsonObject object{{QLatin1String("takesPart"), beat.fiducial(channel, TBeat::takesPart) > 0.0}};
    for (const TSlotName& slot : slotNames) {
        object.insert(QLatin1String(slot.name), beat.isFiducialSet(channel, slot.slot)
                                                    ? QJsonValue(beat.fiducial(channel, slot.slot))
                                                    : QJsonValue());
    }
    return object;
}

QJsonObject describeBeat(const TBeat& beat)
{
    QJsonArray channels;
    for (int channel = 0; channel < beat.channelCount(); ++channel)
        channels.append(describeChannel(beat, channel));
    return {{QLatin1String("number"), beat.number()},
            {QLatin1String("valid"), beat.valid()},
            {QLatin1String("time"), beat.value(TBeat::beatTime)},
            {QLatin1String("rr"), beat.value(TBeat::rr)},
            {QLatin1String("meanRR"), beat.value(TBeat::meanRR)},
            {QLatin1String("windowStart"), beat.windowStart()},
            {QLatin1String("windowLength"), beat.windowLength()},
            {QLatin1String("channels"), channels}};
}

QJsonObject describeAverage(TAverageBeat& average, int channelCount)
{
    QJsonArray complexes;
    for (int channel = 0; channel < channelCount; ++channel) {
        QJsonArray counts;
        for (const double count : average.complex(channel).values())
            counts.append(count);
        complexes.append(counts);
    }
    return {{QLatin1String("dominantChannel"), average.dominantChannel()},
            {QLatin1String("beats"), average.count()},
            {QLatin1String("meanRR"), average.meanRR()},
            {QLatin1String("complexes"), complexes}};
}

QJsonObject describePlaces(const TAverageBeatDelineator& delineator)
{
    QJsonObject object;
    for (const TPlaceName& place : placeNames) {
        const int sample = (delineator.*place.place)();
        object.insert(QLatin1String(place.name),
                      sample == TAverageBeatDelineator::notFound ? QJsonValue() : QJsonValue(sample));
    }
    return object;
}

QJsonArray describeDelineation(TStoredAnalysis& analysis, int channelCount)
{
    QJsonArray channels;
    for (int channel = 0; channel < channelCount; ++channel)
        channels.append(describePlaces(analysis.delineate(channel)));
    return channels;
}

/// Everything but the beats.
QJsonObject describe(TStoredAnalysis& analysis, const TSignal& signal)
{
    QJsonArray names;
    for (int channel = 0; channel < signal.channelCount(); ++channel)
        names.append(fromText(signal.channel(channel)->name()));
    return {{QLatin1String("samplingRate"), signal.samplingRate()},
            {QLatin1String("channels"), names},
            {QLatin1String("duration"), signal.duration()},
            {QLatin1String("average"), describeAverage(analysis.averageBeat(), signal.channelCount())},
            {QLatin1String("delineation"), describeDelineation(analysis, signal.channelCount())}};
}

/// Writes the beats of a recording as they are found: a long one has more than should be held at once.
class TBeatWriter : public TBeatListener
{
public:
    explicit TBeatWriter(TJsonOutput& output) : m_output(output) {}
    void beatFound(const TBeat& beat) override { m_output.writeListed(describeBeat(beat)); }

private:
    TJsonOutput& m_output;
};

TBeatChainSettings settingsOf(const TOptions& options)
{
    TBeatChainSettings settings;
    settings.delineateWaves = !options.has("--no-waves");
    settings.refine = options.has("--refine");
    if (options.has("--start"))
        settings.startTime = parseReal(options.value("--start"), "start", 0.0);
    if (options.has("--end"))
        settings.endTime = parseReal(options.value("--end"), "end", std::numeric_limits<double>::min());
    return settings;
}

int stepOf(const TOptions& options)
{
    if (!options.has("--block"))
        return TStoredAnalysis::defaultStep;
    const int step = parseNumber(options.value("--block"), "block", 1);
    if (step > TStoredAnalysis::maxStep)
        throw TUsageError(QStringLiteral("%1 is not a valid block: %2 frames at most")
                              .arg(step)
                              .arg(TStoredAnalysis::maxStep));
    return step;
}

void analyse(TCommandContext& context)
{
    const TBeatChainSettings settings = settingsOf(context.options());
    const int step = stepOf(context.options());
    TEcgFile& ecg = *openStudy(context).ecg();
    TJsonOutput& output = context.output();
    TBeatWriter writer(output);
    TStoredAnalysis analysis(ecg, settings, &writer);
    output.beginList("beats");
    analysis.run(step);
    output.endList(describe(analysis, ecg));
}

constexpr TOption options[]{
    {"--no-waves"}, {"--refine"}, {"--start", "S"}, {"--end", "S"}, {"--block", "FRAMES"},
};

constexpr TCommand commands[]{
    {"analyse", "ID", "the beats of a recording, its average beat and the waves of that", analyse, options},
};

} // namespace

std::span<const TCommand> analysisCommands()
{
    return commands;
}
