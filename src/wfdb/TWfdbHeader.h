#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>
#include <vector>

/// One signal line of a WFDB header.
struct TWfdbSignal
{
    QByteArray fileName;   ///< in the folder of the header
    int format = 0;        ///< 16 or 212
    qint64 byteOffset = 0; ///< of the first sample in the file
    double gain = 200.0;   ///< ADC units per physical unit; negative for a signal that was turned round
    int baseline = 0;      ///< ADC units at a physical value of 0
    QByteArray units = "mV";
    std::optional<int> initialValue; ///< the first sample, in ADC units
    std::optional<int> checksum;     ///< sum of all samples in ADC units, of which the lower 16 bits count
    QByteArray description;          ///< the name of a lead, mostly

    /// Whether the unit is one of electric potential: V, mV, uV or nV.
    bool isVoltage() const;
    /// Millivolts of a value in ADC units. A unit that is no voltage counts as millivolts.
    double millivolts(int value) const;
};

/// The text header of a WFDB record (PhysioNet, header(5) of the WFDB Applications Guide). One segment,
/// signals of one frequency, formats 16 and 212 without skew.
struct TWfdbHeader
{
    static constexpr int maxSignals = 64;

    double frequency = 250.0; ///< samples per second per signal, up to 100000
    qint64 sampleCount = 0;   ///< per signal; 0 if the header does not tell
    QDateTime baseTime;       ///< of the first sample; invalid unless the header tells date and time
    std::vector<TWfdbSignal> channels;

    /// Throws TError "Cannot read WFDB header" for a file that cannot be read, is broken or is of another
    /// form.
    static TWfdbHeader read(const QString& path);
};
