#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

class MinizipDevice;
class QIODevice;

/// Writes a zip archive: members are deflated one after the other, without dates or extra fields (but for the
/// size field that a member near 4 GB needs). Every failure throws TError and leaves the partial file behind;
/// once a member could not be written to its end the archive is given up and never gets a directory, so that
/// it cannot pass for a whole one.
class QZipFileCreator : public QObject
{
    Q_OBJECT

public:
    /// Opens a new archive and replaces any old file at `path`. Throws "Cannot create zip archive".
    explicit QZipFileCreator(const QString& path, QObject* parent = nullptr);
    /// Closes the archive if it is still open, then without telling of failures.
    ~QZipFileCreator() override;

    /// The archive's comment, at most 65535 bytes of UTF-8; written by `close`.
    void setComment(const QString& text) { m_comment = text.toUtf8(); }
    /// Adds a file as a member. Throws "Cannot open new file in zip" (also for a source that cannot be read,
    /// before the member is begun), "Cannot write data in zip file", "Cannot close file in zip".
    void addFile(const QString& sourcePath, const QString& memberName);
    /// Adds a byte array as a member, throws as `addFile`.
    void addData(const QByteArray& bytes, const QString& memberName);
    /// Writes the directory and the comment. Throws "Cannot close zip archive"; nothing happens when closed.
    void close();

private:
    void addMember(QIODevice& source, const QString& memberName);
    void openMember(const QString& memberName, qint64 size);
    bool copyMember(QIODevice& source);
    [[noreturn]] void giveUp(const char* text);

    std::unique_ptr<MinizipDevice> m_device;
    /// The handle of minizip, null when closed.
    void* m_zip = nullptr;
    QByteArray m_comment;
};
