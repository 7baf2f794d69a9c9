#include "analysis/signals/TChannel.h"
#include "base/Error.h"
#include "base/Text.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/JsonOutput.h"
#include "cli/StudyAccess.h"
#include "study/LocalStudyDatabase.h"
#include "study/Study.h"
#include "study/StudyArchive.h"
#include "study/StudyDocument.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QDir>
#include <QJsonArray>

#include <limits>

using velantor::fromText;

namespace {

QJsonObject describeEcg(const TEcgFile& ecg)
{
    QJsonArray channels;
    for (int i = 0; i < ecg.channelCount(); ++i)
        channels.append(fromText(ecg.channel(i)->name()));
    return {{QLatin1String("samples"), ecg.sampleCount()},
            {QLatin1String("channels"), channels},
            {QLatin1String("samplingRate"), ecg.samplingRate()},
            {QLatin1String("rangeMin"), ecg.rangeMin()},
            {QLatin1String("rangeMax"), ecg.rangeMax()},
            {QLatin1String("resolution"), ecg.resolutionBits()}};
}

void list(TCommandContext& context)
{
    for (const StudyInfo& info : context.database().listStudies())
        context.output().writeLine(listRow(info));
}

void show(TCommandContext& context)
{
    Study& study = openStudy(context);
    QJsonObject document = makeStudyDocument(study);
    for (const char* key : {"protocol", "echoScoring"}) {
        if (!document.contains(QLatin1String(key)))
            document.insert(QLatin1String(key), QJsonValue::Null);
    }
    document.insert(QLatin1String("ecg"), describeEcg(*study.ecg()));
    document.insert(QLatin1String("beats"), study.beats()->count());
    context.output().writeLine(document);
}

void samples(TCommandContext& context)
{
    constexpr int lowest = std::numeric_limits<int>::min();
    const int channel = parseNumber(context.arguments().at(1), "channel number", lowest);
    const int from = parseNumber(context.arguments().at(2), "sample position", lowest);
    const int count = parseNumber(context.arguments().at(3), "sample count", 0);
    TEcgFile& ecg = *openStudy(context).ecg();
    context.output().writeValues(count, [&](int i) {
        const qint64 index = static_cast<qint64>(from) + i;
        return index < ecg.sampleCount() ? ecg.sample(channel, static_cast<int>(index)) : 0;
    });
}

void protocols(TCommandContext& context)
{
    context.output().writeLine(context.database().protocolTableJson());
}

void importArchive(TCommandContext& context)
{
    StudyInfo info;
    context.database().importStudy(context.arguments().at(0), &info);
    context.output().writeLine(listRow(info));
}

void exportArchive(TCommandContext& context)
{
    const qint32 id = studyId(context);
    requireListed(context, id);
    context.database().exportStudy(id, QDir(context.arguments().at(1)).absolutePath());
}

void archives(TCommandContext& context)
{
    const QDir folder(context.arguments().at(0));
    if (!folder.exists())
        throw TError(QStringLiteral("Folder not found: %1").arg(context.arguments().at(0)));
    for (const StudyInfo& info : context.database().listArchives(folder.absolutePath()))
        context.output().writeLine(archiveRow(info));
}

void deleteStudy(TCommandContext& context)
{
    const qint32 id = studyId(context);
    requireListed(context, id);
    context.database().deleteStudy(id);
    if (isListed(context, id))
        throw TError("Study is open");
}

void rebuild(TCommandContext& context)
{
    // Before the store opens it: the index may be what is broken.
    LocalStudyDatabase::removeIndex(context.dataFolder());
    context.database();
}

constexpr TCommand commands[] = {
    {"list", "", "a line for each study of the index", list},
    {"show", "ID", "a study: its texts, events, results, protocol and files", show},
    {"samples", "ID CHANNEL FROM COUNT",
     "samples of a channel (numbered from 0), in counts; 0 outside the recording", samples},
    {"protocols", "", "the table of stress protocols", protocols},
    {"import", "ARCHIVE", "take the study of an archive into the data folder; prints its line",
     importArchive},
    {"export", "ID FOLDER", "write the archive of a study into a folder", exportArchive},
    {"archives", "FOLDER", "a line for each archive in a folder", archives},
    {"delete", "ID", "remove a study and its files", deleteStudy},
    {"rebuild", "", "make the index again from the study files", rebuild},
};

} // namespace

std::span<const TCommand> studyCommands()
{
    return commands;
}
