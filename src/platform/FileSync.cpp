#include "platform/FileSync.h"

#include <QFileDevice>

#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <cerrno>
#include <unistd.h>
#endif

namespace velantor {

namespace {

#ifdef Q_OS_WIN
bool syncHandle(int handle)
{
    const auto file = reinterpret_cast<HANDLE>(_get_osfhandle(handle));
    return file != INVALID_HANDLE_VALUE && FlushFileBuffers(file) != 0;
}
#else
bool syncHandle(int handle)
{
    int result = 0;
    do {
        result = fsync(handle);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}
#endif

} // namespace

bool syncToDisk(QFileDevice& file)
{
    return file.isOpen() && file.flush() && file.handle() >= 0 && syncHandle(file.handle());
}

} // namespace velantor
