#pragma once

#include <QString>
#include <QStringList>

/// The command line, taken apart.
struct TArguments
{
    bool help = false;
    bool version = false;
    QString dataFolder;
    QString command;
    QStringList commandArguments;
};

/// `words` without the program's own name. Throws TUsageError.
TArguments parseArguments(const QStringList& words);

/// A whole number of `minimum` or more. Throws TUsageError that names the argument.
int parseNumber(const QString& word, const char* argumentName, int minimum);

/// A finite number of `minimum` or more. Throws TUsageError that names the argument.
double parseReal(const QString& word, const char* argumentName, double minimum);

/// Where the desktop program keeps its studies.
QString defaultDataFolder();
