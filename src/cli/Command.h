#pragma once

#include <QString>
#include <QStringList>

#include <memory>
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
class TCommandContext
{
public:
    TCommandContext(const QString& dataFolder, const QStringList& arguments, TJsonOutput& output);
    ~TCommandContext();
    TCommandContext(const TCommandContext&) = delete;
    TCommandContext& operator=(const TCommandContext&) = delete;

    /// The store, opened at the first call: a command looks at its arguments before anything is made on disk.
    LocalStudyDatabase& database();
    const QString& dataFolder() const { return m_dataFolder; }
    const QStringList& arguments() const { return m_arguments; }
    TJsonOutput& output() { return m_output; }

private:
    QString m_dataFolder;
    QStringList m_arguments;
    TJsonOutput& m_output;
    std::unique_ptr<LocalStudyDatabase> m_database;
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
