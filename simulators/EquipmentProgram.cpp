#include "simulators/EquipmentProgram.h"

#include "base/Error.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <csignal>
#include <cstdio>

namespace sim {

namespace {

using TFault = TEquipmentSimulatorOptions::TFault;
using TFile = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

volatile std::sig_atomic_t stopRequested = 0;

void requestStop(int)
{
    stopRequested = 1;
}

void addOptions(QCommandLineParser& parser, const char* description)
{
    parser.setApplicationDescription(
        QLatin1String(description) +
        QLatin1String(" Prints the path of its port and serves it until it is stopped."));
    parser.addHelpOption();
    const auto option = [&parser](const char* name, const char* text, const char* value,
                                  const char* fallback) {
        parser.addOption(QCommandLineOption(QLatin1String(name), QLatin1String(text), QLatin1String(value),
                                            QLatin1String(fallback)));
    };
    option("link", "symbolic link under which the port is found", "PATH", "");
    option("log", "file for the lines that tell each message, instead of standard output", "FILE", "");
    option("fault", "silent, short, late or hang-up", "FAULT", "none");
    option("after", "messages before the fault", "N", "0");
    option("times", "messages that the fault lasts; below 0 for good", "N", "-1");
    option("late", "milliseconds of a late answer", "MS", "1000");
}

TFault faultOf(const QString& name)
{
    const QStringList names = {QStringLiteral("none"), QStringLiteral("silent"), QStringLiteral("short"),
                               QStringLiteral("late"), QStringLiteral("hang-up")};
    const int index = names.indexOf(name);
    if (index < 0)
        throw TError(QStringLiteral("Unknown fault %1").arg(name));
    return static_cast<TFault>(index);
}

int numberOf(const QCommandLineParser& parser, const char* option)
{
    const QString text = parser.value(QLatin1String(option));
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber)
        throw TError(QStringLiteral("--%1 takes a whole number, not %2").arg(QLatin1String(option), text));
    return number;
}

TEquipmentSimulatorOptions optionsOf(const QCommandLineParser& parser)
{
    TEquipmentSimulatorOptions options;
    options.link = parser.value(QStringLiteral("link")).toStdString();
    options.fault = faultOf(parser.value(QStringLiteral("fault")));
    options.faultAfter = numberOf(parser, "after");
    options.faultTimes = numberOf(parser, "times");
    options.lateMs = std::max(0, numberOf(parser, "late"));
    return options;
}

int keepOpen(std::FILE*)
{
    return 0;
}

TFile openLog(const QString& path)
{
    if (path.isEmpty())
        return {stdout, keepOpen};
    std::FILE* const file = std::fopen(path.toLocal8Bit().constData(), "a");
    if (!file)
        throw TError("Cannot create file");
    return {file, std::fclose};
}

/// Bytes that are no printable text are shown by their value.
std::string printable(const std::string& text)
{
    std::string shown;
    for (const char byte : text) {
        char escaped[8];
        std::snprintf(escaped, sizeof escaped, "\\x%02x", static_cast<unsigned char>(byte));
        shown += byte > ' ' && byte <= '~' ? std::string(1, byte) : std::string(escaped);
    }
    return shown;
}

void serve(TEquipmentSimulator& device, const QString& logPath)
{
    const TFile log = openLog(logPath);
    device.onMessage = [&log](const TReceivedMessage& message) {
        std::fprintf(log.get(), "%.3f %s %s\n", message.seconds, printable(message.text).c_str(),
                     message.isValid() ? "ok" : message.remark.c_str());
        std::fflush(log.get());
    };
    std::printf("%s\n", device.path().c_str());
    std::fflush(stdout);
    device.run([] { return stopRequested != 0; });
    const std::vector<TReceivedMessage> messages = device.messages();
    const auto wrong = std::count_if(messages.begin(), messages.end(),
                                     [](const TReceivedMessage& message) { return !message.isValid(); });
    std::fprintf(stderr, "%d messages, %d wrong\n", static_cast<int>(messages.size()),
                 static_cast<int>(wrong));
}

} // namespace

int runEquipmentProgram(
    int argc, char* argv[], const char* description,
    const std::function<std::unique_ptr<TEquipmentSimulator>(const TEquipmentSimulatorOptions&)>& makeDevice)
{
    QCoreApplication application(argc, argv);
    std::signal(SIGINT, requestStop);
    std::signal(SIGTERM, requestStop);
    QCommandLineParser parser;
    addOptions(parser, description);
    parser.process(application);
    try {
        serve(*makeDevice(optionsOf(parser)), parser.value(QStringLiteral("log")));
        return 0;
    } catch (const TError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}

} // namespace sim
