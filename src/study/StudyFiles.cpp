#include "study/StudyFiles.h"

#include "analysis/signals/TChannel.h"
#include "base/Constants.h"
#include "base/Error.h"
#include "base/Text.h"
#include "study/JsonBounds.h"
#include "study/StagedFile.h"
#include "study/Study.h"
#include "study/StudyDocument.h"
#include "study/StudyInfo.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"
#include "study/TJsonHead.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>

namespace {

QString siblingPath(const QString& studyPath, const char* extension)
{
    const QFileInfo file(studyPath);
    return studyFilePath(file.path(), velantor::toText(file.completeBaseName()), extension);
}

/// What stands behind the mark of a study file; nothing if the file is none of ours.
struct TStudyBytes
{
    QByteArray bytes;
    bool isCompressed = false;
};

/// Opening a pipe would wait for its other end.
bool openForReading(QFile& file)
{
    return QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly);
}

TStudyBytes readStudyBytes(const QString& path)
{
    QFile file(path);
    if (!openForReading(file))
        return {};
    const QByteArray head = file.read(studyHeadSize);
    if (!isStudyHead(head) || file.size() > TJsonCost::maxParseBytes)
        return {};
    return {file.readAll(), head != velantor::studyMagicOld};
}

/// The document, if it has what every study has.
QJsonObject ifComplete(const QJsonObject& document)
{
    for (const char* key : {"study", "patient"}) {
        if (document.value(QLatin1String(key)).toObject().isEmpty())
            return {};
    }
    return document;
}

/// What the head of a samples file says, once it is known to be sound.
struct TEcgHeader
{
    int samplingRate = 0;
    int resolution = 0;
    double gainMin = 0.0;
    double gainMax = 0.0;
    QJsonArray channels;

    bool isSound() const
    {
        // The width of the range: two finite ends can lie so far apart that a sample is worth no number.
        return samplingRate > 0 && samplingRate <= TSignal::maxSamplingRate && resolution >= 1 &&
               resolution <= 32 && !channels.isEmpty() && channels.size() <= velantor::maxChannels &&
               std::isfinite(gainMax - gainMin);
    }
};

/// The document that the first bytes of a samples file hold.
QJsonObject ecgHeaderDocument(const QByteArray& head)
{
    const QByteArray magic(velantor::ecgMagic);
    if (!head.startsWith(magic))
        return {};
    const QByteArray bytes = head.mid(magic.size());
    const int end = bytes.indexOf('\0');
    return QJsonDocument::fromJson(end < 0 ? bytes : bytes.left(end)).object();
}

qint32 idOfStudy(const QJsonObject& document)
{
    const qint32 id = document.value(QLatin1String("study")).toObject().value(QLatin1String("id")).toInt();
    return isStudyId(id) ? id : 0;
}

TEcgHeader parseEcgHeader(const QByteArray& head)
{
    const QJsonObject ecg = ecgHeaderDocument(head).value(QLatin1String("ecg")).toObject();
    if (ecg.value(QLatin1String("sampleFormat")).toString().isEmpty())
        return {};
    return {ecg.value(QLatin1String("samplingRate")).toInt(), ecg.value(QLatin1String("resolution")).toInt(),
            ecg.value(QLatin1String("gainMin")).toDouble(), ecg.value(QLatin1String("gainMax")).toDouble(),
            ecg.value(QLatin1String("channels")).toArray()};
}

QByteArray readHead(const QString& path, int size)
{
    QFile file(path);
    return openForReading(file) ? file.read(size) : QByteArray();
}

} // namespace

bool isStudyHead(const QByteArray& head)
{
    return head.startsWith(velantor::studyMagic) || head.startsWith(velantor::studyMagicOld);
}

bool isEcgHead(const QByteArray& head)
{
    return parseEcgHeader(head).isSound();
}

bool isBeatsHead(const QByteArray& head)
{
    return head.startsWith(velantor::beatsMagic);
}

