#include "study/TProtocolTable.h"

// The protocols as published by their authors, preceded by a rest stage and followed by our recovery stages.

namespace {

using enum TStagePhase;

constexpr double restSeconds = 300.0;

struct TTreadmillStep
{
    double duration; ///< seconds
    double speed;    ///< km/h
    double incline;  ///< percent
};

TStressProtocol treadmill(const char* name, const std::vector<TTreadmillStep>& exercise)
{
    TStressProtocol protocol(name, TProtocolType::Treadmill);
    protocol.addStage(Rest, restSeconds, 0.0, 0.0);
    for (const TTreadmillStep& step : exercise)
        protocol.addStage(Exercise, step.duration, step.speed, step.incline);
    for (const double duration : {60.0, 180.0, 300.0})
        protocol.addStage(Recovery, duration, 0.0, 0.0);
    return protocol;
}

/// Exercise in steps of `duration` seconds, from `first` watts on, `step` watts more each, `count` times.
TStressProtocol ergometer(const char* name, double duration, double first, double step, int count,
                          double secondRecovery)
{
    TStressProtocol protocol(name, TProtocolType::Ergometer);
    protocol.addStage(Rest, restSeconds, 0.0);
    for (int i = 0; i < count; ++i)
        protocol.addStage(Exercise, duration, first + i * step);
    for (const double recovery : {60.0, secondRecovery, 300.0})
        protocol.addStage(Recovery, recovery, 0.0);
    return protocol;
}

TStressProtocol balkeWare()
{
    constexpr double speed = 5.4;
    std::vector<TTreadmillStep> exercise{{120, speed, 0}};
    for (int incline = 2; incline <= 25; ++incline)
        exercise.push_back({60, speed, static_cast<double>(incline)});
    return treadmill("Balke-Ware", exercise);
}

} // namespace

TProtocolTable TProtocolTable::builtIn()
{
    const TStressProtocol protocols[] = {
        treadmill("Bruce", {{180, 2.7, 10},
                            {180, 4.0, 12},
                            {180, 5.4, 14},
                            {180, 6.7, 16},
                            {180, 8.0, 18},
                            {180, 8.8, 20},
                            {180, 9.6, 22}}),
        treadmill("Bruce (modif.)", {{180, 2.7, 0},
                                     {180, 2.7, 5},
                                     {180, 2.7, 10},
                                     {180, 4.0, 12},
                                     {180, 5.4, 14},
                                     {180, 6.7, 16},
                                     {180, 8.0, 18},
                                     {180, 8.8, 20}}),
        balkeWare(),
        treadmill("Naughton", {{120, 3.2, 0},
                               {120, 3.2, 3.5},
                               {120, 3.2, 7},
                               {120, 3.2, 10.5},
                               {120, 3.2, 14},
                               {120, 3.2, 17.5},
                               {120, 3.2, 21}}),
        ergometer("Who", 180, 25, 25, 8, 180),
        ergometer("Astrand (m.)", 120, 100, 50, 5, 120),
        ergometer("Astrand (f.)", 120, 50, 25, 5, 120),
    };
    TProtocolTable table;
    for (const TStressProtocol& protocol : protocols)
        table.set(protocol.name(), protocol);
    return table;
}

TStressProtocol TStressProtocol::tiltTest()
{
    TStressProtocol protocol("Tilt test", TProtocolType::TiltTest);
    protocol.addStage(Rest, 600.0);
    for (int i = 0; i < 12; ++i)
        protocol.addStage(Recovery, 180.0);
    return protocol;
}
