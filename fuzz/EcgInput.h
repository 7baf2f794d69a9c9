#pragma once

#include <QByteArray>

/// The form in which the first byte of an input, modulo their number, wants the rest to become a samples
/// file.
enum class TEcgForm
{
    RawFile = 0,
    Document = 1, ///< a block with the document of the header, filled up to its size; then samples
    Count
};

/// Bytes of the samples file that an input stands for.
QByteArray ecgFileFromInput(const QByteArray& input);
/// A samples file with that document in its header.
QByteArray ecgFile(const QByteArray& document, const QByteArray& samples);
/// Inputs of the two forms.
QByteArray makeRawEcgInput(const QByteArray& file);
QByteArray makeEcgInput(const QByteArray& document, const QByteArray& samples);
