#include "platform/FreeSpace.h"

#include <algorithm>
#include <limits>

#ifdef _WIN32
#include <QDir>

#include <windows.h>
#else
#include <QFile>

#include <sys/statvfs.h>
#endif

namespace {

/// Some network file systems claim more than a signed number holds.
qint64 clampedToSigned(quint64 bytes)
{
    return qint64(std::min(bytes, quint64(std::numeric_limits<qint64>::max())));
}

} // namespace

#ifdef _WIN32

std::optional<qint64> freeBytes(const QString& folder)
{
    ULARGE_INTEGER available;
    const QByteArray name = QDir::toNativeSeparators(folder).toLocal8Bit();
    if (name.isEmpty() || !GetDiskFreeSpaceExA(name.constData(), &available, nullptr, nullptr))
        return std::nullopt;
    return clampedToSigned(available.QuadPart);
}

#else

std::optional<qint64> freeBytes(const QString& folder)
{
    struct statvfs status;
    if (statvfs(QFile::encodeName(folder).constData(), &status) != 0)
        return std::nullopt;
    quint64 bytes = 0;
    // f_bavail and not f_bfree: blocks kept for the super user are no space for a recording.
    if (__builtin_mul_overflow(quint64(status.f_bavail), quint64(status.f_frsize), &bytes))
        return std::numeric_limits<qint64>::max();
    return clampedToSigned(bytes);
}

#endif
