#include "study/MinizipDevice.h"

#include <QFileInfo>

#include <limits>

namespace {

MinizipDevice& deviceOf(voidpf opaque)
{
    return *static_cast<MinizipDevice*>(opaque);
}

} // namespace

MinizipDevice::MinizipDevice(const QString& path, Mode mode) : m_file(path), m_mode(mode)
{
    m_table.zopen64_file = openFile;
    m_table.zread_file = readFile;
    m_table.zwrite_file = writeFile;
    m_table.ztell64_file = tellFile;
    m_table.zseek64_file = seekFile;
    m_table.zclose_file = closeFile;
    m_table.zerror_file = testError;
    m_table.opaque = this;
}

bool MinizipDevice::open()
{
    // Unbuffered, so that a full disk shows in the very call that meets it.
    if (m_mode == Mode::Create)
        return m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
    // Anything but a regular file, a pipe for one, could block the program for ever.
    return QFileInfo(m_file).isFile() && m_file.open(QIODevice::ReadOnly);
}

bool MinizipDevice::seek(ZPOS64_T offset, int origin)
{
    const qint64 start = origin == ZLIB_FILEFUNC_SEEK_SET   ? 0
                         : origin == ZLIB_FILEFUNC_SEEK_CUR ? m_file.pos()
                                                            : m_file.size();
    // Offsets come out of the archive; none may lead out of the file.
    if (offset > ZPOS64_T(std::numeric_limits<qint64>::max() - start))
        return false;
    const qint64 target = start + qint64(offset);
    return !m_failed && target <= m_file.size() && m_file.seek(target);
}

bool MinizipDevice::close()
{
    const bool flushed = m_mode == Mode::Read || m_file.flush();
    m_file.close();
    return flushed && !m_failed && m_file.error() == QFileDevice::NoError;
}

voidpf MinizipDevice::openFile(voidpf opaque, const void*, int)
{
    return deviceOf(opaque).open() ? opaque : nullptr;
}

uLong MinizipDevice::readFile(voidpf opaque, voidpf, void* buffer, uLong size)
{
    MinizipDevice& device = deviceOf(opaque);
    const qint64 got = device.m_file.read(static_cast<char*>(buffer), qint64(size));
    device.m_failed = device.m_failed || got < 0;
    return device.m_failed ? 0 : uLong(got);
}

uLong MinizipDevice::writeFile(voidpf opaque, voidpf, const void* buffer, uLong size)
{
    MinizipDevice& device = deviceOf(opaque);
    const auto wanted = qint64(size);
    if (!device.m_failed)
        device.m_failed = device.m_file.write(static_cast<const char*>(buffer), wanted) != wanted;
    return device.m_failed && !device.m_writeErrorsHidden ? 0 : size;
}

ZPOS64_T MinizipDevice::tellFile(voidpf opaque, voidpf)
{
    return ZPOS64_T(deviceOf(opaque).m_file.pos());
}

long MinizipDevice::seekFile(voidpf opaque, voidpf, ZPOS64_T offset, int origin)
{
    return deviceOf(opaque).seek(offset, origin) ? 0 : -1;
}

int MinizipDevice::closeFile(voidpf opaque, voidpf)
{
    return deviceOf(opaque).close() ? 0 : -1;
}

int MinizipDevice::testError(voidpf opaque, voidpf)
{
    return deviceOf(opaque).m_failed ? 1 : 0;
}
