#include "base/Error.h"
#include "fuzz/ArchiveInput.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/GoodStudy.h"
#include "fuzz/ScratchFolder.h"
#include "study/LocalStudyDatabase.h"
#include "study/QZipFileExtractor.h"
#include "study/Study.h"
#include "study/StudyFiles.h"
#include "study/TEcgFile.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>

#include <optional>

// An archive of any bytes, taken into a store with a good study: nothing but the files of the imported set
// appears, and the good study gives way only to a sound study of its own id.

namespace {

QStringList entriesOf(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot,
                                  QDir::Name);
}

/// The scratch folder with the store and a folder of archives; it lives through all runs.
class TStore
{
public:
    TStore()
    {
        QDir().mkpath(storePath());
        QDir().mkpath(archivesPath());
        m_good = TGoodStudy::create(storePath());
        m_database = std::make_unique<LocalStudyDatabase>(storePath());
        writeFile(archivePath(), {});
        m_outside = outside();
        m_inside = entriesOf(storePath());
    }

    QString storePath() const { return m_folder.path("store"); }
    QString archivesPath() const { return m_folder.path("archives"); }
    QString archivePath() const { return archivesPath() + QLatin1String("/fuzzed.vtz"); }
    LocalStudyDatabase& database() { return *m_database; }
    const TGoodStudy& good() const { return m_good; }

    /// What no import may change: everything beside the files of the studies.
    QStringList outside() const
    {
        return entriesOf(m_folder.path()) + entriesOf(archivesPath()) + entriesOf(dataPath());
    }
    const QStringList& outsideAtStart() const { return m_outside; }

    /// Names of the files that have come since the store was made.
    QStringList newFiles() const
    {
        QStringList names;
        for (const QString& name : entriesOf(storePath())) {
            if (!m_inside.contains(name))
                names.append(name);
        }
        return names;
    }

    /// Makes the store what it was.
    void restore(const std::optional<StudyInfo>& imported)
    {
        for (const QString& name : newFiles())
            require(QFile::remove(storePath() + QLatin1Char('/') + name), "only plain files have come");
        if (!imported)
            return;
        if (imported->id != TGoodStudy::id) {
            m_database->deleteStudy(imported->id);
            return;
        }
        require(m_good.write(storePath()), "the good study can be put back");
        m_database->rebuildIndex();
    }

private:
    QString dataPath() const { return storePath() + QLatin1String("/data"); }

    static inline int s_argumentCount = 1;
    static inline char s_name[] = "fuzz_archive";
    static inline char* s_arguments[] = {s_name, nullptr};

    /// The database drivers are found through it.
    QCoreApplication m_application{s_argumentCount, s_arguments};
    TScratchFolder m_folder;
    TGoodStudy m_good;
    std::unique_ptr<LocalStudyDatabase> m_database;
    QStringList m_outside;
    QStringList m_inside;
};

void checkExtractor(const QString& path)
{
    constexpr qint64 maxSize = 1024 * 1024;
    try {
        QZipFileExtractor archive(path);
        for (const char* name : {"info", "vtstudy", "vtecg", "vtbeats", "other", ""}) {
            const qint64 size = archive.uncompressedSize(QLatin1String(name));
            QBuffer content;
            const bool isThere = archive.extract(QLatin1String(name), content, maxSize);
            require(isThere == (size >= 0), "a member with a size is there");
            require(!isThere || content.size() == size, "a member has its size");
        }
    } catch (const TError&) {
        return;
    }
}

/// Whether the archive is one of ours; it then is in the list of its folder.
bool checkInfo(TStore& store)
{
    StudyInfo info;
    bool isOurs = false;
    try {
        isOurs = store.database().readArchiveInfo(store.archivePath(), info);
    } catch (const TError&) {
        isOurs = false;
    }
    const std::vector<StudyInfo> listed = store.database().listArchives(store.archivesPath());
    require(listed.size() == (isOurs ? 1U : 0U), "the list has the archives that can be read");
    require(!isOurs || listed.front() == info, "the list tells what the archive tells");
    return isOurs;
}

std::optional<StudyInfo> importArchive(TStore& store)
{
    try {
        StudyInfo info;
        store.database().importStudy(store.archivePath(), &info);
        return info;
    } catch (const TError&) {
        return std::nullopt;
    }
}

void checkOpens(TStore& store, qint32 id)
{
    Study* study = store.database().openStudy(id);
    require(study != nullptr && study->id() == id, "an imported study opens");
    store.database().closeStudy(study);
}

void checkGoodStudy(const TStore& store)
{
    const std::unique_ptr<Study> study = loadStudy(TGoodStudy::path(store.storePath(), 0));
    require(study && study->id() == TGoodStudy::id, "the good study loads");
    require(study->ecg()->channelCount() == TGoodStudy::channelCount && study->ecg()->sampleCount() == 1000,
            "the good study has its samples");
}

void checkImported(TStore& store, const StudyInfo& info)
{
    const QStringList come = store.newFiles();
    if (info.baseFilename == TGoodStudy::baseFilename) {
        require(info.id == TGoodStudy::id, "only the same study takes the place of one");
        require(come.isEmpty(), "it brings no further files");
    } else {
        require(come.size() == 3, "an import brings three files");
        for (const char* extension : TGoodStudy::extensions)
            require(come.contains(studyFilePath(QString(), info.baseFilename, extension).mid(1)),
                    "they bear the name of the set");
    }
    checkOpens(store, info.id);
}

} // namespace

void fuzzOne(const QByteArray& input)
{
    static TStore store;
    writeArchiveFromInput(input, store.good(), store.archivePath());

    checkExtractor(store.archivePath());
    const bool isOurs = checkInfo(store);
    const std::optional<StudyInfo> imported = importArchive(store);
    require(isOurs || !imported, "only an archive of ours is imported");
    require(store.outside() == store.outsideAtStart(), "nothing changes outside the set");
    if (imported)
        checkImported(store, *imported);
    if (!imported || imported->baseFilename != TGoodStudy::baseFilename) {
        require(store.good().standsIn(store.storePath()), "the good study is untouched");
        checkGoodStudy(store);
    }
    store.restore(imported);
}
