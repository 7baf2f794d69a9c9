#pragma once

#include "study/TStressProtocol.h"

#include <QString>

#include <map>

/// The named protocols of the practice, kept in one JSON file and sorted by name.
class TProtocolTable
{
public:
    /// The protocols that the program ships.
    static TProtocolTable builtIn();

    /// Replaces the table by the file's. False, with an empty table, if the file does not exist or holds no
    /// protocol; throws "Cannot open protocol table" or "Cannot read protocol table".
    bool load(const QString& path);
    /// A table that cannot be written is not reported: the one in memory goes on.
    void save(const QString& path) const;

    std::vector<QByteArray> names() const;
    /// Null if there is no protocol of that name; valid until the table changes.
    const TStressProtocol* find(const QByteArray& name) const;
    /// Stores a copy under `name`, which becomes the copy's own name.
    void set(const QByteArray& name, const TStressProtocol& protocol);
    void remove(const QByteArray& name) { m_protocols.erase(name); }

    /// The whole table in the form of its file.
    QByteArray toJson() const;

private:
    std::map<QByteArray, TStressProtocol> m_protocols;
};
