#include "study/LocalStudyDatabase.h"
#include "study/StudyFolders.h"
#include "study/StudyIndex.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

#include <benchmark/benchmark.h>

namespace {

void listStudies(benchmark::State& state)
{
    LocalStudyDatabase database(StudyFolders::instance().listedFolder());
    for (auto _ : state) {
        const std::vector<StudyInfo> studies = database.listStudies();
        if (studies.size() != StudyFolders::listedRows)
            state.SkipWithError("rows are missing");
    }
}
BENCHMARK(listStudies)->Unit(benchmark::kMillisecond);

QByteArray textOf(const QJsonObject& row, const char* key)
{
    return row.value(QLatin1String(key)).toString().toUtf8();
}

StudyInfo infoOfRow(const QSqlQuery& query)
{
    const QJsonObject row = QJsonDocument::fromJson(query.value(1).toString().toUtf8()).object();
    StudyInfo info;
    info.id = query.value(0).toInt();
    info.baseFilename = textOf(row, "baseFilename");
    info.status = textOf(row, "status");
    info.studyType = textOf(row, "studyType");
    info.studyDateTime = textOf(row, "studyDateTime");
    info.firstName = textOf(row, "patientFirstName");
    info.lastName = textOf(row, "patientLastName");
    info.animalSpecies = textOf(row, "patientAnimalSpecies");
    info.animalBreed = textOf(row, "patientAnimalBreed");
    return info;
}

/// Each row through Qt's JSON document, the query with its cache of rows.
void listStudiesNaive(benchmark::State& state)
{
    const QString connection = QStringLiteral("naive");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        database.setDatabaseName(StudyFolders::instance().listedFolder() +
                                 QLatin1String("/data/studies.sqlite"));
        database.open();
        for (auto _ : state) {
            QSqlQuery query(QStringLiteral("select id, data from Study"), database);
            std::vector<StudyInfo> studies;
            while (query.next())
                studies.push_back(infoOfRow(query));
            if (studies.size() != StudyFolders::listedRows)
                state.SkipWithError("rows are missing");
        }
    }
    QSqlDatabase::removeDatabase(connection);
}
BENCHMARK(listStudiesNaive)->Unit(benchmark::kMillisecond);

/// Inserts into a new index, which is thrown away.
template <typename Insert> void insertRows(benchmark::State& state, int rows, Insert insert)
{
    const QTemporaryDir folder;
    for (auto _ : state) {
        StudyIndex index(folder.filePath(QStringLiteral("studies.sqlite")));
        insert(index, rows);
    }
    state.SetItemsProcessed(state.iterations() * rows);
}

void insertInOneTransaction(benchmark::State& state)
{
    insertRows(state, 10'000, [](StudyIndex& index, int rows) {
        index.beginTransaction();
        for (int number = 0; number < rows; ++number)
            index.insert(patientOf(number));
        index.commit();
    });
}
BENCHMARK(insertInOneTransaction)->Unit(benchmark::kMillisecond);

/// Each row on the disk before the next.
void insertNaive(benchmark::State& state)
{
    insertRows(state, 200, [](StudyIndex& index, int rows) {
        for (int number = 0; number < rows; ++number)
            index.insert(patientOf(number));
    });
}
BENCHMARK(insertNaive)->Unit(benchmark::kMillisecond);

} // namespace
