#pragma once

#include <QJsonObject>
#include <QStringList>

#include <optional>

class Study;
class TBeat;
class TJsonOutput;
class TStudyRecorder;
struct StudyInfo;

/// What a device says about itself.
struct TDeviceStatus
{
    /// A smaller change of the voltage is the noise of its measurement.
    static constexpr double batteryStep = 0.05;

    QStringList electrodesOff;
    QStringList saturated;         ///< channels
    std::optional<double> battery; ///< volts, to the hundredth; none if unknown

    static TDeviceStatus of(TStudyRecorder& recorder);

    /// Whether a user should know.
    bool differsFrom(const TDeviceStatus& other) const;
};

/// Tells an examination as it happens, each line at once. A reader that has gone away is no reason to lose
/// the recording: what cannot be written is noted, not thrown.
class TExaminationOutput
{
public:
    explicit TExaminationOutput(TJsonOutput& output) : m_output(output) {}

    void started(const StudyInfo& info);
    void beat(const TBeat& beat);
    void stage(int index, double time);
    /// Only what has changed is told.
    void status(const TDeviceStatus& status);
    void warning(const char* text);
    void finished(qint32 id, int samples, int beats);

    /// Something could not be told; nothing more is, as it would stand behind a torn line.
    bool hasFailed() const { return m_failed; }
    /// Of the failures, that nobody reads any more.
    bool isReaderGone() const;

private:
    void tell(const char* event, QJsonObject object);

    TJsonOutput& m_output;
    TDeviceStatus m_status;
    bool m_failed = false;
};
