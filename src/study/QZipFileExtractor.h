#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

class MinizipDevice;
class QIODevice;

/// Reads a zip archive. The archive may come from anyone: what it says of itself is never trusted for memory,
/// and a member is only as good as its checksum. Every failure throws TError; a target of a failed extraction
/// holds part of the member or nothing, and is the caller's to remove.
class QZipFileExtractor : public QObject
{
    Q_OBJECT

public:
    /// Throws "Cannot open zip archive", "Cannot read zip archive", "Cannot read comment in zip archive".
    explicit QZipFileExtractor(const QString& path, QObject* parent = nullptr);
    ~QZipFileExtractor() override;

    QString comment() const { return m_comment; }
    /// Size that the archive declares for a member, in bytes, at most 4 GB - 1; -1 if there is no such
    /// member. Throws "Cannot get file info from zip archive".
    qint64 uncompressedSize(const QString& memberName);
    /// As `extract`, into a file that is created or replaced.
    bool extractToFile(const QString& memberName, const QString& targetPath,
                       std::optional<qint64> maxSize = std::nullopt);
    /// Copies a member (named exactly so, with case) into a closed device, which is opened for writing and
    /// closed again. False if there is no such member; the device is untouched then. Throws "Cannot get file
    /// info from zip archive", "Cannot open file in zip archive" (also when encrypted or packed otherwise
    /// than by deflate), "Cannot read file in zip archive" (also when larger than `maxSize` bytes, or the
    /// device cannot take all of it), "Corrupt file read from zip archive" (checksum).
    bool extract(const QString& memberName, QIODevice& target, std::optional<qint64> maxSize = std::nullopt);

private:
    struct TMember;

    void readGlobalInfo();
    void readComment(int size);
    /// Makes a member the handle's current one.
    std::optional<TMember> locate(const QByteArray& name);
    void openMember(const TMember& member);
    void copyMember(const TMember& member, QIODevice& target);

    std::unique_ptr<MinizipDevice> m_device;
    /// Closes the handle of minizip, before the device goes.
    struct TCloser
    {
        void operator()(void* zip) const;
    };
    std::unique_ptr<void, TCloser> m_zip;
    int m_memberCount = 0;
    QString m_comment;
};
