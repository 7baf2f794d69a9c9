#include "study/LocalStudyDatabase.h"

#include "base/Constants.h"
#include "base/Error.h"
#include "base/Text.h"
#include "platform/FreeSpace.h"
#include "study/Study.h"
#include "study/StudyArchive.h"
#include "study/StudyCreation.h"
#include "study/StudyDocument.h"
#include "study/StudyFiles.h"
#include "study/StudyIndex.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <optional>
#include <random>
#include <set>

namespace {

constexpr qint64 freeSpaceForStudy = 50LL * 1024 * 1024;

QStringList studyFileNames(const QString& folder)
{
    if (folder.isEmpty())
        return {};
    const QString pattern = QLatin1String("*.") + QLatin1String(velantor::studyExtension);
    // A patient's number may begin with a point, which hides the file.
    return QDir(folder).entryList({pattern}, QDir::Files | QDir::Hidden | QDir::CaseSensitive, QDir::Name);
}

/// Whether the set of that name holds the study, as far as its study file tells. A set without a sound study
/// file belongs to whoever names it.
bool isSetOfStudy(const QString& folder, const QByteArray& baseFilename, qint32 id)
{
    const qint32 stored = readStudyId(studyFilePath(folder, baseFilename, velantor::studyExtension));
    return stored == 0 || stored == id;
}

void removeSet(const QString& folder, const QByteArray& baseFilename)
{
    for (const char* extension : {velantor::studyExtension, velantor::ecgExtension, velantor::beatsExtension})
        QFile::remove(studyFilePath(folder, baseFilename, extension));
}

/// What the list shows of the study file of that name; no value if the file is no sound study.
std::optional<StudyInfo> readListedInfo(const QString& folder, const QString& fileName)
{
    const QJsonObject document = readStudyHead(folder + QLatin1Char('/') + fileName);
    if (document.isEmpty())
        return std::nullopt;
    StudyInfo info;
    readStudyInfo(info, document);
    if (!isStudyId(info.id))
        return std::nullopt;
    // A set that was moved to another name, or that names files elsewhere or those of another study, is found
    // under the name it has.
    const QByteArray nameOfFile = velantor::toText(QFileInfo(fileName).completeBaseName());
    const bool isWhereItSays =
        info.baseFilename == nameOfFile ||
        (isSafeBaseFilename(info.baseFilename) &&
         readStudyId(studyFilePath(folder, info.baseFilename, velantor::studyExtension)) == info.id);
    if (!isWhereItSays)
        info.baseFilename = nameOfFile;
    return info;
}

} // namespace

LocalStudyDatabase::LocalStudyDatabase(const QString& folder) : m_folder(folder)
{
    if (!m_folder.isEmpty())
        QDir().mkpath(m_folder + QLatin1String("/data"));
    openIndex();
    openProtocols();
}

LocalStudyDatabase::~LocalStudyDatabase() = default;

QString LocalStudyDatabase::indexPath() const
{
    // A store without a folder lists nothing and refuses to create.
    return m_folder.isEmpty() ? QStringLiteral(":memory:") : m_folder + QLatin1String("/data/studies.sqlite");
}

QString LocalStudyDatabase::protocolsPath() const
{
    return m_folder + QLatin1String("/data/protocols.json");
}

void LocalStudyDatabase::openIndex()
{
    m_index = std::make_unique<StudyIndex>(indexPath());
    if (m_index->isNew())
        fillIndex();
    m_index->keep();
}

void LocalStudyDatabase::fillIndex()
{
    m_index->beginTransaction();
    std::set<qint32> ids;
    for (const QString& name : studyFileNames(m_folder)) {
        const std::optional<StudyInfo> info = readListedInfo(m_folder, name);
        if (info && ids.insert(info->id).second)
            m_index->insert(*info);
    }
    m_index->commit();
}

void LocalStudyDatabase::rebuildIndex()
{
    m_index.reset();
    QFile::remove(indexPath());
    openIndex();
}

void LocalStudyDatabase::openProtocols()
{
    if (m_protocols.load(protocolsPath()))
        return;
    m_protocols = TProtocolTable::builtIn();
    m_protocols.save(protocolsPath());
}

std::unique_ptr<Study> LocalStudyDatabase::loadStudy(const QString& path)
{
    return ::loadStudy(path);
}

void LocalStudyDatabase::saveStudyFile(Study& study, const QString& path)
{
    ::saveStudyFile(study, path);
}

std::vector<StudyInfo> LocalStudyDatabase::listStudies()
{
    return m_index->list();
}

bool LocalStudyDatabase::findStudy(qint32 id, StudyInfo& info)
{
    const std::optional<StudyInfo> found = m_index->find(id);
    if (found)
        info = *found;
    return found.has_value();
}

qint32 LocalStudyDatabase::makeId()
{
    std::random_device source;
    std::uniform_int_distribution<qint32> ids(1, maxStudyId);
    qint32 id = ids(source);
    while (m_index->find(id))
        id = ids(source);
    return id;
}

