#pragma once

#include <QByteArray>
#include <QJsonObject>

#include <functional>

/// Guards in front of Qt's JSON parser, so that a poisoned file is turned away before it takes memory: the
/// parser needs many times the size of a text that is all brackets and commas.
class TJsonCost
{
public:
    /// Largest memory that bytes, text and parsed document may take together. A stress test of nine hours
    /// stays below.
    static constexpr qint64 maxParseBytes = 240LL * 1024 * 1024;

    /// `heldBytes` are in memory besides the text, such as its compressed form.
    explicit TJsonCost(qint64 heldBytes = 0) : m_heldBytes(heldBytes) {}

    /// Adds the next piece of the text.
    void add(const char* data, qint64 size);
    /// Whether the text seen so far may be given to the parser.
    bool isAffordable() const;

private:
    // Each returns where it stopped: behind the string or in front of it, or at the end.
    const char* addPlain(const char* from, const char* end);
    const char* addQuoted(const char* from, const char* end);

    qint64 m_heldBytes;
    qint64 m_textBytes = 0;
    qint64 m_stringBytes = 0;
    qint64 m_valueBytes = 0;
    bool m_inString = false;
    bool m_escaped = false;
};

/// The document as an object; empty if the text is broken, is no object or would cost too much.
QJsonObject parseBoundedJson(const QByteArray& text);

/// Expands the `qCompress` form. Empty if the bytes are damaged, cut short, too large, or a text that the
/// JSON parser could not afford.
QByteArray expandBoundedJson(const QByteArray& compressed);

using TTakePiece = std::function<void(const char* data, int size)>;
/// The same, handing out the text piece by piece without keeping it. False if there is something wrong, which
/// may show after the first pieces.
bool expandBoundedJson(const QByteArray& compressed, const TTakePiece& take);
