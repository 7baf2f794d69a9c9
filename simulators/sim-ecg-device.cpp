#include "base/Error.h"
#include "simulators/TEcgDeviceSimulator.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <csignal>
#include <cstdio>

namespace {

volatile std::sig_atomic_t stopRequested = 0;

void requestStop(int)
{
    stopRequested = 1;
}

const QStringList sampleNames = {QStringLiteral("I"),   QStringLiteral("II"), QStringLiteral("III"),
                                 QStringLiteral("V1"),  QStringLiteral("V2"), QStringLiteral("V3"),
                                 QStringLiteral("V4"),  QStringLiteral("V5"), QStringLiteral("V6"),
                                 QStringLiteral("CM5"), QStringLiteral("CR5")};

void addOptions(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "A simulated ECG device. Prints the path of its port and serves it until it is stopped."));
    parser.addHelpOption();
    const auto option = [&parser](const char* name, const char* text, const char* value,
                                  const char* fallback) {
        parser.addOption(QCommandLineOption(QLatin1String(name), QLatin1String(text), QLatin1String(value),
                                            QLatin1String(fallback)));
    };
    parser.addOption({QStringLiteral("high-rate"), QStringLiteral("the family of 1000 frames a second")});
    parser.addOption({QStringLiteral("verbose"), QStringLiteral("tell each command on standard error")});
    option("source", "\"pattern\", a 14-channel .dat file or a WFDB record", "SOURCE", "pattern");
    option("range", "millivolts of full scale for a WFDB record; 450, or 300 for high-rate", "MV", "0");
    option("link", "symbolic link under which the port is found", "PATH", "");
    option("speed", "times real time; 0 is as fast as the program reads", "FACTOR", "1");
    option("frames", "end of the stream after so many frames", "N", "-1");
    option("electrodes-off", "electrodes that are off: LA,LL,RA,V1,...,V6", "LIST", "");
    option("saturate", "channel at the end of its range: I, II, III, V1 to V6, CM5, CR5", "CHANNEL", "");
    option("battery", "battery voltage", "VOLTS", "3.0");
    option("garble", "probability that a byte is changed", "P", "0");
    option("lose", "probability that a byte is lost", "P", "0");
    option("seed", "of the random faults", "N", "1");
    option("stall", "silence from second A on for B seconds", "A:B", "");
    option("hang-up", "pulled cable from second A on for B seconds", "A:B", "");
    option("identify", "answer to the identify command", "TEXT", "ECG");
}

TEcgDeviceOptions::TOutage outageOf(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char(':'));
    if (parts.size() != 2)
        return {};
    return {parts.at(0).toDouble(), parts.at(1).toDouble()};
}

TEcgDeviceOptions optionsOf(const QCommandLineParser& parser)
{
    const auto value = [&parser](const char* name) { return parser.value(QLatin1String(name)); };
    TEcgDeviceOptions options;
    options.isHighRate = parser.isSet(QStringLiteral("high-rate"));
    options.link = value("link").toStdString();
    options.speed = std::max(0.0, value("speed").toDouble());
    options.frameLimit = value("frames").toLongLong();
    for (const QString& electrode : value("electrodes-off").split(QLatin1Char(','), Qt::SkipEmptyParts))
        options.electrodesOff.push_back(electrode.toStdString());
    options.saturatedSample = sampleNames.indexOf(value("saturate"));
    options.batteryVolts = value("battery").toDouble();
    options.garbledBytes = value("garble").toDouble();
    options.lostBytes = value("lose").toDouble();
    options.seed = value("seed").toUInt();
    options.stall = outageOf(value("stall"));
    options.hangUp = outageOf(value("hang-up"));
    options.identifyText = value("identify").toStdString();
    return options;
}

void serve(const QCommandLineParser& parser)
{
    const TEcgDeviceOptions options = optionsOf(parser);
    const double range = parser.value(QStringLiteral("range")).toDouble();
    const double defaultRange = options.isHighRate ? 300.0 : 450.0;
    TEcgDeviceSimulator device(options, sim::makeSampleSource(parser.value(QStringLiteral("source")),
                                                              options.isHighRate ? 1000 : 500,
                                                              range > 0.0 ? range : defaultRange));
    if (parser.isSet(QStringLiteral("verbose")))
        device.onCommand = [](int command) { std::fprintf(stderr, "command %d\n", command); };
    std::printf("%s\n", device.path().c_str());
    std::fflush(stdout);
    device.run([] { return stopRequested != 0; });
    std::fprintf(stderr, "%lld frames sent\n", static_cast<long long>(device.framesSent()));
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    std::signal(SIGINT, requestStop);
    std::signal(SIGTERM, requestStop);
    QCommandLineParser parser;
    addOptions(parser);
    parser.process(application);
    try {
        serve(parser);
        return 0;
    } catch (const TError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
