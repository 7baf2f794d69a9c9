#include "study/JsonBounds.h"

#include "study/TInflater.h"

#include <QJsonDocument>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <memory>

namespace {

/// What Qt's parser keeps for each value, growth of its arrays included. Arrays grow by doubling: at 28 the
/// largest affordable one stays below the step to 16 million values.
constexpr qint64 bytesPerValue = 28;
/// The same for each object or list.
constexpr qint64 bytesPerContainer = 156;
/// Deflate cannot do better than this; a longer announced length is a lie.
constexpr qint64 maxDeflateRatio = 1032;

/// How much text is expanded at a time.
constexpr int pieceBytes = 64 * 1024;

bool startsValue(char c)
{
    return c == ',' || c == ':';
}

bool startsContainer(char c)
{
    return c == '[' || c == '{';
}

bool endsString(char c)
{
    return c == '"' || c == '\\';
}

qint64 announcedLength(const QByteArray& compressed)
{
    return qFromBigEndian<quint32>(compressed.constData());
}

/// Whether the length that stands in front of a stream can be true.
bool isLengthPossible(const QByteArray& compressed)
{
    return compressed.size() > TInflater::lengthPrefix &&
           announcedLength(compressed) <= TJsonCost::maxParseBytes &&
           announcedLength(compressed) / maxDeflateRatio <= compressed.size();
}

} // namespace

void TJsonCost::add(const char* data, qint64 size)
{
    m_textBytes += size;
    const char* const end = data + size;
    for (const char* at = data; at != end;)
        at = m_inString ? addQuoted(at, end) : addPlain(at, end);
}

const char* TJsonCost::addPlain(const char* from, const char* end)
{
    // Long stretches of numbers make this the inner loop of loading; memchr is faster than std::find.
    const auto* const quote =
        static_cast<const char*>(std::memchr(from, '"', static_cast<size_t>(end - from)));
    m_inString = quote != nullptr;
    const char* const stop = m_inString ? quote : end;
    m_valueBytes += bytesPerValue * std::count_if(from, stop, startsValue) +
                    bytesPerContainer * std::count_if(from, stop, startsContainer);
    return m_inString ? quote + 1 : end;
}

const char* TJsonCost::addQuoted(const char* from, const char* end)
{
    const char* const at = m_escaped ? from : std::find_if(from, end, endsString);
    const char* const next = at == end ? end : at + 1;
    m_stringBytes += next - from;
    if (at == end)
        return end;
    m_inString = m_escaped || *at == '\\';
    m_escaped = !m_escaped && *at == '\\';
    return next;
}

bool TJsonCost::isAffordable() const
{
    // Strings that are not plain ASCII are kept in two bytes a character.
    return m_heldBytes + m_textBytes + 2 * m_stringBytes + m_valueBytes <= maxParseBytes;
}

QJsonObject parseBoundedJson(const QByteArray& text)
{
    TJsonCost cost;
    cost.add(text.constData(), text.size());
    return cost.isAffordable() ? QJsonDocument::fromJson(text).object() : QJsonObject();
}

bool expandBoundedJson(const QByteArray& compressed, const TTakePiece& take)
{
    if (!isLengthPossible(compressed))
        return false;
    TInflater inflater(compressed);
    TJsonCost cost(compressed.size());
    const auto piece = std::make_unique_for_overwrite<char[]>(pieceBytes);
    while (const int size = inflater.read(piece.get(), pieceBytes)) {
        cost.add(piece.get(), size);
        if (!cost.isAffordable())
            return false;
        take(piece.get(), size);
    }
    return inflater.finished();
}

QByteArray expandBoundedJson(const QByteArray& compressed)
{
    QByteArray text;
    if (isLengthPossible(compressed))
        text.reserve(static_cast<int>(announcedLength(compressed)));
    const bool isWhole =
        expandBoundedJson(compressed, [&text](const char* data, int size) { text.append(data, size); });
    return isWhole ? text : QByteArray();
}
