#pragma once

#include "study/TProtocol.h"
#include "study/TProtocolStage.h"

#include <QByteArray>
#include <QJsonObject>

#include <vector>

enum class TProtocolType
{
    Treadmill = 0,
    Ergometer = 1,
    Ecg = 2,
    TiltTest = 3,
    Pharmacologic = 4
};

/// A stress protocol: its kind and its stages in order. A plain value; a study carries its own copy.
class TStressProtocol : public TProtocol
{
public:
    TStressProtocol() = default;
    TStressProtocol(const QByteArray& name, TProtocolType type) : m_name(name), m_type(type) {}

    /// Reads what `toJson` writes. Unknown words and missing keys leave the defaults: a treadmill, a stage at
    /// rest, no load.
    static TStressProtocol fromJson(const QJsonObject& object);
    /// The form of the protocol table and of study files. Durations are cut to whole seconds; of the load
    /// only the keys of the protocol's type are written, in canonical units.
    QJsonObject toJson() const;

    /// The fixed protocol of the tilt test, which is not in the table.
    static TStressProtocol tiltTest();

    bool isRamp() const override { return false; }
    bool isStaged() const override { return true; }

    const QByteArray& name() const { return m_name; }
    void setName(const QByteArray& name) { m_name = name; }
    TProtocolType type() const { return m_type; }
    void setType(TProtocolType type) { m_type = type; }

    int stageCount() const { return static_cast<int>(m_stages.size()); }
    /// `index` must be below `stageCount()`.
    TProtocolStage& stage(int index);
    const TProtocolStage& stage(int index) const;

    TProtocolStage& addStage(TStagePhase phase, double duration);
    /// Speed in km/h, incline in percent.
    TProtocolStage& addStage(TStagePhase phase, double duration, double speed, double incline);
    /// Workload in watts.
    TProtocolStage& addStage(TStagePhase phase, double duration, double workload);
    /// Opens a default stage at `index`, shifting the rest; past the end it appends, below 0 it goes first.
    TProtocolStage& insertStage(int index);
    /// An index out of range removes nothing.
    void removeStage(int index);

    /// The stage in force `seconds` after the start; a time on a boundary belongs to the later stage. -1
    /// before the start, past the end and without stages.
    int stageAt(double seconds) const;

    bool operator==(const TStressProtocol& other) const
    {
        return m_name == other.m_name && m_type == other.m_type && m_stages == other.m_stages;
    }

private:
    QByteArray m_name;
    TProtocolType m_type = TProtocolType::Treadmill;
    std::vector<TProtocolStage> m_stages;
};
