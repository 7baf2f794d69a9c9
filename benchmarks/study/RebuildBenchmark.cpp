#include "base/Constants.h"
#include "study/LocalStudyDatabase.h"
#include "study/StudyDocument.h"
#include "study/StudyFiles.h"
#include "study/StudyFolders.h"
#include "study/StudyIndex.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <benchmark/benchmark.h>

namespace {

void rebuild(benchmark::State& state, const QString& folder, int files)
{
    LocalStudyDatabase database(folder);
    for (auto _ : state)
        database.rebuildIndex();
    state.SetItemsProcessed(state.iterations() * files);
}

StudyInfo infoOfWholeDocument(const QString& path)
{
    QByteArray text;
    readStudyDocument(path, text);
    StudyInfo info;
    readStudyInfo(info, QJsonDocument::fromJson(text).object());
    return info;
}

/// Every document parsed whole.
void rebuildWhole(benchmark::State& state, const QString& folder, int files)
{
    const QTemporaryDir target;
    for (auto _ : state) {
        StudyIndex index(target.filePath(QStringLiteral("studies.sqlite")));
        index.beginTransaction();
        for (const QFileInfo& file : QDir(folder).entryInfoList({QStringLiteral("*.vtstudy")})) {
            const StudyInfo info = infoOfWholeDocument(file.filePath());
            if (!index.find(info.id))
                index.insert(info);
        }
        index.commit();
    }
    state.SetItemsProcessed(state.iterations() * files);
}

void rebuildResting(benchmark::State& state)
{
    rebuild(state, StudyFolders::instance().restingFolder(), StudyFolders::restingStudies);
}
BENCHMARK(rebuildResting)->Unit(benchmark::kMillisecond);

void rebuildRestingNaive(benchmark::State& state)
{
    rebuildWhole(state, StudyFolders::instance().restingFolder(), StudyFolders::restingStudies);
}
BENCHMARK(rebuildRestingNaive)->Unit(benchmark::kMillisecond);

void rebuildHours(benchmark::State& state)
{
    rebuild(state, StudyFolders::instance().longFolder(), StudyFolders::longStudies);
}
BENCHMARK(rebuildHours)->Unit(benchmark::kMillisecond);

void rebuildHoursNaive(benchmark::State& state)
{
    rebuildWhole(state, StudyFolders::instance().longFolder(), StudyFolders::longStudies);
}
BENCHMARK(rebuildHoursNaive)->Unit(benchmark::kMillisecond);

} // namespace
