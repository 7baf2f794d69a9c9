#include "cli/Arguments.h"

#include "base/Constants.h"
#include "cli/Options.h"

#include <QDir>
#include <QStandardPaths>

TArguments parseArguments(const QStringList& words)
{
    TArguments arguments;
    arguments.dataFolder = defaultDataFolder();
    int next = 0;
    for (; next < words.size() && words.at(next).startsWith(QLatin1Char('-')); ++next) {
        const QString& word = words.at(next);
        if (word == QLatin1String("--help") || word == QLatin1String("-h")) {
            arguments.help = true;
        } else if (word == QLatin1String("--version")) {
            arguments.version = true;
        } else if (word == QLatin1String("--data")) {
            if (++next == words.size() || words.at(next).isEmpty())
                throw TUsageError(QStringLiteral("--data needs a folder"));
            arguments.dataFolder = QDir(words.at(next)).absolutePath();
        } else {
            throw TUsageError(QStringLiteral("Unknown option %1").arg(word));
        }
    }
    if (next < words.size()) {
        arguments.command = words.at(next);
        arguments.commandArguments = words.mid(next + 1);
    }
    if (arguments.commandArguments.contains(QStringLiteral("--help")))
        arguments.help = true;
    return arguments;
}

int parseNumber(const QString& word, const char* argumentName, int minimum)
{
    bool isNumber = false;
    const int number = word.toInt(&isNumber);
    if (!isNumber || number < minimum)
        throw TUsageError(QStringLiteral("%1 is not a valid %2").arg(word, QLatin1String(argumentName)));
    return number;
}

QString defaultDataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QLatin1Char('/') +
           QLatin1String(velantor::dataFolderName);
}
