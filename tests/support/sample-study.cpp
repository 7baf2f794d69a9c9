#include "base/Error.h"
#include "study/LocalStudyDatabase.h"
#include "study/Study.h"
#include "support/SampleStudy.h"

#include <QCoreApplication>

#include <cstdio>

// sample-study DIR [SECONDS]: makes one study in a data folder and prints its id, as the console tool would
// find it after a recording.

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) {
        std::fputs("Usage: sample-study DIR [SECONDS]\n", stderr);
        return 2;
    }
    try {
        const double seconds = arguments.size() > 2 ? arguments.at(2).toDouble() : 10.0;
        LocalStudyDatabase database(arguments.at(1));
        StudyInfo info = makeSampleInfo();
        Study* study = database.createStudy(info);
        appendSampleRecording(*study, seconds);
        fillSampleResults(*study, seconds, 72.0, 1);
        database.saveStudy(study);
        database.closeStudy(study);
        std::printf("%d\n", info.id);
        return 0;
    } catch (const TError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
