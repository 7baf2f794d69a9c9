#include "study/TJsonHead.h"

#include "study/JsonBounds.h"

#include <algorithm>

namespace {

/// Where Qt's parser gives up too.
constexpr int maxDepth = 1024;
constexpr int topDepth = 1;

bool isStructure(char c)
{
    return c == '"' || c == ',' || c == ':' || c == '[' || c == ']' || c == '{' || c == '}';
}

bool endsString(char c)
{
    return c == '"' || c == '\\';
}

/// A key with escapes may be any.
bool isWanted(const QByteArray& quotedKey)
{
    return quotedKey == "\"study\"" || quotedKey == "\"patient\"" || quotedKey.contains('\\');
}

} // namespace

void TJsonHead::add(const char* data, qint64 size)
{
    const char* const end = data + size;
    for (const char* at = data; at != end && !m_broken;) {
        if (m_inString) {
            addQuoted(at, end);
            continue;
        }
        const char* const structure = std::find_if(at, end, isStructure);
        if (!m_skipping)
            m_kept.append(at, static_cast<int>(structure - at));
        at = structure;
        if (at != end)
            addStructure(*at++);
    }
}

void TJsonHead::addQuoted(const char*& at, const char* end)
{
    const char* const from = at;
    at = m_escaped ? at + 1 : std::find_if(at, end, endsString);
    const bool isCloser = !m_escaped && at != end;
    m_escaped = isCloser && *at == '\\';
    m_inString = !isCloser || m_escaped;
    if (isCloser)
        ++at;
    if (!m_skipping)
        m_kept.append(from, static_cast<int>(at - from));
}

void TJsonHead::addStructure(char c)
{
    const bool isTop = m_openBrackets.size() == topDepth;
    if (isTop && (c == ',' || c == '}' || c == ']'))
        m_skipping = false;
    if (isTop && c == '"' && !m_skipping)
        m_keyStart = m_kept.size();
    if (!m_skipping)
        m_kept.append(c);
    if (isTop && c == ':' && !m_skipping)
        startMember();
    if (c == '"')
        m_inString = true;
    else if (c == '[' || c == '{')
        openBracket(c);
    else if (c == ']' || c == '}')
        closeBracket(c);
}

void TJsonHead::startMember()
{
    const int end = m_kept.lastIndexOf('"') + 1;
    m_skipping = end > m_keyStart && !isWanted(m_kept.mid(m_keyStart, end - m_keyStart));
    if (m_skipping)
        m_kept.append('0');
}

void TJsonHead::openBracket(char c)
{
    m_openBrackets.append(c);
    m_broken = m_openBrackets.size() > maxDepth;
}

void TJsonHead::closeBracket(char c)
{
    m_broken = !m_openBrackets.endsWith(c == ']' ? '[' : '{');
    m_openBrackets.chop(1);
}

QJsonObject TJsonHead::parse() const
{
    return m_broken ? QJsonObject() : parseBoundedJson(m_kept);
}
