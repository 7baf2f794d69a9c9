#pragma once

#include <QByteArray>

/// The form in which the first byte of an input, modulo their number, wants the rest to become a study file.
enum class TStudyForm
{
    RawFile = 0,
    OldText = 1,        ///< the mark of the old files in front of the text
    CompressedText = 2, ///< the present form, so that mutations reach the text behind the compression
    Count
};

/// Bytes of the study file that an input stands for.
QByteArray studyFileFromInput(const QByteArray& input);
/// The present form of a study file with that text.
QByteArray compressedStudyFile(const QByteArray& text);
/// The input whose rest is `content`.
QByteArray makeStudyInput(TStudyForm form, const QByteArray& content);
