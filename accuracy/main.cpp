#include "accuracy/Analysis.h"
#include "accuracy/Options.h"
#include "accuracy/Records.h"
#include "accuracy/Report.h"
#include "base/Error.h"
#include "study/TEcgFile.h"

#include <QCoreApplication>

#include <cstdio>

using namespace accuracy;

namespace {

void score(const TRecordPlace& record, TScratchStore& store, int block, TReport& report)
{
    TEcgFile& ecg = store.import(record);
    scoreRecord(record, analyseRecord(ecg, block), report);
    if (const std::optional<double> end = endOfMarkedWaves(record))
        scoreAverage(record, analyseAverage(ecg, *end), report);
}

void run(const TOptions& options)
{
    TScratchStore store;
    TReport report;
    for (const TRecordPlace& record : findRecords(options.recordings, options.records))
        score(record, store, options.block, report);
    std::fputs(report.toMarkdown().constData(), stdout);
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    try {
        const TOptions options =
            TOptions::parse(QCoreApplication::arguments().mid(1), QStringLiteral(VELANTOR_RECORDINGS));
        if (options.help)
            std::fputs(qPrintable(TOptions::helpText()), stdout);
        else
            run(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
