#pragma once

#include <QString>
#include <QStringList>

#include <span>
#include <stdexcept>

class LocalStudyDatabase;
class TJsonOutput;

/// The command line is wrong; the text says how.
class TUsageError : public std::runtime_error
{
public:
    explicit TUsageError(const QString& text) : std::runtime_error(text.toStdString()) {}
};

/// What a command works with.
struct TCommandContext
{
    LocalStudyDatabase& database;
    TJsonOutput& output;
    QStringList arguments;
};

/// One command of the tool. A command is added by a row in a table such as `studyCommands`.
struct TCommand
{
    const char* name;
    const char* arguments; ///< as the help shows them; each word is one argument
    const char* summary;
    void (*run)(TCommandContext& context);

    int argumentCount() const;
};

/// The commands on studies, archives and protocols.
std::span<const TCommand> studyCommands();

/// Null if there is no such command.
const TCommand* findCommand(const QString& name);

/// Throws TUsageError unless the command takes so many arguments.
void checkArguments(const TCommand& command, const QStringList& arguments);

/// What --help prints.
QString helpText();
