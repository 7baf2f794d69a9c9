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
    /// Hands everything to the operating system.
    void finish();

private:
    void write(const QByteArray& bytes);

    QFile m_file;
};
