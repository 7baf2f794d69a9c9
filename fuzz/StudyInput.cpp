#include "fuzz/StudyInput.h"

#include "base/Constants.h"
#include "fuzz/TFuzzReader.h"

QByteArray studyFileFromInput(const QByteArray& input)
{
    TFuzzReader reader(input);
    const auto form = static_cast<TStudyForm>(reader.byte() % static_cast<int>(TStudyForm::Count));
    switch (form) {
    case TStudyForm::OldText:
        return velantor::studyMagicOld + reader.rest();
    case TStudyForm::CompressedText:
        return compressedStudyFile(reader.rest());
    case TStudyForm::RawFile:
    case TStudyForm::Count:
        break;
    }
    return reader.rest();
}

QByteArray compressedStudyFile(const QByteArray& text)
{
    constexpr int fastest = 1;
    return velantor::studyMagic + qCompress(text, fastest);
}

QByteArray makeStudyInput(TStudyForm form, const QByteArray& content)
{
    return static_cast<char>(form) + content;
}
