#include "study/FilePlacement.h"

#include "platform/FileSync.h"

#include <QFile>

#include <filesystem>

bool moveFile(const QString& from, const QString& to)
{
    std::error_code error;
    std::filesystem::rename(from.toStdU16String(), to.toStdU16String(), error);
    return !error;
}

bool linkFile(const QString& file, const QString& secondName)
{
    std::error_code error;
    std::filesystem::create_hard_link(file.toStdU16String(), secondName.toStdU16String(), error);
    return !error;
}

bool syncFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) && velantor::syncToDisk(file);
}
