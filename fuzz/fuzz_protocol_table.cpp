#include "base/Error.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/ScratchFolder.h"
#include "study/TProtocolTable.h"

// A protocol table of any bytes: what loads is the same after saving and loading.

namespace {

bool load(TProtocolTable& table, const QString& path)
{
    try {
        return table.load(path);
    } catch (const TError&) {
        return false; // empty or too large
    }
}

void checkStages(const TStressProtocol& protocol)
{
    double end = 0.0;
    for (int i = 0; i < protocol.stageCount(); ++i) {
        require(protocol.stage(i).duration() >= 0.0, "a stage lasts");
        end += protocol.stage(i).duration();
    }
    require(protocol.stageAt(end) == -1, "a protocol ends with its last stage");
}

} // namespace

void fuzzOne(const QByteArray& input)
{
    static const TScratchFolder folder;
    const QString path = folder.path("protocols.json");
    require(writeFile(path, input), "the scratch folder takes the file");

    TProtocolTable table;
    if (!load(table, path))
        return;
    table.save(path);
    TProtocolTable again;
    require(load(again, path), "a saved table can be loaded");
    require(again.toJson() == table.toJson() && again.names() == table.names(), "a saved table is the same");
    for (const QByteArray& name : table.names()) {
        require(again.find(name) != nullptr && *again.find(name) == *table.find(name), "so is each protocol");
        checkStages(*table.find(name));
    }
}
