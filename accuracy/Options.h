#pragma once

#include <QString>
#include <QStringList>

namespace accuracy {

/// The command line of the program.
struct TOptions
{
    bool help = false;
    QString recordings;  ///< folder of the sets
    QStringList records; ///< "SET" or "SET/NAME"; empty for all that are annotated
    int block = 4096;    ///< frames that are given to the analysis at once

    /// `words` without the program's name. Throws TError that says what is wrong. Without --recordings the
    /// folder is that of VELANTOR_RECORDINGS, or `otherwise`.
    static TOptions parse(const QStringList& words, const QString& otherwise);
    static QString helpText();
};

} // namespace accuracy
