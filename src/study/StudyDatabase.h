#pragma once

#include "study/RiskFactors.h"
#include "study/StudyInfo.h"
#include "study/TStressProtocol.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

class Study;

/// The store of studies and protocols. An interface, so that another store than the local folder can stand
/// behind it; what a store does not offer throws "unimplemented". Failures throw TError with a plain text.
/// Main thread only. The store owns the studies it opens; windows borrow them until `closeStudy`.
class StudyDatabase
{
public:
    StudyDatabase() = default;
    virtual ~StudyDatabase() = default;
    StudyDatabase(const StudyDatabase&) = delete;
    StudyDatabase& operator=(const StudyDatabase&) = delete;

    /// The study whose files lie at the path of its study file, or null. It is not entered as open.
    virtual std::unique_ptr<Study> loadStudy(const QString& path) = 0;
    virtual void saveStudyFile(Study& study, const QString& path) = 0;
    /// The listed fields of every study.
    virtual std::vector<StudyInfo> listStudies() = 0;
    /// Whether the store has the study; fills the listed fields.
    virtual bool findStudy(qint32 id, StudyInfo& info) = 0;
    /// A new open study; fills `id` and `baseFilename` of `info`.
    virtual Study* createStudy(StudyInfo& info) = 0;
    /// Null if there is no such study, if it cannot be read, or if it is open already.
    virtual Study* openStudy(qint32 id) = 0;
    /// Writes an open study and its row; of another study nothing happens.
    virtual void saveStudy(Study* study) = 0;
    /// Destroys an open study. What was not saved is lost.
    virtual void closeStudy(Study* study) = 0;
    /// Removes files and row. Of an open study nothing happens.
    virtual void deleteStudy(qint32 id) = 0;
    virtual bool isStudyOpen(qint32 id) const = 0;
    virtual void infoFromStudy(StudyInfo& info, Study& study) = 0;
    virtual void studyFromInfo(Study& study, const StudyInfo& info) = 0;

    // A register of patients apart from their studies.
    virtual std::vector<StudyInfo> listPatients();
    virtual void createPatient(StudyInfo& info);
    virtual bool openPatient(qint32 id, StudyInfo& info);
    virtual void savePatient(const StudyInfo& info);
    virtual void deletePatient(qint32 id);

    /// Sorted.
    virtual std::vector<QByteArray> protocolNames() const = 0;
    virtual bool protocol(const QByteArray& name, TStressProtocol& out) const = 0;
    /// Inserts or replaces, and saves the table.
    virtual void setProtocol(const QByteArray& name, const TStressProtocol& protocol) = 0;
    virtual void deleteProtocol(const QByteArray& name) = 0;

    // A register of report templates.
    virtual std::vector<QByteArray> reportTemplateNames();
    virtual QByteArray reportTemplate(const QByteArray& name);
    virtual void setReportTemplate(const QByteArray& name, const QByteArray& document);
    virtual void deleteReportTemplate(const QByteArray& name);
    virtual QByteArray defaultReportTemplateName();

    /// Writes the archive of a study into a folder, in the place of an older one; without such a study
    /// nothing happens.
    virtual void exportStudy(qint32 id, const QString& folder) = 0;
    virtual void exportReport(qint32 id, const QString& folder);
    /// Takes the study of an archive into the store, in the place of an older form of the same study.
    /// `imported` gets what the list shows of it.
    virtual void importStudy(const QString& path, StudyInfo* imported = nullptr) = 0;
    /// What an archive tells of its study; false if it is none of ours.
    virtual bool readArchiveInfo(const QString& path, StudyInfo& info) = 0;
    /// Every archive of ours in a folder.
    virtual std::vector<StudyInfo> listArchives(const QString& folder) = 0;
    virtual void deleteArchive(const QString& path);

    virtual QString folder() const = 0;
    /// Whether there is room for another study: 50 MB.
    virtual bool hasFreeSpace() const = 0;

    /// The risk factors that the study dialog asks for, in its order.
    const std::vector<QByteArray>& riskFactorNames() const { return m_riskFactorNames; }

private:
    std::vector<QByteArray> m_riskFactorNames = standardRiskFactors();
};

/// The one store of the process. Null until the start-up has made it, and while a test has none. Borrowed.
StudyDatabase* studyDatabase();
void setStudyDatabase(StudyDatabase* database);
