#include "analysis/filters/SmoothingTables.h"

#include "analysis/filters/FirUnfold.h"

using velantor::taps::unfold;

namespace {

constexpr velantor::taps::THalfTable<25> smoothing25Half{
    {0.0043996, 0.0056271, 0.0088415, 0.0141294, 0.0213604, 0.0301867, 0.0400671, 0.0503131, 0.0601533,
     0.0688084, 0.0755696, 0.0798707, 0.0813464}};

} // namespace

const std::vector<double>& velantor::smoothing25()
{
    static const auto table = unfold(smoothing25Half);
    return table;
}

const std::vector<double>& velantor::smoothing51()
{
    static const auto table = unfold(taps::smoothing51);
    return table;
}

const std::vector<double>& velantor::monitorDecimation()
{
    static const auto table = unfold(taps::decimation29);
    return table;
}

const std::vector<double>& velantor::averagingLowPass(int samplingRate)
{
    static const auto at250 = unfold(taps::muscle250);
    static const auto at500 = unfold(taps::muscle40At500);
    static const auto atOthers = unfold(taps::muscle40At1000);
    if (samplingRate == 250)
        return at250;
    return samplingRate == 500 ? at500 : atOthers;
}
