#include "equipment/TKipnetLog.h"

#include "base/Constants.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

QString TKipnetLog::defaultPath()
{
    return QStringLiteral("%1/%2/velantor-kipnet.log")
        .arg(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
             QLatin1String(velantor::dataFolderName));
}

void TKipnetLog::open(const QString& path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    m_file.setFileName(path);
    m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
}

void TKipnetLog::writeLine(const QByteArray& text)
{
    if (m_file.isOpen())
        m_file.write(text + '\n');
}
