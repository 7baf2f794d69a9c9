#pragma once

#include <QDir>

/// Files, sockets and the like that this process has open.
inline int openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size();
}

inline int runningThreads()
{
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::NoDotAndDotDot | QDir::Dirs).size();
}
