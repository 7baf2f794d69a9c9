#pragma once

#include <QDir>
#include <QString>

/// What a test says that is skipped for want of recordings.
inline constexpr char noRecordings[] =
    "There are no recordings beside the checkout; VELANTOR_RECORDINGS names their folder.";

/// The folder of real recordings, empty if there is none. The target defines VELANTOR_RECORDINGS_BESIDE, the
/// place beside the checkout.
inline QString recordingsFolder()
{
    const QString folder =
        qEnvironmentVariable("VELANTOR_RECORDINGS", QStringLiteral(VELANTOR_RECORDINGS_BESIDE));
    return QDir(folder).exists() ? folder : QString();
}
