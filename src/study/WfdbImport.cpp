#include "study/WfdbImport.h"

#include "base/Constants.h"
#include "base/Error.h"
#include "base/Text.h"
#include "study/Study.h"
#include "study/StudyCreation.h"
#include "study/StudyDatabase.h"
#include "study/StudyFiles.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"
#include "wfdb/TResampledRecord.h"

#include <QFileInfo>

#include <algorithm>

namespace {

/// The longest recordings in use; a header that tells of more is mistaken, or meant to fill the disk.
constexpr qint64 maxSeconds = 14LL * 24 * 60 * 60;

/// A new study that is taken away again unless it is finished.
class TNewStudy
{
public:
    TNewStudy(StudyDatabase& database, StudyInfo& info)
        : m_database(database), m_study(database.createStudy(info)), m_id(info.id)
    {
    }
    ~TNewStudy()
    {
        m_database.closeStudy(m_study);
        if (!m_finished)
            remove();
    }
    TNewStudy(const TNewStudy&) = delete;
    TNewStudy& operator=(const TNewStudy&) = delete;

    TEcgFile& ecg() { return *m_study->ecg(); }

    void finish()
    {
        if (!m_study->ecg()->sync() || !m_study->beats()->sync() || m_study->ecg()->writeFailed())
            throw TError("Write error");
        m_database.saveStudy(m_study);
        m_finished = true;
    }

private:
    void remove()
    {
        try {
            m_database.deleteStudy(m_id);
        } catch (const TError&) {
            // The failure that led here is the one to be told.
        }
    }

    StudyDatabase& m_database;
    Study* m_study;
    qint32 m_id;
    bool m_finished = false;
};

QByteArray recordName(const QString& path)
{
    constexpr int most = 64;
    const QString ending = QStringLiteral(".hea");
    QString text = QFileInfo(path).fileName();
    if (text.endsWith(ending))
        text.chop(ending.size());
    // It becomes part of a file name, on any system.
    QByteArray name = velantor::toText(text.left(most));
    for (char& c : name) {
        if (!isSafeBaseFilename(QByteArray(1, c)) && c != '.')
            c = '_';
    }
    return name;
}

QByteArray timeText(const QDateTime& time)
{
    return velantor::toText(time.toString(QStringLiteral("yyyyMMddHHmmss")));
}

void fillTexts(StudyInfo& info, const QString& path, const QDateTime& time)
{
    if (info.studyType.isEmpty())
        info.studyType = "ECG";
    if (info.lastName.isEmpty() && info.firstName.isEmpty())
        info.lastName = recordName(path);
    if (info.studyDateTime.isEmpty())
        info.studyDateTime = timeText(time);
    info.recordingDateTime = timeText(time);
}

void fillAcquisition(StudyInfo& info, const TResampledRecord& record)
{
    info.sampleFormat = "short";
    info.samplingRate = TResampledRecord::samplingRate;
    info.resolution = TResampledRecord::resolutionBits;
    info.gain = TResampledRecord::range;
    info.channelCount = record.channelCount();
    info.channelNames = record.channelNames().front();
    for (std::size_t i = 1; i < record.channelNames().size(); ++i)
        info.channelNames += ',' + record.channelNames()[i];
}

void copySamples(TResampledRecord& record, TEcgFile& ecg)
{
    constexpr int block = 4096;
    std::vector<std::vector<short>> samples(static_cast<std::size_t>(record.channelCount()),
                                            std::vector<short>(block));
    std::vector<short*> out(samples.size());
    std::transform(samples.begin(), samples.end(), out.begin(),
                   [](std::vector<short>& channel) { return channel.data(); });
    while (const int count = record.read(block, out.data())) {
        ecg.addPerChannel(out.data(), count);
        if (ecg.writeFailed())
            throw TError("Write error");
    }
}

} // namespace

StudyInfo importWfdb(StudyDatabase& database, const QString& recordPath, StudyInfo fields)
{
    const TWfdbRecord record(recordPath);
    TResampledRecord resampled(record);
    if (resampled.sampleCount() == 0)
        throw TError("WFDB record has no samples");
    if (resampled.sampleCount() > maxSeconds * TResampledRecord::samplingRate)
        throw TError("WFDB record is longer than 14 days");
    const QDateTime recorded = record.header().baseTime;
    fillTexts(fields, recordPath, recorded.isValid() ? recorded : QDateTime::currentDateTime());
    fillAcquisition(fields, resampled);
    findFreeName(fields, database.folder());

    TNewStudy study(database, fields);
    copySamples(resampled, study.ecg());
    study.finish();
    return fields;
}
