#include "cli/JsonOutput.h"

#include "base/Error.h"

#include <QJsonDocument>

#include <cstdio>

TJsonOutput::TJsonOutput()
{
    m_file.open(stdout, QIODevice::WriteOnly);
}

void TJsonOutput::writeLine(const QJsonObject& object)
{
    writeLine(QJsonDocument(object).toJson(QJsonDocument::Compact));
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

void TJsonOutput::finish()
{
    if (!m_file.flush())
        throw TError("Write error");
}

void TJsonOutput::write(const QByteArray& bytes)
{
    if (m_file.write(bytes) != bytes.size())
        throw TError("Write error");
}
