#include "base/Constants.h"
#include "study/LocalStudyDatabase.h"
#include "study/StudyArchive.h"
#include "study/StudyFiles.h"
#include "study/StudyFolders.h"

#include <QFile>

#include <benchmark/benchmark.h>

// Export and import of a recording of an hour: 50 MB of samples.

namespace {

double megabytesOfHour()
{
    const StudyInfo info = StudyFolders::instance().hourStudy();
    double bytes = 0.0;
    for (const char* extension : {velantor::studyExtension, velantor::ecgExtension, velantor::beatsExtension})
        bytes += double(
            QFile(studyFilePath(StudyFolders::instance().hourFolder(), info.baseFilename, extension)).size());
    return bytes / 1e6;
}

void exportHour(benchmark::State& state)
{
    LocalStudyDatabase database(StudyFolders::instance().hourFolder());
    const QTemporaryDir target;
    for (auto _ : state)
        database.exportStudy(StudyFolders::instance().hourStudy().id, target.path());
    state.counters["set_MB"] = megabytesOfHour();
}
BENCHMARK(exportHour)->Unit(benchmark::kMillisecond);

/// Each file compressed whole, in memory.
void exportHourNaive(benchmark::State& state)
{
    const StudyInfo info = StudyFolders::instance().hourStudy();
    const QTemporaryDir target;
    for (auto _ : state) {
        for (const char* extension :
             {velantor::studyExtension, velantor::ecgExtension, velantor::beatsExtension}) {
            QFile source(studyFilePath(StudyFolders::instance().hourFolder(), info.baseFilename, extension));
            QFile copy(target.filePath(QLatin1String(extension)));
            if (!source.open(QIODevice::ReadOnly) || !copy.open(QIODevice::WriteOnly))
                state.SkipWithError("no file");
            copy.write(qCompress(source.readAll()));
        }
    }
}
BENCHMARK(exportHourNaive)->Unit(benchmark::kMillisecond);

void importHour(benchmark::State& state)
{
    const StudyInfo info = StudyFolders::instance().hourStudy();
    const QTemporaryDir source;
    writeArchive(StudyFolders::instance().hourFolder(), info, source.path());
    const QTemporaryDir folder;
    LocalStudyDatabase database(folder.path());
    for (auto _ : state)
        database.importStudy(archivePath(source.path(), info.baseFilename));
}
BENCHMARK(importHour)->Unit(benchmark::kMillisecond);

} // namespace
