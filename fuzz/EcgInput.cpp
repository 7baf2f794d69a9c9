#include "fuzz/EcgInput.h"

#include "base/Constants.h"
#include "fuzz/TFuzzReader.h"
#include "study/StudyFiles.h"

QByteArray ecgFileFromInput(const QByteArray& input)
{
    TFuzzReader reader(input);
    if (reader.byte() % static_cast<int>(TEcgForm::Count) == static_cast<int>(TEcgForm::RawFile))
        return reader.rest();
    const QByteArray document = reader.block();
    return ecgFile(document, reader.rest());
}

QByteArray ecgFile(const QByteArray& document, const QByteArray& samples)
{
    return (velantor::ecgMagic + document).leftJustified(ecgHeaderSize, '\0', true) + samples;
}

QByteArray makeRawEcgInput(const QByteArray& file)
{
    return static_cast<char>(TEcgForm::RawFile) + file;
}

QByteArray makeEcgInput(const QByteArray& document, const QByteArray& samples)
{
    return static_cast<char>(TEcgForm::Document) + TFuzzReader::makeBlock(document) + samples;
}
