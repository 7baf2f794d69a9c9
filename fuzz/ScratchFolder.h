#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <memory>

/// A folder of its own, removed with this object. It lies in memory where the system has such a place, since
/// a fuzzer writes thousands of files a second; the environment variable VELANTOR_FUZZ_SCRATCH names another
/// place, which whoever set it can clean up after a crash.
class TScratchFolder
{
public:
    TScratchFolder();

    QString path() const { return m_folder->path(); }
    QString path(const char* name) const { return m_folder->filePath(QLatin1String(name)); }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

/// Creates or replaces a file. False if that fails.
bool writeFile(const QString& path, const QByteArray& bytes);
/// The whole file; empty if it cannot be read.
QByteArray readFile(const QString& path);
