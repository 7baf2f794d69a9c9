#include "base/Error.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/GoodStudy.h"
#include "fuzz/ScratchFolder.h"
#include "fuzz/StudyInput.h"
#include "study/Study.h"
#include "study/StudyDocument.h"
#include "study/StudyFiles.h"
#include "study/TEcgFile.h"

#include <QJsonDocument>

// A study file of any bytes beside good samples and beats: what can be loaded must survive a save, to the
// last digit.

namespace {

/// The study file that is fuzzed, in a folder with the files that belong to it.
class TFuzzedStudy
{
public:
    TFuzzedStudy()
    {
        TGoodStudy::create(m_folder.path());
        m_path = TGoodStudy::path(m_folder.path(), 0);
    }

    const QString& path() const { return m_path; }

private:
    TScratchFolder m_folder;
    QString m_path;
};

QByteArray documentOf(Study& study)
{
    return QJsonDocument(makeStudyDocument(study)).toJson(QJsonDocument::Compact);
}

void checkEcgHeader(Study& study)
{
    try {
        const QByteArray header = makeEcgHeader(study);
        require(header.size() < ecgHeaderSize, "the header of a samples file fits with a zero behind it");
        const QByteArray document = header.mid(header.indexOf('{'));
        require(QJsonDocument::fromJson(document).isObject(), "the header of a samples file can be parsed");
    } catch (const TError&) {
        return; // the names alone are too long
    }
}

} // namespace

void fuzzOne(const QByteArray& input)
{
    static const TFuzzedStudy fuzzed;
    require(writeFile(fuzzed.path(), studyFileFromInput(input)), "the scratch folder takes the file");

    QByteArray text;
    const bool isReadable = readStudyDocument(fuzzed.path(), text);
    std::unique_ptr<Study> study = loadStudy(fuzzed.path());
    require(isReadable || !study, "only a file with a document is loaded");
    if (!study)
        return;

    const QByteArray before = documentOf(*study);
    checkEcgHeader(*study);
    saveStudyFile(*study, fuzzed.path());
    study.reset();

    require(readStudyDocument(fuzzed.path(), text) && text == before, "a saved file holds the document");
    study = loadStudy(fuzzed.path());
    require(study != nullptr, "a saved file can be loaded");
    require(documentOf(*study) == before, "a saved study is the same after loading");
}
