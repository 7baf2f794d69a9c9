#include "fuzz/ScratchFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

QString scratchPlace()
{
    const QString named = qEnvironmentVariable("VELANTOR_FUZZ_SCRATCH");
    if (!named.isEmpty())
        return named;
    const QFileInfo memory(QStringLiteral("/dev/shm"));
    return memory.isDir() && memory.isWritable() ? memory.filePath() : QDir::tempPath();
}

} // namespace

TScratchFolder::TScratchFolder()
    : m_folder(std::make_unique<QTemporaryDir>(scratchPlace() + QStringLiteral("/velantor-fuzz-XXXXXX")))
{
    if (!m_folder->isValid())
        qFatal("Cannot create the scratch folder.");
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
