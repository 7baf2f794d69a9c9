#include "analysis/filters/FirTables.h"

#include "analysis/filters/FirUnfold.h"
#include "base/Constants.h"

#include <array>

using namespace velantor;
using velantor::taps::unfold;

namespace {

constexpr char notchFilter60Hz[] = "60hz";
constexpr char muscleFilter25Hz[] = "25hz";

using TTable = std::vector<double>;

/// A filter at 250, 500 and 1000 samples per second.
using TTables = std::array<TTable, 3>;

const TTable* tableAt(const TTables& tables, int samplingRate)
{
    switch (samplingRate) {
    case 250:
        return &tables[0];
    case 500:
        return &tables[1];
    case 1000:
        return &tables[2];
    default:
        return nullptr;
    }
}

/// Outer values of opposite sign, which cancel at every frequency.
TTable withFirstTurned(TTable table)
{
    table.front() = -table.front();
    return table;
}

} // namespace

const TTable* velantor::highPassTable(int samplingRate)
{
    static const TTable table = unfold(taps::highPass500);
    return samplingRate == 500 ? &table : nullptr;
}

const TTable* velantor::notchTable(const QByteArray& name, int samplingRate)
{
    static const TTables at50{unfold(taps::notch50At250), unfold(taps::notch50At500),
                              unfold(taps::notch50At1000)};
    static const TTables at60{unfold(taps::notch60At250), unfold(taps::notch60At500),
                              unfold(taps::notch60At1000)};
    if (name == notchFilter50Hz)
        return tableAt(at50, samplingRate);
    return name == notchFilter60Hz ? tableAt(at60, samplingRate) : nullptr;
}

const TTable* velantor::muscleTable(const QByteArray& name, int samplingRate)
{
    static const TTables at25{unfold(taps::muscle250), unfold(taps::muscle25At500),
                              unfold(taps::muscle25At1000)};
    static const TTables at40{unfold(taps::muscle250), unfold(taps::muscle40At500),
                              unfold(taps::muscle40At1000)};
    static const TTables others{unfold(taps::muscle250), TTable(), TTable()};
    if (name == muscleFilter25Hz)
        return tableAt(at25, samplingRate);
    return tableAt(name == muscleFilter40Hz ? at40 : others, samplingRate);
}

const TTable* velantor::baselineTable(int samplingRate)
{
    static const TTables tables{withFirstTurned(unfold(taps::baseline250)), unfold(taps::baseline500),
                                unfold(taps::baseline1000)};
    return tableAt(tables, samplingRate);
}
