#pragma once

#include <vector>

class Study;
class StudyDatabase;
class TBeat;
class TEcgFile;
class TSignal;

/// Brings a running study to its files: samples and beats with each block, everything at each change of
/// stage. What cannot be written is told once; what was written stays readable.
class TStudyWriter
{
public:
    static constexpr char failureText[] = "The recording cannot be written. Is the disk full?";

    /// All are borrowed. Without a store the study's document is not written.
    TStudyWriter(Study& study, TSignal& raw);

    void setStore(StudyDatabase* store) { m_store = store; }
    /// Samples from that position on belong to the study.
    void start(int position);
    /// Appends what the raw signal has gained, and first what could not be written before; what has left the
    /// ring by then becomes zeros.
    void appendSamples();
    /// A beat in the time of the study. Returns its index in the study, -1 if it could not be written.
    int appendBeat(const TBeat& beat);
    /// Brings samples, beats and the study's document to the disk.
    void save();

    /// Whether something failed that was not told yet; asking counts as telling.
    bool takeFailure();

private:
    bool append(TEcgFile& ecg, int frames);
    void noteFailure(bool failed);

    Study& m_study;
    TSignal& m_raw;
    StudyDatabase* m_store = nullptr;
    /// Samples of the raw signal that are written.
    int m_lastSaved = 0;
    /// A row of samples per channel; kept for its memory.
    std::vector<double> m_samples;
    bool m_failed = false;
    bool m_told = false;
};
