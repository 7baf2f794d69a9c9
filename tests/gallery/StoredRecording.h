#pragma once

#include "analysis/detection/TStoredAnalysis.h"
#include "analysis/filters/TOfflineFilterChain.h"
#include "display/TSignalSaturation.h"
#include "display/TStoredBeats.h"
#include "study/LocalStudyDatabase.h"

#include <QTemporaryDir>

#include <memory>
#include <vector>

class Study;

/// A study in a store of its own, recorded from the demonstration recording, closed and opened again, with
/// the filters of a review.
class StoredRecording
{
public:
    /// Throws TError if the study cannot be made.
    StoredRecording(const std::vector<short>& samples, double seconds);

    /// Filtered.
    TSignal& signal() { return *m_filters->current(); }
    TBeatSource& beatSource() { return *m_beatSource; }
    TSaturationSource& saturationSource() { return *m_saturation; }
    TAverageBeat& averageBeat() { return m_analysis->averageBeat(); }
    TAverageBeatDelineator delineate(int channel) { return m_analysis->delineate(channel); }

private:
    qint32 record(const std::vector<short>& samples, double seconds);

    QTemporaryDir m_folder;
    LocalStudyDatabase m_database;
    /// Owned by the database.
    Study* m_study = nullptr;
    std::unique_ptr<TOfflineFilterChain> m_filters;
    std::unique_ptr<TBeatListener> m_appender;
    std::unique_ptr<TStoredAnalysis> m_analysis;
    std::unique_ptr<TStoredBeats> m_beatSource;
    std::unique_ptr<TSignalSaturation> m_saturation;
};
