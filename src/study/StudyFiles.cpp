#include "study/StudyFiles.h"

#include "analysis/signals/TChannel.h"
#include "base/Constants.h"
#include "base/Error.h"
#include "base/Text.h"
#include "study/JsonBounds.h"
#include "study/JsonText.h"
#include "study/Study.h"
#include "study/StudyDocument.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

#include <cmath>

namespace {

constexpr int studyMagicSize = 8;

QString siblingPath(const QString& studyPath, const char* extension)
{
    const QFileInfo file(studyPath);
    return studyFilePath(file.path(), velantor::toText(file.completeBaseName()), extension);
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
        return samplingRate > 0 && resolution >= 1 && resolution <= 32 && !channels.isEmpty() &&
               channels.size() <= velantor::maxChannels && std::isfinite(gainMax - gainMin);
    }
};

TEcgHeader readEcgHeader(const QString& path)
{
    QFile file(path);
    const QByteArray magic(velantor::ecgMagic);
    if (!file.open(QIODevice::ReadOnly) || file.read(magic.size()) != magic)
        return {};
    const QByteArray bytes = file.read(ecgHeaderSize);
    const QByteArray document = bytes.left(bytes.indexOf('\0'));
    const QJsonObject ecg = QJsonDocument::fromJson(document).object().value(QLatin1String("ecg")).toObject();
    if (ecg.value(QLatin1String("sampleFormat")).toString().isEmpty())
        return {};
    return {ecg.value(QLatin1String("samplingRate")).toInt(), ecg.value(QLatin1String("resolution")).toInt(),
            ecg.value(QLatin1String("gainMin")).toDouble(), ecg.value(QLatin1String("gainMax")).toDouble(),
            ecg.value(QLatin1String("channels")).toArray()};
}

bool hasBeatsMagic(const QString& path)
{
    QFile file(path);
    const QByteArray magic(velantor::beatsMagic);
    return file.open(QIODevice::ReadOnly) && file.read(magic.size()) == magic;
}

} // namespace

QString studyFilePath(const QString& folder, const QByteArray& baseFilename, const char* extension)
{
    // Not by arg(), which would replace a "%1" that stands in the name of a patient.
    return folder + QLatin1Char('/') + velantor::fromText(baseFilename) + QLatin1Char('.') +
           QLatin1String(extension);
}

bool readStudyDocument(const QString& path, QByteArray& document)
{
    document.clear();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray magic = file.read(studyMagicSize);
    const bool isOld = magic == velantor::studyMagicOld;
    if (!isOld && magic != velantor::studyMagic)
        return false;
    if (file.size() > TJsonCost::maxParseBytes)
        return false;
    const QByteArray rest = file.readAll();
    document = isOld ? rest : expandBoundedJson(rest);
    return !document.isEmpty();
}

QJsonObject readStudyObjects(const QString& path)
{
    QByteArray text;
    if (!readStudyDocument(path, text))
        return {};
    const QJsonObject document = parseBoundedJson(text);
    for (const char* key : {"study", "patient"}) {
        if (document.value(QLatin1String(key)).toObject().isEmpty())
            return {};
    }
    return document;
}

void saveStudyFile(Study& study, const QString& path)
{
    const QByteArray document = compactJson(QJsonDocument(makeStudyDocument(study)));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw TError("Cannot create study file");
    file.write(velantor::studyMagic, studyMagicSize);
    file.write(qCompress(document));
    // A write that failed makes the commit fail.
    if (!file.commit())
        throw TError("Write error");
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
    const TEcgHeader header = readEcgHeader(path);
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
    if (!hasBeatsMagic(path))
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