Study* LocalStudyDatabase::createStudy(StudyInfo& info)
{
    if (m_folder.isEmpty())
        throw TError("Undefined database path");
    info.baseFilename = makeBaseFilename(info);
    info.id = makeId();
    std::unique_ptr<Study> study = createStudyFiles(m_folder, info);
    try {
        m_index->insert(info);
    } catch (const TError&) {
        // Nothing is recorded yet, and files without a row would bar the way of the next try.
        study.reset();
        removeSet(m_folder, info.baseFilename);
        throw;
    }
    return enterOpenStudy(info.id, std::move(study), info.baseFilename);
}

Study* LocalStudyDatabase::openStudy(qint32 id)
{
    StudyInfo info;
    if (isStudyOpen(id) || !findStudy(id, info))
        return nullptr;
    std::unique_ptr<Study> study =
        ::loadStudy(studyFilePath(m_folder, info.baseFilename, velantor::studyExtension));
    // Another study under this name would be saved into the wrong row.
    if (!study || study->id() != id)
        return nullptr;
    return enterOpenStudy(id, std::move(study), info.baseFilename);
}

Study* LocalStudyDatabase::enterOpenStudy(qint32 id, std::unique_ptr<Study> study,
                                          const QByteArray& baseFilename)
{
    return m_openStudies.insert_or_assign(id, TOpenStudy{std::move(study), baseFilename})
        .first->second.study.get();
}

LocalStudyDatabase::TOpenStudies::iterator LocalStudyDatabase::findOpen(const Study* study)
{
    return std::find_if(m_openStudies.begin(), m_openStudies.end(),
                        [study](const auto& entry) { return entry.second.study.get() == study; });
}

void LocalStudyDatabase::saveStudy(Study* study)
{
    const auto open = findOpen(study);
    if (open == m_openStudies.end())
        return;
    const auto& [id, entry] = *open;
    ::saveStudyFile(*study, studyFilePath(m_folder, entry.baseFilename, velantor::studyExtension));
    StudyInfo info;
    ::infoFromStudy(info, *study);
    info.id = id;
    info.baseFilename = entry.baseFilename;
    m_index->update(info);
}

void LocalStudyDatabase::closeStudy(Study* study)
{
    const auto open = findOpen(study);
    if (open != m_openStudies.end())
        m_openStudies.erase(open);
}

void LocalStudyDatabase::deleteStudy(qint32 id)
{
    StudyInfo info;
    if (isStudyOpen(id) || !findStudy(id, info))
        return;
    if (!isSetOpen(info.baseFilename) && isSetOfStudy(m_folder, info.baseFilename, id))
        removeSet(m_folder, info.baseFilename);
    m_index->remove(id);
}

bool LocalStudyDatabase::isStudyOpen(qint32 id) const
{
    return m_openStudies.count(id) > 0;
}

bool LocalStudyDatabase::isSetOpen(const QByteArray& baseFilename) const
{
    return std::any_of(m_openStudies.begin(), m_openStudies.end(),
                       [&](const auto& entry) { return entry.second.baseFilename == baseFilename; });
}

void LocalStudyDatabase::infoFromStudy(StudyInfo& info, Study& study)
{
    ::infoFromStudy(info, study);
}

void LocalStudyDatabase::studyFromInfo(Study& study, const StudyInfo& info)
{
    ::studyFromInfo(study, info);
}

std::vector<QByteArray> LocalStudyDatabase::protocolNames() const
{
    return m_protocols.names();
}

bool LocalStudyDatabase::protocol(const QByteArray& name, TStressProtocol& out) const
{
    const TStressProtocol* found = m_protocols.find(name);
    if (found != nullptr)
        out = *found;
    return found != nullptr;
}

void LocalStudyDatabase::setProtocol(const QByteArray& name, const TStressProtocol& protocol)
{
    m_protocols.set(name, protocol);
    m_protocols.save(protocolsPath());
}

void LocalStudyDatabase::deleteProtocol(const QByteArray& name)
{
    m_protocols.remove(name);
    m_protocols.save(protocolsPath());
}

void LocalStudyDatabase::exportStudy(qint32 id, const QString& folder)
{
    StudyInfo info;
    if (findStudy(id, info))
        writeArchive(m_folder, info, folder);
}

void LocalStudyDatabase::importStudy(const QString& path, StudyInfo* imported)
{
    TArchiveImport import(path, m_folder);
    const StudyInfo& info = import.info();
    // Its files are in use: a recording must never lose the file that it is written to.
    if (isStudyOpen(info.id) || isSetOpen(info.baseFilename))
        throw TError("Study is open");
    import.commit();

    if (m_index->find(info.id))
        m_index->update(info);
    else
        m_index->insert(info);
    if (imported != nullptr)
        *imported = info;
}

bool LocalStudyDatabase::readArchiveInfo(const QString& path, StudyInfo& info)
{
    return ::readArchiveInfo(path, info);
}

std::vector<StudyInfo> LocalStudyDatabase::listArchives(const QString& folder)
{
    return ::listArchives(folder);
}

bool LocalStudyDatabase::hasFreeSpace() const
{
    const std::optional<qint64> free = freeBytes(m_folder);
    return !free || *free >= freeSpaceForStudy;
}
