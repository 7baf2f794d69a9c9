#include "fuzz/WfdbInput.h"

#include "fuzz/ScratchFolder.h"
#include "fuzz/TFuzzReader.h"

TWfdbInput TWfdbInput::fromBytes(const QByteArray& input)
{
    TFuzzReader reader(input);
    TWfdbInput files;
    files.header = reader.block();
    files.annotations = reader.block();
    files.second = reader.block();
    files.first = reader.rest();
    return files;
}

QByteArray TWfdbInput::toBytes() const
{
    return TFuzzReader::makeBlock(header) + TFuzzReader::makeBlock(annotations) +
           TFuzzReader::makeBlock(second) + first;
}

bool TWfdbInput::write(const QString& folder) const
{
    const QString record = folder + QStringLiteral("/r");
    return writeFile(record + QStringLiteral(".hea"), header) &&
           writeFile(record + QStringLiteral(".atr"), annotations) &&
           writeFile(folder + QStringLiteral("/s.dat"), second) &&
           writeFile(record + QStringLiteral(".dat"), first);
}
