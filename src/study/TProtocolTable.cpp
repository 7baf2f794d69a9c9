#include "study/TProtocolTable.h"

#include "base/Error.h"
#include "study/StagedFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

/// Room for thousands of protocols; more is not a table of ours.
constexpr qint64 maxTableBytes = 8 * 1024 * 1024;

} // namespace

bool TProtocolTable::load(const QString& path)
{
    m_protocols.clear();
    if (!QFile::exists(path))
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw TError("Cannot open protocol table");
    const QByteArray bytes = file.read(maxTableBytes + 1);
    if (bytes.isEmpty() || bytes.size() > maxTableBytes)
        throw TError("Cannot read protocol table");

    for (const QJsonValue element : QJsonDocument::fromJson(bytes).array()) {
        TStressProtocol protocol = TStressProtocol::fromJson(element.toObject());
        m_protocols.insert_or_assign(protocol.name(), std::move(protocol));
    }
    return !m_protocols.empty();
}

void TProtocolTable::save(const QString& path) const
{
    writeStaged(path, {toJson()});
}

std::vector<QByteArray> TProtocolTable::names() const
{
    std::vector<QByteArray> names;
    for (const auto& [name, protocol] : m_protocols)
        names.push_back(name);
    return names;
}

const TStressProtocol* TProtocolTable::find(const QByteArray& name) const
{
    const auto found = m_protocols.find(name);
    return found == m_protocols.end() ? nullptr : &found->second;
}

void TProtocolTable::set(const QByteArray& name, const TStressProtocol& protocol)
{
    TStressProtocol& stored = m_protocols.insert_or_assign(name, protocol).first->second;
    stored.setName(name);
}

QByteArray TProtocolTable::toJson() const
{
    QJsonArray array;
    for (const auto& [name, protocol] : m_protocols)
        array.append(protocol.toJson());
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}
