#pragma once

#include <QByteArray>
#include <QFile>
#include <QJsonObject>

#include <functional>

/// Standard output of the tool: JSON only, a value a line. Throws TError "Write error" when it takes no more.
class TJsonOutput
{
public:
    TJsonOutput();
    TJsonOutput(const TJsonOutput&) = delete;
    TJsonOutput& operator=(const TJsonOutput&) = delete;

    void writeLine(const QJsonObject& object);
    /// A line of JSON text made elsewhere.
    void writeLine(const QByteArray& json);
    /// {"values":[…]} of `count` whole numbers, fetched one by one, so that any length can be told.
    void writeValues(int count, const std::function<int(int)>& valueAt);
    /// An object that begins with a list of objects, one line in the end. The list's objects are written as
    /// they come, so that any number of them can be told; nothing else may be written in between.
    void beginList(const char* name);
    void writeListed(const QJsonObject& object);
    /// Ends the list and the line with what else the object holds, at least one value.
    void endList(const QJsonObject& rest);
    /// Hands everything to the operating system.
    void finish();

    /// Whether a write failed because nobody reads any more, and not for want of room.
    bool isReaderGone() const { return m_isReaderGone; }

private:
    [[noreturn]] void fail();
    void write(const QByteArray& bytes);

    QFile m_file;
    bool m_isReaderGone = false;
    bool m_isListEmpty = true;
};
