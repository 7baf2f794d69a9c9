#include "base/Constants.h"
#include "base/Error.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/JsonOutput.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

namespace {

enum ExitStatus
{
    Done = 0,
    Failed = 1,
    WrongCommandLine = 2
};

void complain(const char* text)
{
    // One line, whatever stands in the text.
    const QByteArray line = QByteArray(text).simplified();
    std::fprintf(stderr, "%s\n", line.constData());
}

void runCommand(const TArguments& arguments)
{
    const TCommand* command = findCommand(arguments.command);
    if (command == nullptr)
        throw TUsageError(QStringLiteral("Unknown command %1").arg(arguments.command));
    const TCommandWords words = parseCommandWords(*command, arguments.commandArguments);

    TJsonOutput output;
    TCommandContext context(arguments.dataFolder, words, output);
    command->run(context);
    output.finish();
}

void print(const QByteArray& text)
{
    if (std::fputs(text.constData(), stdout) < 0 || std::fflush(stdout) != 0)
        throw TError("Write error");
}

void run(const TArguments& arguments)
{
    if (arguments.help)
        print(helpText().toUtf8());
    else if (arguments.version)
        print(QByteArray("velantor-cli ") + velantor::applicationVersion + '\n');
    else if (arguments.command.isEmpty())
        throw TUsageError(QStringLiteral("No command; see velantor-cli --help"));
    else
        runCommand(arguments);
}

} // namespace

int main(int argc, char* argv[])
{
    // A reader that goes away and a file that may not grow are told like a full disk, as a write that failed.
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN);
#endif
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QLatin1String(velantor::organizationName));
    QCoreApplication::setApplicationName(QLatin1String(velantor::applicationName));
    QCoreApplication::setApplicationVersion(QLatin1String(velantor::applicationVersion));
    try {
        run(parseArguments(QCoreApplication::arguments().mid(1)));
        return Done;
    } catch (const TUsageError& error) {
        complain(error.what());
        return WrongCommandLine;
    } catch (const std::exception& error) {
        complain(error.what());
        return Failed;
    }
}
