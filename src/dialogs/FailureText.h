#pragma once

#include <QString>

/// What the layers below the windows say of a failure (the text of a TError or of the recorder; UTF-8), in
/// the language of the user. A text that is not known, as one of the operating system, stays as it is.
QString failureText(const char* utf8);
