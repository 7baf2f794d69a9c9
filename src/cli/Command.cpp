#include "cli/Command.h"

#include "study/LocalStudyDatabase.h"

#include <algorithm>

TCommandContext::TCommandContext(const QString& dataFolder, const QStringList& arguments, TJsonOutput& output)
    : m_dataFolder(dataFolder), m_arguments(arguments), m_output(output)
{
}

TCommandContext::~TCommandContext() = default;

LocalStudyDatabase& TCommandContext::database()
{
    if (!m_database)
        m_database = std::make_unique<LocalStudyDatabase>(m_dataFolder);
    return *m_database;
}

int TCommand::argumentCount() const
{
    return QString::fromLatin1(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts).size();
}

const TCommand* findCommand(const QString& name)
{
    const auto commands = studyCommands();
    const auto found = std::find_if(commands.begin(), commands.end(), [&name](const TCommand& command) {
        return name == QLatin1String(command.name);
    });
    return found == commands.end() ? nullptr : &*found;
}

void checkArguments(const TCommand& command, const QStringList& arguments)
{
    for (const QString& argument : arguments) {
        if (argument.startsWith(QLatin1String("--")))
            throw TUsageError(QStringLiteral("Unknown option %1").arg(argument));
    }
    if (arguments.size() != command.argumentCount()) {
        throw TUsageError(QStringLiteral("Usage: velantor-cli %1 %2")
                              .arg(QLatin1String(command.name), QLatin1String(command.arguments))
                              .trimmed());
    }
}

QString helpText()
{
    QString text =
        QStringLiteral("Usage: velantor-cli [--data DIR] COMMAND [ARGUMENTS]\n"
                       "\n"
                       "Works with the studies of Velantor ECG without a screen. Prints JSON, one object\n"
                       "a line; errors go to standard error.\n"
                       "\n"
                       "Options:\n"
                       "  --data DIR   the data folder, made on first use; without it, the folder of\n"
                       "               the desktop program\n"
                       "  --help       show this text\n"
                       "  --version    show the version\n"
                       "\n"
                       "Commands:\n");
    for (const TCommand& command : studyCommands()) {
        const QString call =
            QStringLiteral("%1 %2").arg(QLatin1String(command.name), QLatin1String(command.arguments));
        text += QStringLiteral("  %1\n      %2\n").arg(call.trimmed(), QLatin1String(command.summary));
    }
    return text +
           QStringLiteral("\nExit status: 0 done, 1 the command failed, 2 the command line is wrong.\n");
}
