#pragma once

#include "analysis/beats/TBeat.h"

#include <QtGlobal>

#include <vector>

class Study;
class StudyDatabase;
class TEcgFile;
class TSignal;

/// Brings a running study to its files: samples and beats with each block, everything at each change of
/// stage. What cannot be written is tried again; what was written stays readable. A failure is told once
/// until everything owed is written: one of the signal, with its beats, and one of the document.
class TStudyWriter
{
public:
    static constexpr char failureText[] =
        QT_TRANSLATE_NOOP("Failure", "The recording cannot be written. Is the disk full?");

    /// All are borrowed. Without a store the study's document is not written.
    TStudyWriter(Study& study, TSignal& raw);

    void setStore(StudyDatabase* store) { m_store = store; }
    /// Samples from that position on belong to the study.
    void start(int position);
    /// Appends what the raw signal has gained, and first what could not be written before; what has left the
    /// ring by then becomes zeros.
    void appendSamples();
    /// A beat in the time of the study, behind those that could not be written before. Returns its index in
    /// the study, -1 if it could not be written yet.
    int appendBeat(const TBeat& beat);
    /// Brings samples, beats and the study's document to the disk.
    void save();
    /// Writes the document alone: for what was typed in, which comes more often than a stage.
    void saveDocument();

    /// Whether all samples and beats that were appended are in the files, and these still there.
    bool isSignalWritten() const { return !m_signalFailure.isPresent; }

    /// Whether something failed that was not told yet; asking counts as telling.
    bool takeFailure();

private:
    /// Something that cannot be written for now.
    struct TFailure
    {
        void note(bool present);
        bool take();

        bool isPresent = false;
        bool isTold = false;
    };

    bool append(TEcgFile& ecg, int frames);
    void appendOwedBeats();
    void noteSignal();

    Study& m_study;
    TSignal& m_raw;
    StudyDatabase* m_store = nullptr;
    /// Samples of the raw signal that are written.
    int m_lastSaved = 0;
    /// A row of samples per channel; kept for its memory.
    std::vector<double> m_samples;
    /// In the order of their coming.
    std::vector<TBeat> m_owedBeats;
    bool m_owesSamples = false;
    TFailure m_signalFailure;
    TFailure m_documentFailure;
};
