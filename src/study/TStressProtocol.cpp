#include "study/TStressProtocol.h"

#include "base/Text.h"
#include "study/JsonObjects.h"

#include <algorithm>
#include <limits>

namespace {

/// A day of stages of a few seconds; a longer list is cut there.
constexpr int maxStages = 10'000;

// In the order of the enumerations.
constexpr const char* typeWords[] = {"treadmill", "ergometer", "ecg", "tiltTest", "pharmacologic"};
constexpr const char* phaseWords[] = {"rest", "exercise", "recovery"};

template <typename Enum, std::size_t N>
Enum enumFromWord(const char* const (&words)[N], const QJsonValue& value, Enum fallback)
{
    const QString word = value.toString();
    for (std::size_t i = 0; i < N; ++i) {
        if (word == QLatin1String(words[i]))
            return static_cast<Enum>(i);
    }
    return fallback;
}

template <typename Enum, std::size_t N> QLatin1String wordOf(const char* const (&words)[N], Enum value)
{
    return QLatin1String(words[static_cast<std::size_t>(value)]);
}

std::vector<const char*> loadKeys(TProtocolType type)
{
    switch (type) {
    case TProtocolType::Treadmill:
        return {TProtocolStage::speedKey, TProtocolStage::inclineKey};
    case TProtocolType::Ergometer:
        return {TProtocolStage::workloadKey};
    case TProtocolType::Pharmacologic:
        return {TProtocolStage::doseKey};
    case TProtocolType::Ecg:
    case TProtocolType::TiltTest:
        break;
    }
    return {};
}

int wholeSeconds(double duration)
{
    if (!(duration > 0.0))
        return 0;
    return static_cast<int>(std::min(duration, static_cast<double>(std::numeric_limits<int>::max())));
}

QJsonObject stageToJson(const TProtocolStage& stage, TProtocolType type)
{
    QJsonObject object;
    object.insert(QLatin1String("phase"), wordOf(phaseWords, stage.phase()));
    object.insert(QLatin1String("duration"), wholeSeconds(stage.duration()));
    for (const char* key : loadKeys(type))
        object.insert(QLatin1String(key), stage.value(key));
    return object;
}

TProtocolStage stageFromJson(const QJsonObject& object, TProtocolType type)
{
    const int duration = std::max(0, object.value(QLatin1String("duration")).toInt());
    TProtocolStage stage(enumFromWord(phaseWords, object.value(QLatin1String("phase")), TStagePhase::Rest),
                         duration);
    for (const char* key : loadKeys(type))
        stage.setValue(key, object.value(QLatin1String(key)).toDouble());
    return stage;
}

} // namespace

TStressProtocol TStressProtocol::fromJson(const QJsonObject& object)
{
    TStressProtocol protocol(
        velantor::toText(object.value(QLatin1String("name")).toString()),
        enumFromWord(typeWords, object.value(QLatin1String("type")), TProtocolType::Treadmill));
    forEachObject(object.value(QLatin1String("stages")), maxStages, [&protocol](const QJsonObject& stage) {
        protocol.m_stages.push_back(stageFromJson(stage, protocol.m_type));
    });
    return protocol;
}

QJsonObject TStressProtocol::toJson() const
{
    QJsonArray stages;
    for (const TProtocolStage& stage : m_stages)
        stages.append(stageToJson(stage, m_type));
    return {{QLatin1String("name"), velantor::fromText(m_name)},
            {QLatin1String("type"), wordOf(typeWords, m_type)},
            {QLatin1String("stages"), stages}};
}

TProtocolStage& TStressProtocol::stage(int index)
{
    return m_stages.at(static_cast<std::size_t>(index));
}

const TProtocolStage& TStressProtocol::stage(int index) const
{
    return m_stages.at(static_cast<std::size_t>(index));
}

TProtocolStage& TStressProtocol::addStage(TStagePhase phase, double duration)
{
    return m_stages.emplace_back(phase, duration);
}

TProtocolStage& TStressProtocol::addStage(TStagePhase phase, double duration, double speed, double incline)
{
    TProtocolStage& stage = addStage(phase, duration);
    stage.setValue(TProtocolStage::speedKey, speed);
    stage.setValue(TProtocolStage::inclineKey, incline);
    return stage;
}

TProtocolStage& TStressProtocol::addStage(TStagePhase phase, double duration, double workload)
{
    TProtocolStage& stage = addStage(phase, duration);
    stage.setValue(TProtocolStage::workloadKey, workload);
    return stage;
}

TProtocolStage& TStressProtocol::insertStage(int index)
{
    return *m_stages.emplace(m_stages.begin() + std::clamp(index, 0, stageCount()));
}

void TStressProtocol::removeStage(int index)
{
    if (index >= 0 && index < stageCount())
        m_stages.erase(m_stages.begin() + index);
}

int TStressProtocol::stageAt(double seconds) const
{
    if (!(seconds >= 0.0))
        return -1;
    double end = 0.0;
    for (int i = 0; i < stageCount(); ++i) {
        end += m_stages[static_cast<std::size_t>(i)].duration();
        if (end > seconds)
            return i;
    }
    return -1;
}
