#include "cli/JsonOutput.h"

#include "base/Error.h"

#include <QJsonDocument>

#include <cerrno>
#include <cstdio>

namespace {

QByteArray textOf(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

TJsonOutput::TJsonOutput()
{
    m_file.open(stdout, QIODevice::WriteOnly);
}

void TJsonOutput::writeLine(const QJsonObject& object)
{
    writeLine(textOf(object));
}

void TJsonOutput::writeLine(const QByteArray& json)
{
    write(json + '\n');
}

void TJsonOutput::writeValues(int count, const std::function<int(int)>& valueAt)
{
    constexpr int chunk = 64 * 1024;
    QByteArray text = "{\"values\":[";
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            text += ',';
        text += QByteArray::number(valueAt(i));
        if (text.size() >= chunk) {
            write(text);
            text.clear();
        }
    }
    write(text + "]}\n");
}

void TJsonOutput::beginList(const char* name)
{
    m_isListEmpty = true;
    write(QByteArray("{\"") + name + "\":[");
}

void TJsonOutput::writeListed(const QJsonObject& object)
{
    write((m_isListEmpty ? "" : ",") + textOf(object));
    m_isListEmpty = false;
}

void TJsonOutput::endList(const QJsonObject& rest)
{
    // The brace of the rest was opened with the list.
    write("]," + textOf(rest).mid(1) + '\n');
}

void TJsonOutput::finish()
{
    errno = 0;
    if (!m_file.flush())
        fail();
}

/// Right after the call that failed: why is known by the number that it left.
void TJsonOutput::fail()
{
    m_isReaderGone = errno == EPIPE;
    throw TError("Write error");
}

void TJsonOutput::write(const QByteArray& bytes)
{
    errno = 0;
    if (m_file.write(bytes) != bytes.size())
        fail();
}
