#include "base/Text.h"

#include <charconv>
#include <cmath>

namespace velantor {

double numberFromText(const QByteArray& text)
{
    const char* from = text.constData();
    const char* const end = from + text.size();
    while (from != end && (*from == ' ' || (*from >= '\t' && *from <= '\r')))
        ++from;
    if (end - from > 1 && from[0] == '+' && from[1] != '-')
        ++from;
    double value = 0.0;
    const auto result = std::from_chars(from, end, value);
    return result.ec == std::errc() && std::isfinite(value) ? value : 0.0;
}

} // namespace velantor
