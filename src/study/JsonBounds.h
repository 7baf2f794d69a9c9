#pragma once

#include <QByteArray>
#include <QJsonObject>

/// Guards in front of Qt's JSON parser, so that a poisoned file is turned away before it takes memory: the
/// parser needs many times the size of a text that is all brackets and commas.
class TJsonCost
{
public:
    /// Largest text that is read at all.
    static constexpr qint64 maxTextBytes = 256LL * 1024 * 1024;
    /// Largest memory that text and parsed document may take together. A stress test of nine hours stays
    /// below.
    static constexpr qint64 maxParseBytes = 240LL * 1024 * 1024;

    /// Adds the next piece of the text.
    void add(const char* data, qint64 size);
    /// Whether the text seen so far may be given to the parser.
    bool isAffordable() const;

private:
    qint64 m_textBytes = 0;
    qint64 m_stringBytes = 0;
    qint64 m_values = 0;
    qint64 m_containers = 0;
    bool m_inString = false;
    bool m_escaped = false;
};

/// The document as an object; empty if the text is broken, is no object or would cost too much.
QJsonObject parseBoundedJson(const QByteArray& text);

/// Expands the `qCompress` form. Empty if the bytes are damaged, cut short, too large, or a text that the
/// JSON parser could not afford.
QByteArray expandBoundedJson(QByteArray compressed);
