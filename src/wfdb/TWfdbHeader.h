#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

/// One signal line of a WFDB header.
struct TWfdbSignal
{
    QByteArray fileName;   ///< in the folder of the header
    int format = 0;        ///< 16 or 212
    qint64 byteOffset = 0; ///< of the first sample in the file
    double gain = 200.0;   ///< ADC units per physical unit
    int baseline = 0;      ///< ADC units at a physical value of 0
    QByteArray units = "mV";
    QByteArray description; ///< the name of a lead, mostly

    /// Millivolts of a value in ADC units.
    double millivolts(int value) const { return (value - baseline) / gain * millivoltsPerUnit(); }

private:
    double millivoltsPerUnit() const;
};

/// The text header of a WFDB record (PhysioNet, header(5) of the WFDB Applications Guide). One segment,
/// signals of one frequency, formats 16 and 212.
struct TWfdbHeader
{
    static constexpr int maxSignals = 64;

    double frequency = 250.0; ///< samples per second per signal
    qint64 sampleCount = 0;   ///< per signal; 0 if the header does not tell
    std::vector<TWfdbSignal> channels;

    /// Throws TError "Cannot read WFDB header" for a file that cannot be read, is broken or is of another
    /// form.
    static TWfdbHeader read(const QString& path);
};
