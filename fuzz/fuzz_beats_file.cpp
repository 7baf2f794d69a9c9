#include "base/Constants.h"
#include "fuzz/EcgInput.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/ScratchFolder.h"
#include "fuzz/TFuzzReader.h"
#include "study/StudyFiles.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <array>
#include <limits>

// A beats file of any bytes beside samples files of every number of channels: all look-ups end and stay
// within the file, and what is written is read again.

namespace {

constexpr int intMax = std::numeric_limits<int>::max();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// One open samples file for each number of channels.
class TRecordings
{
public:
    TRecordings()
    {
        for (int channels = 1; channels <= velantor::maxChannels; ++channels) {
            const QString path = m_folder.path("channels.vtecg");
            require(writeFile(path, ecgFile(header(channels), {})), "the scratch folder takes the file");
            m_recordings.push_back(openEcgFile(path));
            require(m_recordings.back() != nullptr, "a good samples file opens");
        }
    }

    TEcgFile& withChannels(int channels) { return *m_recordings.at(static_cast<std::size_t>(channels) - 1); }
    QString beatsPath() const { return m_folder.path("fuzzed.vtbeats"); }

private:
    static QByteArray header(int channels)
    {
        QByteArray names = "\"I\"";
        for (int i = 1; i < channels; ++i)
            names += ",\"I\"";
        return R"({"ecg":{"sampleFormat":"short","samplingRate":500,"resolution":16,"gainMin":-5,"gainMax":5,)"
               R"("channels":[)" +
               names + "]}}";
    }

    TScratchFolder m_folder;
    std::vector<std::unique_ptr<TEcgFile>> m_recordings;
};

QByteArray packed(const TBeat& beat)
{
    const TBeatRecord record(beat.channelCount());
    QByteArray bytes(record.size(), '\0');
    record.pack(beat, bytes.data());
    return bytes;
}

using TStep = bool (TBeatStore::*)(const TBeat&, TBeat&) const;

int walk(const TBeatStore& beats, TBeat beat, TStep step)
{
    int steps = 0;
    while ((beats.*step)(beat, beat)) {
        ++steps;
        require(steps <= beats.count(), "a walk ends");
        require(beat.index() >= 0 && beat.index() < beats.count(), "a walk stays within the store");
    }
    return steps;
}

void checkWalks(const TBeatStore& beats)
{
    TBeat before;
    TBeat behind;
    behind.setIndex(beats.count());
    require(walk(beats, before, &TBeatStore::nextBeat) == beats.count(), "a walk meets all beats");
    require(walk(beats, behind, &TBeatStore::previousBeat) == beats.count(), "also backwards");
    require(walk(beats, before, &TBeatStore::nextValidBeat) ==
                walk(beats, behind, &TBeatStore::previousValidBeat),
            "both ways meet the same valid beats");
    for (const int index : {-1, beats.count(), intMax})
        require(!beats.beat(index, before), "no beat out of range");
}

void checkTime(const TBeatStore& beats, double t)
{
    TBeat found;
    if (beats.beatAt(t, found))
        require(found.covers(t), "the beat at a time covers it");
    if (beats.firstBeatAfter(t, found))
        require(found.windowStart() > t, "a beat after a time begins after it");
    if (beats.lastBeatBefore(t, found))
        require(found.windowStart() < t, "a beat before a time begins before it");
}

void checkTimes(const TBeatStore& beats)
{
    for (const double t : {0.0, -infinity, infinity, std::numeric_limits<double>::quiet_NaN()})
        checkTime(beats, t);
    TBeat beat;
    for (int i = 0; i < beats.count() && beats.beat(i, beat); ++i) {
        checkTime(beats, beat.windowStart());
        checkTime(beats, beat.windowStart() + beat.windowLength());
    }
}

void checkWrites(TBeatFile& beats, double shift)
{
    TBeat beat;
    TBeat again;
    const int count = beats.count();
    for (int i = 0; i < count && beats.read(i, beat); ++i) {
        require(beats.update(beat) && beats.read(i, again), "a beat can be rewritten");
        require(packed(again) == packed(beat), "a rewritten beat is the same");
    }
    beat.addTime(shift);
    require(beats.append(beat) == count && beats.count() == count + 1, "a beat can be appended");
    require(beats.read(count, again) && again.index() == count && again.windowStart() == beat.windowStart(),
            "an appended beat can be read");
    beat.setIndex(count + 1);
    require(!beats.update(beat), "no beat behind the last is rewritten");
}

} // namespace

void fuzzOne(const QByteArray& input)
{
    static TRecordings recordings;
    TFuzzReader reader(input);
    const int channels = 1 + reader.byte() % velantor::maxChannels;
    require(writeFile(recordings.beatsPath(), reader.rest()), "the scratch folder takes the file");

    const std::unique_ptr<TBeatFile> beats =
        openBeatFile(recordings.withChannels(channels), recordings.beatsPath());
    if (!beats)
        return;
    checkWalks(*beats);
    checkTimes(*beats);
    checkWrites(*beats, channels * 0.5);
    checkWalks(*beats);
}
