#pragma once

#include <QByteArray>
#include <QString>

#include <array>

/// The three files of a small sound study, which stands beside what a fuzz target makes up.
struct TGoodStudy
{
    static constexpr qint32 id = 4711;
    static constexpr char baseFilename[] = "good";
    static constexpr int channelCount = 2;
    /// In the order of `files`.
    static constexpr std::array<const char*, 3> extensions{"vtstudy", "vtecg", "vtbeats"};

    std::array<QByteArray, 3> files;

    /// Makes the set in a folder and reads its bytes. Throws TError.
    static TGoodStudy create(const QString& folder);

    static QString path(const QString& folder, std::size_t file);
    /// Bytes of the file of that ending; empty if there is none.
    QByteArray file(const QByteArray& extension) const;
    /// Whether the files in the folder are those of this set, byte for byte.
    bool standsIn(const QString& folder) const;
    /// Puts the files into a folder again. False if that fails.
    bool write(const QString& folder) const;
};
