#include "fuzz/GoodStudy.h"

#include "fuzz/ScratchFolder.h"
#include "study/Study.h"
#include "study/StudyCreation.h"
#include "study/StudyFiles.h"
#include "support/SampleStudy.h"

TGoodStudy TGoodStudy::create(const QString& folder)
{
    constexpr double seconds = 2.0;
    StudyInfo info = makeSampleInfo();
    info.id = id;
    info.baseFilename = baseFilename;
    info.channelCount = channelCount;
    info.channelNames = "II,V5";
    std::unique_ptr<Study> study = createStudyFiles(folder, info);
    appendSampleRecording(*study, seconds);
    saveStudyFile(*study, path(folder, 0));
    study.reset();

    TGoodStudy good;
    for (std::size_t i = 0; i < extensions.size(); ++i)
        good.files[i] = readFile(path(folder, i));
    return good;
}

QString TGoodStudy::path(const QString& folder, std::size_t file)
{
    return studyFilePath(folder, baseFilename, extensions[file]);
}

QByteArray TGoodStudy::file(const QByteArray& extension) const
{
    for (std::size_t i = 0; i < extensions.size(); ++i) {
        if (extension == extensions[i])
            return files[i];
    }
    return {};
}

bool TGoodStudy::standsIn(const QString& folder) const
{
    for (std::size_t i = 0; i < extensions.size(); ++i) {
        if (readFile(path(folder, i)) != files[i])
            return false;
    }
    return true;
}

bool TGoodStudy::write(const QString& folder) const
{
    bool written = true;
    for (std::size_t i = 0; i < extensions.size(); ++i)
        written = writeFile(path(folder, i), files[i]) && written;
    return written;
}
