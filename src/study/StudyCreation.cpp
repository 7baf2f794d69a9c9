#include "study/StudyCreation.h"

#include "analysis/signals/TChannel.h"
#include "base/Constants.h"
#include "base/Error.h"
#include "base/Text.h"
#include "study/Study.h"
#include "study/StudyFiles.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QDateTime>
#include <QFile>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// The paths of a set that takes away again what was made of it unless it is kept.
class TNewSet
{
public:
    TNewSet(const QString& folder, const QByteArray& baseFilename)
        : study(studyFilePath(folder, baseFilename, velantor::studyExtension)),
          ecg(studyFilePath(folder, baseFilename, velantor::ecgExtension)),
          beats(studyFilePath(folder, baseFilename, velantor::beatsExtension))
    {
        const std::array paths{study, ecg, beats};
        if (std::any_of(paths.begin(), paths.end(), [](const QString& path) { return QFile::exists(path); }))
            throw TError("Cannot create file");
    }
    ~TNewSet()
    {
        if (m_kept)
            return;
        for (const QString& path : m_made)
            QFile::remove(path);
    }
    TNewSet(const TNewSet&) = delete;
    TNewSet& operator=(const TNewSet&) = delete;

    /// Someone else may make a file of the set at the same time: only what is told here is ours to remove.
    void addMade(const QString& path) { m_made << path; }
    void keep() { m_kept = true; }

    const QString study;
    const QString ecg;
    const QString beats;

private:
    QStringList m_made;
    bool m_kept = false;
};

/// Whether a samples file of this acquisition could be opened again.
bool isReadableAcquisition(const StudyInfo& info)
{
    return info.samplingRate > 0 && info.resolution >= 1 && info.resolution <= 32 &&
           std::isfinite(2.0 * info.gain);
}

std::unique_ptr<TEcgFile> createEcgFile(const QString& path, const StudyInfo& info)
{
    auto ecg = std::make_unique<TEcgFile>(path, info.channelCount, info.samplingRate, ecgHeaderSize, true);
    ecg->setRange(-info.gain, info.gain);
    ecg->setResolutionBits(info.resolution);
    const QList<QByteArray> names = info.channelNames.split(',');
    for (int i = 0; i < std::min(names.size(), ecg->channelCount()); ++i)
        ecg->channel(i)->setName(names.at(i));
    return ecg;
}

bool isTaken(const QString& folder, const QByteArray& baseFilename)
{
    const std::array extensions{velantor::studyExtension, velantor::ecgExtension, velantor::beatsExtension};
    return std::any_of(extensions.begin(), extensions.end(), [&](const char* extension) {
        return QFile::exists(studyFilePath(folder, baseFilename, extension));
    });
}

} // namespace

void findFreeName(StudyInfo& info, const QString& folder)
{
    constexpr int mostSeconds = 24 * 60 * 60;
    const QString form = QStringLiteral("yyyyMMddHHmmss");
    const QDateTime time = QDateTime::fromString(velantor::fromText(info.studyDateTime), form);
    for (int i = 1; time.isValid() && i <= mostSeconds && isTaken(folder, makeBaseFilename(info)); ++i)
        info.studyDateTime = velantor::toText(time.addSecs(i).toString(form));
}

std::unique_ptr<Study> createStudyFiles(const QString& folder, const StudyInfo& info)
{
    if (!isSafeBaseFilename(info.baseFilename) || !isReadableAcquisition(info))
        throw TError("Cannot create file");
    TNewSet set(folder, info.baseFilename);
    auto study = std::make_unique<Study>(info.id);
    auto ecg = createEcgFile(set.ecg, info);
    set.addMade(set.ecg);
    auto beats = std::make_unique<TBeatFile>(*ecg, set.beats, beatsHeaderSize, true);
    set.addMade(set.beats);
    study->setFiles(std::move(ecg), std::move(beats));
    studyFromInfo(*study, info);

    study->ecg()->writeHeader(makeEcgHeader(*study));
    study->beats()->writeHeader(makeBeatHeader());
    if (study->ecg()->writeFailed() || study->beats()->writeFailed())
        throw TError("Cannot create file");
    saveStudyFile(*study, set.study);
    set.addMade(set.study);
    // Replacing a file takes a longer name beside it than making one. A study that could never be saved again
    // must show that now and not after the examination.
    saveStudyFile(*study, set.study);
    set.keep();
    return study;
}
