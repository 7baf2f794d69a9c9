#pragma once

#include <QByteArray>
#include <QFile>

/// The text file that a treadmill's thread writes. Each line is with the system at once. Where it cannot be
/// written, nothing is: a test does not end for want of a log.
class TKipnetLog
{
public:
    /// "velantor-kipnet.log" in the data folder.
    static QString defaultPath();

    /// Appends to the file, which is made with its folder.
    void open(const QString& path);
    /// Adds the line feed.
    void writeLine(const QByteArray& text);
    void close() { m_file.close(); }

private:
    QFile m_file;
};
