#pragma once

#include "TestFiles.h"
#include "study/Study.h"
#include "study/StudyCreation.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QTemporaryDir>

/// A record of one channel that the three files of a set can be made from.
inline StudyInfo oneChannelInfo()
{
    StudyInfo info;
    info.id = 4711;
    info.baseFilename = "set";
    info.samplingRate = 500;
    info.channelCount = 1;
    info.channelNames = "II";
    info.resolution = 16;
    info.gain = 300.0;
    return info;
}

/// The files of one study in a folder that goes with the object; closed, and free to be damaged.
class TStudySet
{
public:
    explicit TStudySet(const StudyInfo& info = oneChannelInfo())
        : m_base(QString::fromUtf8(info.baseFilename))
    {
        createStudyFiles(m_folder.path(), info);
    }

    /// `ending` with its dot.
    QString path(const char* ending) const { return m_folder.filePath(m_base + QLatin1String(ending)); }
    QString folder() const { return m_folder.path(); }
    QString study() const { return path(".vtstudy"); }
    QString ecg() const { return path(".vtecg"); }
    QString beats() const { return path(".vtbeats"); }

private:
    QTemporaryDir m_folder;
    QString m_base;
};
