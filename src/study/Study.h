#pragma once

#include "study/StudyInfo.h"
#include "study/TEchoScoring.h"
#include "study/TStressProtocol.h"
#include "study/TStudyEvents.h"
#include "study/TStudyResults.h"

#include <map>
#include <memory>

class TBeatFile;
class TEcgFile;

/// The open study: its samples, beats, results, events and texts. The study database owns every one; windows
/// borrow them. Main thread only. It reports no failure itself: an absent text is empty.
class Study
{
public:
    explicit Study(qint32 id);
    /// Closes the beats file before the samples file that it belongs to.
    ~Study();
    Study(const Study&) = delete;
    Study& operator=(const Study&) = delete;

    qint32 id() const { return m_id; }
    void setId(qint32 id) { m_id = id; }

    /// The text under a key such as "patient/firstName". An absent key is made, with an empty text.
    const QByteArray& value(const QByteArray& key) { return m_values[key]; }
    void setValue(const QByteArray& key, const QByteArray& value) { m_values[key] = value; }

    std::vector<QByteArray> riskFactorNames() const;
    /// The status of a risk factor; false, with an empty comment, for an unknown one.
    bool riskFactor(const QByteArray& name, QByteArray* comment = nullptr) const;
    void setRiskFactor(const QByteArray& name, bool status, const QByteArray& comment);
    void clearRiskFactors() { m_riskFactors.clear(); }

    /// Null until files are attached.
    TEcgFile* ecg() const { return m_ecg.get(); }
    TBeatFile* beats() const { return m_beats.get(); }
    void setFiles(std::unique_ptr<TEcgFile> ecg, std::unique_ptr<TBeatFile> beats);

    TStudyResults& results() { return m_results; }
    TStudyEvents& events() { return m_events; }

    /// Null for a study without echo scoring.
    TEchoScoring* echoScoring() const { return m_echoScoring.get(); }
    void setEchoScoring(std::unique_ptr<TEchoScoring> scoring) { m_echoScoring = std::move(scoring); }

    /// "yyyyMMddHHmmss".
    const QByteArray& studyDateTime() const { return m_studyDateTime; }
    void setStudyDateTime(const QByteArray& text) { m_studyDateTime = text; }
    const QByteArray& recordingDateTime() const { return m_recordingDateTime; }
    void setRecordingDateTime(const QByteArray& text) { m_recordingDateTime = text; }

    /// The copy of the protocol in force when the study was made; null for a study without one.
    TStressProtocol* protocol() const { return m_protocol.get(); }
    void setProtocol(std::unique_ptr<TStressProtocol> protocol) { m_protocol = std::move(protocol); }

private:
    struct TRiskFactorState
    {
        bool status = false;
        QByteArray comment;
    };

    qint32 m_id;
    std::map<QByteArray, QByteArray> m_values;
    std::map<QByteArray, TRiskFactorState> m_riskFactors;
    std::unique_ptr<TEcgFile> m_ecg;
    std::unique_ptr<TBeatFile> m_beats;
    TStudyResults m_results;
    TStudyEvents m_events;
    std::unique_ptr<TEchoScoring> m_echoScoring;
    QByteArray m_studyDateTime = "00000000000000";
    QByteArray m_recordingDateTime = "00000000000000";
    std::unique_ptr<TStressProtocol> m_protocol;
};

/// Copies a study's texts, times and risk factors into the flat record. How the samples are taken is not
/// among them and stays as it is in `info`.
void infoFromStudy(StudyInfo& info, Study& study);
/// The same the other way. A record that has no id yet leaves the study its own.
void studyFromInfo(Study& study, const StudyInfo& info);
