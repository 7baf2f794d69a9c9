#pragma once

#include <QByteArray>
#include <QString>

/// The files of a WFDB record that an input stands for.
struct TWfdbInput
{
    QByteArray header;      ///< r.hea
    QByteArray annotations; ///< r.atr
    QByteArray second;      ///< s.dat
    QByteArray first;       ///< r.dat

    /// Three blocks, then the rest.
    static TWfdbInput fromBytes(const QByteArray& input);
    QByteArray toBytes() const;

    /// Writes the four files; the record is "folder/r". False if that fails.
    bool write(const QString& folder) const;
};
