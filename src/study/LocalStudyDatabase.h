#pragma once

#include "study/StudyDatabase.h"
#include "study/TProtocolTable.h"

#include <map>

class QLockFile;
class StudyIndex;

/// The store in a folder of this machine: file sets, an SQLite index that can be thrown away, and the table
/// of protocols. The files are the truth; the index is made again from them when it is missing.
class LocalStudyDatabase : public StudyDatabase
{
public:
    /// Makes the folder, its index and its protocol table where they are missing. Throws the text of what
    /// failed.
    explicit LocalStudyDatabase(const QString& folder);
    ~LocalStudyDatabase() override;

    std::unique_ptr<Study> loadStudy(const QString& path) override;
    void saveStudyFile(Study& study, const QString& path) override;
    std::vector<StudyInfo> listStudies() override;
    bool findStudy(qint32 id, StudyInfo& info) override;
    Study* createStudy(StudyInfo& info) override;
    Study* openStudy(qint32 id) override;
    void saveStudy(Study* study) override;
    void closeStudy(Study* study) override;
    void deleteStudy(qint32 id) override;
    bool isStudyOpen(qint32 id) const override;
    void infoFromStudy(StudyInfo& info, Study& study) override;
    void studyFromInfo(Study& study, const StudyInfo& info) override;

    std::vector<QByteArray> protocolNames() const override;
    bool protocol(const QByteArray& name, TStressProtocol& out) const override;
    void setProtocol(const QByteArray& name, const TStressProtocol& protocol) override;
    void deleteProtocol(const QByteArray& name) override;

    void exportStudy(qint32 id, const QString& folder) override;
    void importStudy(const QString& path, StudyInfo* imported = nullptr) override;
    bool readArchiveInfo(const QString& path, StudyInfo& info) override;
    std::vector<StudyInfo> listArchives(const QString& folder) override;

    QString folder() const override { return m_folder; }
    bool hasFreeSpace() const override;

    /// Throws the index away and makes it again from the files.
    void rebuildIndex();
    /// Throws the index of a data folder away; the next start makes it again.
    static void removeIndex(const QString& folder);

    /// The protocol table in the form of its file.
    QByteArray protocolTableJson() const { return m_protocols.toJson(); }

private:
    struct TOpenStudy
    {
        /// Tells other processes that the study is in use.
        std::unique_ptr<QLockFile> mark;
        std::unique_ptr<Study> study;
        /// Where its files are; what a window writes into the study's texts never moves them.
        QByteArray baseFilename;
    };
    using TOpenStudies = std::map<qint32, TOpenStudy>;

    QString indexPath() const;
    QString protocolsPath() const;
    void openIndex();
    void fillIndex();
    StudyIndex& index();
    void openProtocols();
    void saveProtocols() const;
    qint32 makeId();
    bool isSetOpen(const QByteArray& baseFilename) const;
    std::unique_ptr<QLockFile> makeMark(qint32 id) const;
    bool isInUse(const StudyInfo& info) const;
    Study* enterOpenStudy(qint32 id, std::unique_ptr<Study> study, const QByteArray& baseFilename);
    TOpenStudies::iterator findOpen(const Study* study);

    QString m_folder;
    std::unique_ptr<StudyIndex> m_index;
    TOpenStudies m_openStudies;
    TProtocolTable m_protocols;
};
