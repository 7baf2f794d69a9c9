#include "accuracy/Options.h"

#include "base/Error.h"

namespace accuracy {

namespace {

QString valueOf(const QStringList& words, int& place)
{
    if (place + 1 == words.size())
        throw TError(QStringLiteral("%1 needs a value").arg(words.at(place)));
    return words.at(++place);
}

int frames(const QString& word)
{
    bool isNumber = false;
    const int number = word.toInt(&isNumber);
    if (!isNumber || number < 1)
        throw TError(QStringLiteral("%1 is no number of frames").arg(word));
    return number;
}

} // namespace

TOptions TOptions::parse(const QStringList& words, const QString& otherwise)
{
    TOptions options;
    options.recordings = qEnvironmentVariable("VELANTOR_RECORDINGS", otherwise);
    for (int i = 0; i < words.size(); ++i) {
        const QString& word = words.at(i);
        if (word == QLatin1String("--help"))
            options.help = true;
        else if (word == QLatin1String("--recordings"))
            options.recordings = valueOf(words, i);
        else if (word == QLatin1String("--records"))
            options.records.append(valueOf(words, i));
        else if (word == QLatin1String("--block"))
            options.block = frames(valueOf(words, i));
        else
            throw TError(QStringLiteral("Unknown option %1").arg(word));
    }
    return options;
}

QString TOptions::helpText()
{
    return QStringLiteral(
        "Usage: accuracy [--recordings DIR] [--records SET[/NAME]]... [--block FRAMES]\n"
        "\n"
        "Holds the analysis of recordings against what people marked in them.\n"
        "Prints tables in Markdown.\n"
        "\n"
        "  --recordings DIR     folder of the sets; without it that of the environment\n"
        "                       variable VELANTOR_RECORDINGS, or the one beside the checkout\n"
        "  --records SET[/NAME] one set or one record; may be repeated\n"
        "  --block FRAMES       how many are analysed at once (4096)\n");
}

} // namespace accuracy
