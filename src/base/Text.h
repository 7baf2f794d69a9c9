#pragma once

#include <QByteArray>
#include <QString>

/// Conversion at the boundary between the texts of the model (opaque 8-bit strings, UTF-8) and QString.
/// The encoding never follows the locale: a study must read the same under any of them.
namespace velantor {

inline QString fromText(const QByteArray& text)
{
    // With the size, for the overload without it stops at a zero character and loses the rest.
    return QString::fromUtf8(text.constData(), text.size());
}

inline QByteArray toText(const QString& string)
{
    return string.toUtf8();
}

/// The decimal number that a user typed, read like C's atof: leading blanks and trailing text are passed
/// over, the decimal point is a point in every locale. 0 if there is no number or it is not finite.
double numberFromText(const QByteArray& text);

} // namespace velantor
