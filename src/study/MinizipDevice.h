#pragma once

#include <QFile>
#include <QString>

#include <minizip/ioapi.h>

/// The file below a zip handle: minizip's reads and writes go to a QFile of ours, so that paths, large files
/// and a full disk behave as everywhere in the program. Lives longer than the handle; not copied or moved,
/// the table points back to it.
class MinizipDevice
{
public:
    enum class Mode
    {
        Create,
        Read
    };

    MinizipDevice(const QString& path, Mode mode);
    MinizipDevice(const MinizipDevice&) = delete;
    MinizipDevice& operator=(const MinizipDevice&) = delete;

    /// The I/O table for zipOpen2_64 and unzOpen2_64; the file is opened by the handle, not before.
    zlib_filefunc64_def* table() { return &m_table; }
    /// Size of the open file in bytes.
    qint64 size() const { return m_file.size(); }
    /// From here on every access fails: the handle can be closed without finishing the file.
    void giveUp() { m_failed = true; }
    /// Whether an access failed.
    bool hasFailed() const { return m_failed; }
    /// While true a write that fails is only remembered, not told to the handle.
    void setWriteErrorsHidden(bool hidden) { m_writeErrorsHidden = hidden; }

private:
    static voidpf openFile(voidpf opaque, const void* filename, int mode);
    static uLong readFile(voidpf opaque, voidpf stream, void* buffer, uLong size);
    static uLong writeFile(voidpf opaque, voidpf stream, const void* buffer, uLong size);
    static ZPOS64_T tellFile(voidpf opaque, voidpf stream);
    static long seekFile(voidpf opaque, voidpf stream, ZPOS64_T offset, int origin);
    static int closeFile(voidpf opaque, voidpf stream);
    static int testError(voidpf opaque, voidpf stream);

    bool open();
    bool seek(ZPOS64_T offset, int origin);
    bool close();

    QFile m_file;
    Mode m_mode;
    bool m_failed = false;
    bool m_writeErrorsHidden = false;
    zlib_filefunc64_def m_table{};
};
