#include "study/JsonBounds.h"

#include <QJsonDocument>
#include <QtEndian>

#include <zlib.h>

#include <optional>
#include <vector>

namespace {

/// What Qt's parser keeps for each value, growth of its arrays included. Arrays grow by doubling: at 28 the
/// largest affordable one stays below the step to 16 million values.
constexpr qint64 bytesPerValue = 28;
/// What it keeps in addition for each array and object.
constexpr qint64 bytesPerContainer = 128;
constexpr qint64 lengthPrefix = 4;
/// Deflate cannot do better than this; a longer announced length is a lie.
constexpr qint64 maxDeflateRatio = 1032;

class TInflater
{
public:
    explicit TInflater(const QByteArray& compressed)
    {
        m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(compressed.constData() + lengthPrefix));
        m_stream.avail_in = static_cast<uInt>(compressed.size() - lengthPrefix);
        m_ready = inflateInit(&m_stream) == Z_OK;
    }
    ~TInflater() { inflateEnd(&m_stream); }
    TInflater(const TInflater&) = delete;
    TInflater& operator=(const TInflater&) = delete;

    /// Bytes written, 0 at the end or on damage; `finished` tells which.
    qint64 read(std::vector<char>& buffer)
    {
        if (!m_ready || m_finished)
            return 0;
        m_stream.next_out = reinterpret_cast<Bytef*>(buffer.data());
        m_stream.avail_out = static_cast<uInt>(buffer.size());
        const int result = inflate(&m_stream, Z_NO_FLUSH);
        m_finished = result == Z_STREAM_END;
        m_ready = result == Z_OK;
        return m_ready || m_finished ? static_cast<qint64>(buffer.size()) - m_stream.avail_out : 0;
    }

    bool finished() const { return m_finished; }

private:
    z_stream m_stream{};
    bool m_ready = false;
    bool m_finished = false;
};

/// The true expanded length, found without keeping the text.
std::optional<qint64> measureExpanded(const QByteArray& compressed)
{
    TInflater inflater(compressed);
    TJsonCost cost;
    std::vector<char> buffer(256 * 1024);
    qint64 total = 0;
    while (const qint64 size = inflater.read(buffer)) {
        total += size;
        cost.add(buffer.data(), size);
        if (!cost.isAffordable())
            return std::nullopt;
    }
    return inflater.finished() ? std::optional(total) : std::nullopt;
}

} // namespace

void TJsonCost::add(const char* data, qint64 size)
{
    m_textBytes += size;
    for (const char* at = data; at != data + size; ++at) {
        const char c = *at;
        if (m_inString) {
            ++m_stringBytes;
            if (m_escaped)
                m_escaped = false;
            else if (c == '\\')
                m_escaped = true;
            else if (c == '"')
                m_inString = false;
        } else if (c == '"') {
            m_inString = true;
        } else {
            m_values += c == ',' || c == ':' || c == '[' || c == '{';
            m_containers += c == '[' || c == '{';
        }
    }
}

bool TJsonCost::isAffordable() const
{
    // Strings that are not plain ASCII are kept in two bytes a character.
    return m_textBytes <= maxTextBytes &&
           m_textBytes + 2 * m_stringBytes + bytesPerValue * m_values + bytesPerContainer * m_containers <=
               maxParseBytes;
}

QJsonObject parseBoundedJson(const QByteArray& text)
{
    TJsonCost cost;
    cost.add(text.constData(), text.size());
    return cost.isAffordable() ? QJsonDocument::fromJson(text).object() : QJsonObject();
}

QByteArray expandBoundedJson(QByteArray compressed)
{
    if (compressed.size() <= lengthPrefix)
        return {};
    const qint64 announced = qFromBigEndian<quint32>(compressed.constData());
    if (announced > TJsonCost::maxTextBytes || announced / maxDeflateRatio > compressed.size())
        return {};
    const std::optional<qint64> length = measureExpanded(compressed);
    if (!length || *length == 0)
        return {};
    // With the true length in front, qUncompress allocates once and never has to guess.
    qToBigEndian(static_cast<quint32>(*length), compressed.data());
    return qUncompress(compressed);
}
