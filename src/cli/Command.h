#pragma once

#include "cli/Options.h"

#include <memory>
#include <vector>

class LocalStudyDatabase;
class TJsonOutput;

/// What a command works with.
class TCommandContext
{
public:
    TCommandContext(const QString& dataFolder, const TCommandWords& words, TJsonOutput& output);
    ~TCommandContext();
    TCommandContext(const TCommandContext&) = delete;
    TCommandContext& operator=(const TCommandContext&) = delete;

    /// The store, opened at the first call: a command looks at its arguments before anything is made on disk.
    LocalStudyDatabase& database();
    const QString& dataFolder() const { return m_dataFolder; }
    const QStringList& arguments() const { return m_words.arguments; }
    const TOptions& options() const { return m_words.options; }
    TJsonOutput& output() { return m_output; }

private:
    QString m_dataFolder;
    TCommandWords m_words;
    TJsonOutput& m_output;
    std::unique_ptr<LocalStudyDatabase> m_database;
};

/// One command of the tool. A command is added by a row in a table such as `studyCommands`; a further table
/// is added to `allCommands`.
struct TCommand
{
    const char* name;
    const char* arguments; ///< as the help shows them; each word is one argument
    const char* summary;
    void (*run)(TCommandContext& context);
    std::span<const TOption> options = {};

    int argumentCount() const;
};

/// The commands on studies, archives and protocols.
std::span<const TCommand> studyCommands();
/// The commands on the stored signal.
std::span<const TCommand> signalCommands();

/// The commands that measure recordings.
std::span<const TCommand> analysisCommands();

/// The import of WFDB records.
std::span<const TCommand> wfdbCommands();

/// The recording of examinations.
std::span<const TCommand> recordCommands();

std::vector<const TCommand*> allCommands();

/// Null if there is no such command.
const TCommand* findCommand(const QString& name);

/// Throws TUsageError unless the command takes these options and so many arguments.
TCommandWords parseCommandWords(const TCommand& command, const QStringList& words);

/// What --help prints.
QString helpText();