QString studyFilePath(const QString& folder, const QByteArray& baseFilename, const char* extension)
{
    // Not by arg(), which would replace a "%1" that stands in the name of a patient.
    return folder + QLatin1Char('/') + velantor::fromText(baseFilename) + QLatin1Char('.') +
           QLatin1String(extension);
}

bool readStudyDocument(const QString& path, QByteArray& document)
{
    const TStudyBytes file = readStudyBytes(path);
    document = file.isCompressed ? expandBoundedJson(file.bytes) : file.bytes;
    return !document.isEmpty();
}

QJsonObject readStudyObjects(const QString& path)
{
    QByteArray text;
    if (!readStudyDocument(path, text))
        return {};
    return ifComplete(parseBoundedJson(text));
}

QJsonObject readStudyHead(const QString& path)
{
    const TStudyBytes file = readStudyBytes(path);
    TJsonHead head;
    const auto take = [&head](const char* data, qint64 size) { head.add(data, size); };
    if (!file.isCompressed)
        take(file.bytes.constData(), file.bytes.size());
    else if (!expandBoundedJson(file.bytes, take))
        return {};
    return ifComplete(head.parse());
}

qint32 readStudyId(const QString& path)
{
    return idOfStudy(readStudyHead(path));
}

qint32 readEcgStudyId(const QString& path)
{
    return idOfStudy(ecgHeaderDocument(readHead(path, ecgHeadSize)));
}

void saveStudyFile(Study& study, const QString& path)
{
    switch (writeStaged(path, {velantor::studyMagic, qCompress(makeStudyText(study))})) {
    case TStagedWrite::CannotOpen:
        throw TError("Cannot create study file");
    case TStagedWrite::Failed:
        throw TError("Write error");
    case TStagedWrite::Done:
        break;
    }
}

std::unique_ptr<Study> loadStudy(const QString& path)
{
    const QJsonObject document = readStudyObjects(path);
    if (document.isEmpty())
        return nullptr;
    std::unique_ptr<TEcgFile> ecg = openEcgFile(siblingPath(path, velantor::ecgExtension));
    if (!ecg)
        return nullptr;
    std::unique_ptr<TBeatFile> beats = openBeatFile(*ecg, siblingPath(path, velantor::beatsExtension));
    if (!beats)
        return nullptr;
    auto study = std::make_unique<Study>(0);
    fillStudy(*study, document);
    study->setFiles(std::move(ecg), std::move(beats));
    return study;
}

std::unique_ptr<TEcgFile> openEcgFile(const QString& path)
{
    const TEcgHeader header = parseEcgHeader(readHead(path, ecgHeadSize));
    if (!header.isSound())
        return nullptr;
    try {
        auto ecg = std::make_unique<TEcgFile>(path, header.channels.size(), header.samplingRate,
                                              ecgHeaderSize, false);
        ecg->setResolutionBits(header.resolution);
        ecg->setRange(header.gainMin, header.gainMax);
        for (int i = 0; i < ecg->channelCount(); ++i)
            ecg->channel(i)->setName(velantor::toText(header.channels.at(i).toString()));
        return ecg;
    } catch (const TError&) {
        return nullptr;
    }
}

std::unique_ptr<TBeatFile> openBeatFile(TEcgFile& ecg, const QString& path)
{
    if (!isBeatsHead(readHead(path, beatsHeadSize)))
        return nullptr;
    try {
        return std::make_unique<TBeatFile>(ecg, path, beatsHeaderSize, false);
    } catch (const TError&) {
        return nullptr;
    }
}

QByteArray makeEcgHeader(Study& study)
{
    const QByteArray magic(velantor::ecgMagic);
    // One zero byte has to follow: readers find the end of the document by it.
    const QByteArray document = makeEcgHeaderDocument(study, ecgHeaderSize - magic.size() - 1);
    if (document.isEmpty())
        throw TError("Cannot create file");
    return magic + document;
}

QByteArray makeBeatHeader()
{
    return velantor::beatsMagic;
}
