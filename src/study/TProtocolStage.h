#pragma once

#include <QByteArray>

#include <map>

enum class TStagePhase
{
    Rest = 0,
    Exercise = 1,
    Recovery = 2
};

/// One stage of a stress protocol: its phase, how long it lasts and the load that the equipment gets.
class TProtocolStage
{
public:
    // Keys of the load, in canonical units.
    static constexpr char speedKey[] = "speed";       ///< km/h
    static constexpr char inclineKey[] = "incline";   ///< percent
    static constexpr char workloadKey[] = "workload"; ///< watts
    static constexpr char doseKey[] = "dose";         ///< without a unit

    TProtocolStage() = default;
    TProtocolStage(TStagePhase phase, double duration) : m_phase(phase), m_duration(duration) {}

    TStagePhase phase() const { return m_phase; }
    void setPhase(TStagePhase phase) { m_phase = phase; }

    /// Seconds.
    double duration() const { return m_duration; }
    void setDuration(double duration) { m_duration = duration; }

    /// The load under `key` in `unit`, 0 if there is none. Known units are "mph" for a speed and "kgm/min"
    /// for a workload, in any case of letters; with any other unit the canonical value is returned.
    double value(const QByteArray& key, const QByteArray& unit = QByteArray()) const;
    /// The same the other way. A speed does not survive the way there and back in "mph" exactly: it is set
    /// at 1.6 and read at 1.609344 km for a mile, and both have to stay, or stored protocols would show other
    /// speeds.
    void setValue(const QByteArray& key, double value, const QByteArray& unit = QByteArray());

    bool operator==(const TProtocolStage&) const = default;

private:
    TStagePhase m_phase = TStagePhase::Rest;
    double m_duration = 0.0;
    std::map<QByteArray, double> m_values;
};
