#include "cli/RecordOptions.h"

#include "base/Text.h"
#include "cli/Arguments.h"
#include "cli/PatientOptions.h"

#include <algorithm>
#include <limits>

using velantor::toText;

namespace {

constexpr TOption options[] = {
    {"--source", "demo|demo:FILE|usb|PORT"},
    {"--high-rate"},
    {"--reduced-channels"},
    {"--unpaced"},
    {"--ecg"},
    {"--protocol", "NAME"},
    {"--tilt"},
    {"--equipment", "olmo:PORT|kipmachines:PORT"},
    patientOption,
    {"--stop-after", "S"},
    {"--stage-scale", "F"},
    {"--bp", "T:SYS/DIA", true},
    {"--event", "T:TEXT", true},
    {"--next-stage", "T", true},
    {"--recovery", "T", true},
    {"--beats"},
};

/// The tilt test stands among the protocols where users choose, but not in their table.
constexpr char tiltTestName[] = "Tilt test";

double parsePositive(const QString& word, const char* name)
{
    return parseReal(word, name, std::numeric_limits<double>::min());
}

/// In mmHg; as in the window that takes pressures, three digits are all there is room for.
double parsePressure(const QString& word, const char* name)
{
    constexpr double tooHigh = 1000.0;
    const double pressure = parsePositive(word, name);
    if (pressure >= tooHigh)
        throw TUsageError(QStringLiteral("%1 is not a valid %2").arg(word, QLatin1String(name)));
    return pressure;
}

/// The two parts of a word; `form` tells what it should look like.
std::pair<QString, QString> split(const QString& word, QChar separator, const char* form)
{
    const int place = word.indexOf(separator);
    if (place <= 0 || place + 1 == word.size())
        throw TUsageError(QStringLiteral("%1 is not a %2").arg(word, QLatin1String(form)));
    return {word.left(place), word.mid(place + 1)};
}

void takeSource(TRecordOptions& record, const TOptions& given)
{
    const QString source = given.value("--source");
    const QString demoFile = QStringLiteral("demo:");
    if (source.isEmpty() || source == demoFile)
        throw TUsageError(QStringLiteral("record needs --source demo|demo:FILE|usb|PORT"));
    if (source == QLatin1String("usb")) {
        record.source = TRecordOptions::Usb;
    } else if (source.startsWith(demoFile)) {
        record.place = source.mid(demoFile.size());
    } else if (source != QLatin1String("demo")) {
        record.source = TRecordOptions::Port;
        record.place = source;
    }
    record.highRate = given.has("--high-rate");
    record.unpaced = given.has("--unpaced");
    if (record.source == TRecordOptions::Demo && record.highRate)
        throw TUsageError(QStringLiteral("--high-rate is for devices, not for a demonstration"));
    if (record.source != TRecordOptions::Demo && record.unpaced)
        throw TUsageError(QStringLiteral("--unpaced is for a demonstration alone"));
}

void takeTest(TRecordOptions& record, const TOptions& given)
{
    const int tests = int(given.has("--ecg")) + int(given.has("--protocol")) + int(given.has("--tilt"));
    if (tests != 1)
        throw TUsageError(QStringLiteral("record needs one of --ecg, --protocol NAME and --tilt"));
    if (given.has("--protocol")) {
        record.test = TRecordOptions::StressTest;
        record.protocolName = toText(given.value("--protocol"));
    }
    if (given.has("--tilt") || record.protocolName == tiltTestName) {
        record.test = TRecordOptions::TiltTest;
        record.protocolName = tiltTestName;
    }
    // A tilt test lasts long and looks at the rhythm.
    record.reducedChannels = given.has("--reduced-channels") || record.test == TRecordOptions::TiltTest;
}

void takeEquipment(TRecordOptions& record, const TOptions& given)
{
    if (!given.has("--equipment"))
        return;
    if (record.test != TRecordOptions::StressTest)
        throw TUsageError(QStringLiteral("--equipment is for stress tests alone"));
    const QString word = given.value("--equipment");
    std::tie(record.equipmentName, record.equipmentPort) =
        split(word, QLatin1Char(':'), "olmo:PORT or kipmachines:PORT");
    if (record.equipmentName != QLatin1String("olmo") && record.equipmentName != QLatin1String("kipmachines"))
        throw TUsageError(QStringLiteral("%1 is not an olmo:PORT or kipmachines:PORT").arg(word));
}

TTimedAction timedAction(TTimedAction::TKind kind, const QString& time)
{
    TTimedAction action;
    action.kind = kind;
    action.time = parseReal(time, "time", 0.0);
    return action;
}

TTimedAction bloodPressure(const QString& word)
{
    const auto [time, pressures] = split(word, QLatin1Char(':'), "T:SYS/DIA");
    const auto [systolic, diastolic] = split(pressures, QLatin1Char('/'), "SYS/DIA");
    TTimedAction action = timedAction(TTimedAction::BloodPressure, time);
    action.systolic = parsePressure(systolic, "systolic pressure");
    action.diastolic = parsePressure(diastolic, "diastolic pressure");
    return action;
}

TTimedAction event(const QString& word)
{
    const auto [time, text] = split(word, QLatin1Char(':'), "T:TEXT");
    TTimedAction action = timedAction(TTimedAction::Event, time);
    action.text = toText(text.trimmed());
    if (action.text.isEmpty())
        throw TUsageError(QStringLiteral("%1 is not a T:TEXT").arg(word));
    return action;
}

/// Texts that the examination itself fills must not be given: they would be lost without a word.
void takePatient(TRecordOptions& record, const TOptions& given)
{
    for (const QString& assignment : given.values(patientOption.name)) {
        const QString key = assignment.section(QLatin1Char('='), 0, 0);
        if (key == QLatin1String("studyType") || key == QLatin1String("protocolName") ||
            key == QLatin1String("studyDateTime"))
            throw TUsageError(QStringLiteral("Unknown patient key %1").arg(key));
    }
    record.patient = studyInfoFrom(given);
}

/// A pressure belongs to the stage that runs; so what goes to another stage at the same time comes after it.
void takeActions(TRecordOptions& record, const TOptions& given)
{
    for (const QString& word : given.values("--bp"))
        record.actions.push_back(bloodPressure(word));
    for (const QString& word : given.values("--event"))
        record.actions.push_back(event(word));
    for (const QString& word : given.values("--next-stage"))
        record.actions.push_back(timedAction(TTimedAction::NextStage, word));
    for (const QString& word : given.values("--recovery"))
        record.actions.push_back(timedAction(TTimedAction::Recovery, word));
    std::stable_sort(record.actions.begin(), record.actions.end(),
                     [](const TTimedAction& a, const TTimedAction& b) { return a.time < b.time; });
}

} // namespace

std::span<const TOption> recordOptions()
{
    return options;
}

TRecordOptions parseRecordOptions(const TOptions& given)
{
    TRecordOptions record;
    takeSource(record, given);
    takeTest(record, given);
    takeEquipment(record, given);
    takeActions(record, given);
    takePatient(record, given);
    if (given.has("--stop-after"))
        record.stopAfter = parsePositive(given.value("--stop-after"), "number of seconds");
    if (given.has("--stage-scale"))
        record.stageScale = parsePositive(given.value("--stage-scale"), "scale");
    record.tellsBeats = given.has("--beats");
    return record;
}
