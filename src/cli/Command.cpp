#include "cli/Command.h"

#include "study/LocalStudyDatabase.h"

#include <algorithm>

namespace {

constexpr int helpWidth = 78;

/// Everything the help shows of a call, in pieces that belong on one line.
QStringList describeCall(const TCommand& command)
{
    const QStringList words{QLatin1String(command.name), QLatin1String(command.arguments)};
    return QStringList(words.join(QLatin1Char(' ')).trimmed()) + describeOptions(command.options);
}

/// The call in as many lines as it needs, those from the second on further to the right.
QString wrapCall(const TCommand& command)
{
    QString text;
    QString line = QStringLiteral(" ");
    for (const QString& piece : describeCall(command)) {
        if (line.size() + 1 + piece.size() > helpWidth) {
            text += line + QLatin1Char('\n');
            line = QString(9, QLatin1Char(' '));
        }
        line += QLatin1Char(' ') + piece;
    }
    return text + line + QLatin1Char('\n');
}

} // namespace

TCommandContext::TCommandContext(const QString& dataFolder, const TCommandWords& words, TJsonOutput& output)
    : m_dataFolder(dataFolder), m_words(words), m_output(output)
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

std::vector<const TCommand*> allCommands()
{
    std::vector<const TCommand*> commands;
    for (const auto table :
         {studyCommands(), recordCommands(), signalCommands(), analysisCommands(), wfdbCommands()}) {
        for (const TCommand& command : table)
            commands.push_back(&command);
    }
    return commands;
}

const TCommand* findCommand(const QString& name)
{
    const auto commands = allCommands();
    const auto found = std::find_if(commands.begin(), commands.end(), [&name](const TCommand* command) {
        return name == QLatin1String(command->name);
    });
    return found == commands.end() ? nullptr : *found;
}

TCommandWords parseCommandWords(const TCommand& command, const QStringList& words)
{
    TCommandWords parsed = parseCommandWords(command.options, words);
    if (parsed.arguments.size() != command.argumentCount())
        throw TUsageError(QStringLiteral("Usage: velantor-cli ") +
                          describeCall(command).join(QLatin1Char(' ')));
    return parsed;
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
    for (const TCommand* command : allCommands())
        text += wrapCall(*command) + QStringLiteral("      %1\n").arg(QLatin1String(command->summary));
    return text +
           QStringLiteral("\nExit status: 0 done, 1 the command failed, 2 the command line is wrong.\n");
}
