#include "app/StartUp.h"

#include "app/PleaseWait.h"
#include "base/Constants.h"
#include "study/LocalStudyDatabase.h"

#include <QStandardPaths>

namespace {

QString dataFolder()
{
    return QStringLiteral("%1/%2").arg(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
                                       QLatin1String(velantor::dataFolderName));
}

} // namespace

void openStudyDatabase(QWidget* window)
{
    const PleaseWait wait(window);
    if (!studyDatabase())
        setStudyDatabase(std::make_unique<LocalStudyDatabase>(dataFolder()).release());
}
