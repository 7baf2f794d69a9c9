#pragma once

#include <QByteArray>
#include <QFile>

/// The file that a member of an untrusted archive is unpacked to. It takes nothing more once the first bytes
/// show that the member is no file of ours, so that a member made to fill the disk is turned away at once.
class TMemberFile : public QFile
{
public:
    using THeadCheck = bool (*)(const QByteArray& head);

    /// `isHead` judges the first `headSize` bytes; it is not asked about a member that is shorter.
    TMemberFile(const QString& path, int headSize, THeadCheck isHead)
        : QFile(path), m_headSize(headSize), m_isHead(isHead)
    {
    }

    bool isRefused() const { return m_isRefused; }

protected:
    qint64 writeData(const char* data, qint64 size) override;

private:
    int m_headSize;
    THeadCheck m_isHead;
    QByteArray m_head;
    bool m_isRefused = false;
};
