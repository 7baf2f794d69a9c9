#pragma once

#include <stdexcept>

class QString;

/// The one exception of this program. Its text is plain English and fit to be shown to a user as it stands;
/// layers below the windows throw it, windows and the console tool show it.
class TError : public std::runtime_error
{
public:
    explicit TError(const char* text) : std::runtime_error(text) {}
    explicit TError(const QString& text);

    QString text() const;
};
