#include "support/SampleStudy.h"

#include "analysis/beats/TBeat.h"
#include "study/Study.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"
#include "study/TProtocolTable.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace {

constexpr double beatSeconds = 60.0 / 72.0;
constexpr double rSeconds = 0.3; ///< from the start of a beat to its R

struct TWave
{
    double time;  ///< seconds after the R
    double width; ///< seconds
    double millivolts;
};

constexpr TWave waves[] = {{-0.17, 0.020, 0.12},
                           {-0.025, 0.008, -0.08},
                           {0.0, 0.010, 1.1},
                           {0.027, 0.009, -0.22},
                           {0.27, 0.045, 0.28}};

double leadFactor(int channel)
{
    constexpr double factors[] = {0.6, 1.0, 0.4, -0.8, 0.1, 0.7, -0.4, 0.2, 0.7, 1.1, 1.0, 0.8, 1.0, 1.0};
    return factors[channel % 14];
}

double millivoltsAt(double seconds)
{
    const double sinceR = std::fmod(seconds, beatSeconds) - rSeconds;
    double sum = 0.0;
    for (const TWave& wave : waves) {
        const double distance = (sinceR - wave.time) / wave.width;
        sum += wave.millivolts * std::exp(-0.5 * distance * distance);
    }
    return sum;
}

void appendSamples(TEcgFile& ecg, int count)
{
    constexpr int chunk = 4096;
    for (int done = 0; done < count; done += chunk) {
        const int frames = std::min(chunk, count - done);
        std::vector<std::vector<double>> columns(static_cast<std::size_t>(ecg.channelCount()));
        std::vector<const double*> pointers;
        for (int channel = 0; channel < ecg.channelCount(); ++channel) {
            std::vector<double>& column = columns[static_cast<std::size_t>(channel)];
            for (int i = 0; i < frames; ++i)
                column.push_back(millivoltsAt(ecg.timeOf(done + i)) * leadFactor(channel) / ecg.countValue());
            pointers.push_back(column.data());
        }
        ecg.addPerChannelDouble(pointers.data(), frames);
    }
}

TBeat makeBeat(const TEcgFile& ecg, int number)
{
    TBeat beat(&ecg);
    const double start = number * beatSeconds;
    beat.setWindow(start, beatSeconds);
    beat.setValue(0, start + rSeconds);
    beat.setValue(1, number == 0 ? 0.0 : beatSeconds);
    beat.setValue(2, beatSeconds);
    beat.setNumber(number);
    for (int channel = 0; channel < ecg.channelCount(); ++channel) {
        const double fiducials[] = {1.0, start + 0.13, start + 0.26, start + 0.3, start + 0.35, start + 0.57,
                                    1.0, 1.0,          1.0,          0.09,        0.17,         0.37};
        for (int slot = 0; slot < 12; ++slot)
            beat.setFiducial(channel, slot, fiducials[slot]);
    }
    return beat;
}

void fillTrends(TStudyResults& results, double seconds, double beatsPerMinute, std::mt19937& random)
{
    std::uniform_real_distribution<double> level(-0.3, 0.3);
    for (const auto& [name, item] : results.items()) {
        TResultTrend* trend = results.trend(name);
        if (trend == nullptr)
            continue;
        for (double t = 0.4; t < seconds; t += 60.0 / beatsPerMinute)
            trend->add(t, name == "BPMTrend" ? beatsPerMinute + level(random) : level(random));
    }
}

void fillStages(TStudyResults& results, int stages, std::mt19937& random)
{
    std::uniform_real_distribution<double> level(-0.3, 0.3);
    for (const auto& [name, item] : results.items()) {
        if (TResultList* list = results.list(name)) {
            for (int stage = 0; stage < stages; ++stage)
                list->setValue(stage, level(random));
        } else if (TResultValue* value = results.value(name)) {
            value->setValue(level(random));
        }
    }
}

} // namespace

StudyInfo makeSampleInfo()
{
    StudyInfo info;
    info.studyType = "Stress test";
    info.studyDateTime = "20240105093012";
    info.recordingDateTime = "20240105093101";
    info.institutionName = "Hospital Central";
    info.technicianName = "Luz Vega";
    info.doctorName = "Dr. Iván Solís";
    info.protocolName = "Bruce";
    info.samplingRate = 500;
    info.channelCount = 14;
    info.channelNames = "I,II,III,aVR,aVL,aVF,V1,V2,V3,V4,V5,V6,CM5,CR5";
    info.resolution = 16;
    info.gain = 300.0;
    info.medicalHistoryNumber = "12";
    info.lastName = "Perez";
    info.firstName = "Ana";
    info.sex = "F";
    info.birthDate = "19691224";
    info.age = "54";
    info.weight = "71.5";
    info.height = "168";
    info.trainingZoneMax = "166";
    info.trainingZoneSubMax = "141";
    info.riskFactors = {{"Diabetes", true, "desde 2010"}, {"Tabaquismo actual", false, ""}};
    return info;
}

void appendSampleRecording(Study& study, double seconds)
{
    TEcgFile& ecg = *study.ecg();
    appendSamples(ecg, ecg.indexOf(seconds));
    for (int number = 0; (number + 1) * beatSeconds <= seconds; ++number)
        study.beats()->append(makeBeat(ecg, number));
}

void fillSampleResults(Study& study, double seconds, double beatsPerMinute, unsigned seed)
{
    std::mt19937 random(seed);
    fillTrends(study.results(), seconds, beatsPerMinute, random);
    fillStages(study.results(), 11, random);
    for (int i = 0; i < 5; ++i) {
        TStudyEvent& event = study.events().add();
        event.position = seconds * i / 5.0;
        event.duration = 10.0;
        event.setDescription("Dolor precordial " + QByteArray::number(i));
        event.print = i % 2 == 0;
    }
    study.setProtocol(std::make_unique<TStressProtocol>(*TProtocolTable::builtIn().find("Bruce")));
    auto scoring = std::make_unique<TEchoScoring>();
    for (int segment = 1; segment <= TEchoScoring::segmentCount; ++segment)
        scoring->setScore(TEchoScoring::storedName(segment), TEchoTime::Peak,
                          static_cast<qint32>(random() % 5));
    study.setEchoScoring(std::move(scoring));
}
