#include "base/Error.h"

#include <QString>

TError::TError(const QString& text) : std::runtime_error(text.toStdString()) {}

QString TError::text() const
{
    return QString::fromUtf8(what());
}
