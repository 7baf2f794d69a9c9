#pragma once

#include <QString>

#include <stdexcept>

/// The one exception of this program. Its text is plain English and fit to be shown to a user as it stands;
/// layers below the windows throw it, windows and the console tool show it.
class TError : public std::runtime_error
{
public:
    explicit TError(const char* text) : std::runtime_error(text) {}
    explicit TError(const QString& text) : std::runtime_error(text.toStdString()) {}

    QString text() const { return QString::fromUtf8(what()); }
};
