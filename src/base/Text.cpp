#include "base/Text.h"

#include <charconv>
#include <cmath>
#include <string_view>

namespace velantor {

QString fromText(const QByteArray& text)
{
    // Qt takes a byte order mark at the beginning for a mark of the encoding and drops it. What a text loses
    // on its way is missing in the next file, and two names can become one.
    constexpr std::string_view mark = "\xef\xbb\xbf";
    std::string_view rest(text.constData(), static_cast<std::size_t>(text.size()));
    QString marks;
    for (; rest.starts_with(mark); rest.remove_prefix(mark.size()))
        marks += QChar(QChar::ByteOrderMark);
    // With the size, for the overload without it stops at a zero character.
    return marks + QString::fromUtf8(rest.data(), static_cast<int>(rest.size()));
}

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
