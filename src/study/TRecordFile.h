#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// A file of records of one size behind a header of fixed size: the form that samples and beats have in
/// common. Nothing is buffered in the process, so that whatever was appended survives its death. Records that
/// fail to be written never shift those that follow. Main thread only.
class TRecordFile
{
public:
    enum class TMode
    {
        Open,  ///< an existing file, for reading and, where the medium lets us, writing
        Create ///< a new, empty file with a header of zeros; there must be none of that path
    };

    static TMode modeFor(bool create) { return create ? TMode::Create : TMode::Open; }

    /// Throws TError "Cannot create file" or "Cannot open file", also for what is no regular file.
    TRecordFile(const QString& path, int headerSize, int recordSize, TMode mode);
    ~TRecordFile();
    TRecordFile(const TRecordFile&) = delete;
    TRecordFile& operator=(const TRecordFile&) = delete;

    /// Throws the error of a file that cannot be opened in that mode.
    [[noreturn]] static void fail(TMode mode);

    /// Whole records; a record cut short by a crash is none.
    qint64 count() const { return m_count; }
    bool isWritable() const { return m_file.isWritable(); }

    /// The whole header, zeros included; shorter only if the file is.
    QByteArray header();
    /// Writes the header, cut or padded with zeros to its size. False if that fails.
    bool writeHeader(const QByteArray& bytes);

    /// Writes `n` records behind the last whole one, in one go. False if that fails; then none of them
    /// counts, a later append tries again in the same place, and what reached the file is cut off: at once
    /// or, if that fails as well, with the next append or when the file is closed.
    bool append(const char* data, int n);
    /// Rewrites a record in place. False if there is none or writing fails.
    bool update(qint64 index, const char* data);
    /// Reads up to `n` records from `index` on and returns how many there were, 0 out of range.
    int read(qint64 index, int n, char* out);

    /// Whether a write ever failed, or the file was found gone from its folder. Stays true.
    bool writeFailed() const { return m_writeFailed; }
    /// Whether what was appended may not last: the file was found gone from its folder, or could not be
    /// brought to the disk. Stays true, as nothing mends it; a write that was only refused can be repeated.
    bool isLost() const { return m_isLost; }
    /// Brings what was written to the disk. False, and `writeFailed`, if that fails.
    bool sync();

private:
    void create();
    void open();
    void cutRest();
    qint64 offsetOf(qint64 index) const { return m_headerSize + index * m_recordSize; }
    bool writeAt(qint64 offset, const char* data, qint64 size);

    QFile m_file;
    int m_headerSize;
    int m_recordSize;
    qint64 m_count = 0;
    /// Something of a failed append stands behind the last record and could not be cut off.
    bool m_hasRest = false;
    bool m_writeFailed = false;
    bool m_isLost = false;
};
