#include "base/Constants.h"
#include "study/JsonBounds.h"
#include "study/Study.h"
#include "study/StudyDocument.h"
#include "study/StudyFiles.h"
#include "study/StudyFolders.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <benchmark/benchmark.h>

// The study file of a stress test of an hour, a megabyte-sized document that is nearly all trends.

namespace {

QByteArray hourDocument()
{
    QByteArray text;
    readStudyDocument(StudyFolders::instance().hourStudyPath(), text);
    return text;
}

QByteArray hourFileBody()
{
    QFile file(StudyFolders::instance().hourStudyPath());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll().mid(int(sizeof velantor::studyMagic) - 1);
}

void saveHour(benchmark::State& state)
{
    const std::unique_ptr<Study> study = loadStudy(StudyFolders::instance().hourStudyPath());
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("hour.vtstudy"));
    for (auto _ : state)
        saveStudyFile(*study, path);
    state.counters["file_MB"] = double(QFileInfo(path).size()) / 1e6;
    state.counters["document_MB"] = double(hourDocument().size()) / 1e6;
}
BENCHMARK(saveHour)->Unit(benchmark::kMillisecond);

/// Indented text and the best compression.
void saveHourNaive(benchmark::State& state)
{
    const std::unique_ptr<Study> study = loadStudy(StudyFolders::instance().hourStudyPath());
    const QTemporaryDir folder;
    for (auto _ : state) {
        QFile file(folder.filePath(QStringLiteral("hour.vtstudy")));
        if (!file.open(QIODevice::WriteOnly))
            state.SkipWithError("no file");
        file.write(velantor::studyMagic);
        file.write(qCompress(QJsonDocument(makeStudyDocument(*study)).toJson(), 9));
    }
}
BENCHMARK(saveHourNaive)->Unit(benchmark::kMillisecond);

/// The share of the compression, which the format fixes.
void compressHourDocument(benchmark::State& state)
{
    const QByteArray document = hourDocument();
    for (auto _ : state)
        benchmark::DoNotOptimize(qCompress(document));
}
BENCHMARK(compressHourDocument)->Unit(benchmark::kMillisecond);

void loadHour(benchmark::State& state)
{
    const QString path = StudyFolders::instance().hourStudyPath();
    for (auto _ : state) {
        if (!loadStudy(path))
            state.SkipWithError("no study");
    }
}
BENCHMARK(loadHour)->Unit(benchmark::kMillisecond);

/// Qt alone, with no guard against a poisoned file.
void loadHourUnguarded(benchmark::State& state)
{
    for (auto _ : state) {
        Study study(0);
        fillStudy(study, QJsonDocument::fromJson(qUncompress(hourFileBody())).object());
        benchmark::DoNotOptimize(study.id());
    }
}
BENCHMARK(loadHourUnguarded)->Unit(benchmark::kMillisecond);

void expandHour(benchmark::State& state)
{
    const QByteArray body = hourFileBody();
    for (auto _ : state)
        benchmark::DoNotOptimize(expandBoundedJson(body));
}
BENCHMARK(expandHour)->Unit(benchmark::kMillisecond);

void expandHourUnguarded(benchmark::State& state)
{
    const QByteArray body = hourFileBody();
    for (auto _ : state)
        benchmark::DoNotOptimize(qUncompress(body));
}
BENCHMARK(expandHourUnguarded)->Unit(benchmark::kMillisecond);

/// What a rebuild reads of a study file.
void readHourHead(benchmark::State& state)
{
    const QString path = StudyFolders::instance().hourStudyPath();
    for (auto _ : state)
        benchmark::DoNotOptimize(readStudyHead(path));
}
BENCHMARK(readHourHead)->Unit(benchmark::kMillisecond);

void readHourWhole(benchmark::State& state)
{
    const QString path = StudyFolders::instance().hourStudyPath();
    for (auto _ : state)
        benchmark::DoNotOptimize(readStudyObjects(path));
}
BENCHMARK(readHourWhole)->Unit(benchmark::kMillisecond);

} // namespace
