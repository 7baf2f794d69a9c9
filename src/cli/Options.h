#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <span>
#include <stdexcept>

/// The command line is wrong; the text says how.
class TUsageError : public std::runtime_error
{
public:
    explicit TUsageError(const QString& text) : std::runtime_error(text.toStdString()) {}
};

/// An option that a command takes, anywhere behind its name: `--flag` or `--key VALUE`.
struct TOption
{
    const char* name;            ///< with its dashes
    const char* value = nullptr; ///< the word behind it as the help shows it; null for a flag
    bool repeatable = false;
};

/// The options that were given to a command.
class TOptions
{
public:
    bool has(const char* name) const { return m_values.contains(QLatin1String(name)); }
    /// The value of an option; `otherwise` if it was not given.
    QString value(const char* name, const QString& otherwise = {}) const;
    /// All values of an option in the order given.
    QStringList values(const char* name) const { return m_values.value(QLatin1String(name)); }

    /// `value` is empty for a flag. Throws TUsageError if an option comes again that is not repeatable.
    void add(const TOption& option, const QString& value);

private:
    QHash<QString, QStringList> m_values;
};

/// What stands behind a command's name, taken apart.
struct TCommandWords
{
    QStringList arguments;
    TOptions options;
};

/// Throws TUsageError for an option that is not `known`, lacks its value or may not be repeated. The word
/// behind an option with a value is that value unless it begins with two dashes.
TCommandWords parseCommandWords(std::span<const TOption> known, const QStringList& words);

/// "[--flag] [--key VALUE] [--key VALUE]...": the options as the help shows them, one to an element.
QStringList describeOptions(std::span<const TOption> known);
