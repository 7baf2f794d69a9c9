#include "app/StudyExport.h"

#include "app/MessageBox.h"
#include "app/PleaseWait.h"
#include "study/StudyDatabase.h"

#include <QCoreApplication>

namespace {

bool writeArchive(QWidget* parent, qint32 id, const QString& folder)
{
    const PleaseWait wait(parent);
    try {
        // The store passes over a study that is gone without a word.
        StudyInfo info;
        if (!studyDatabase()->findStudy(id, info))
            return false;
        studyDatabase()->exportStudy(id, folder);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

void exportStudy(QWidget* parent, qint32 id, const QString& folder)
{
    if (writeArchive(parent, id, folder)) {
        showBox(
            parent, QMessageBox::Information, QCoreApplication::translate("StudyExport", "Information"),
            QCoreApplication::translate("StudyExport", "Study file was succesfully exported to folder: %1")
                .arg(folder));
        return;
    }
    showBox(parent, QMessageBox::Warning, QCoreApplication::translate("StudyExport", "Warning"),
            QCoreApplication::translate("StudyExport",
                                        "Study file could not be exported to folder: %1\n"
                                        "Please check shared folder access with your network administrator.")
                .arg(folder));
}

bool exportNewStudy(QWidget* parent, qint32 id, const TSetting<QString>& folder)
{
    const QString path = folder.value();
    if (!settings::autoExportStudies.value() || path.isEmpty())
        return false;
    exportStudy(parent, id, path);
    return true;
}
