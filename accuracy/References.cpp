#include "accuracy/References.h"

#include "wfdb/WfdbCodes.h"

#include <algorithm>
#include <optional>

namespace accuracy {

namespace {

/// Takes annotations in their order and makes beats of them.
class TWaveReader
{
public:
    void take(char mnemonic, bool isBeat, double t)
    {
        if (mnemonic == '(')
            begin(t);
        else if (mnemonic == ')')
            end(t);
        else if (isBeat)
            takePeak(TWave::Qrs, t);
        else if (mnemonic == 'p' || mnemonic == 't')
            takePeak(mnemonic == 'p' ? TWave::P : TWave::T, t);
        else if (mnemonic == 'u')
            takePeak(TWave::U, t);
    }

    std::vector<TMarkedBeat> beats() const { return m_beats; }

private:
    enum class TWave
    {
        None,
        P,
        Qrs,
        T,
        U
    };

    void begin(double t)
    {
        m_wave = TWave::None;
        m_onset = t;
    }

    void takePeak(TWave wave, double t)
    {
        // Without a bracket in between it is the second peak of a wave.
        if (wave == m_wave && !m_onset && wave != TWave::Qrs)
            return;
        m_wave = wave;
        if (wave == TWave::P)
            m_p = {m_onset, t, std::nullopt};
        else if (wave == TWave::Qrs)
            addBeat(t);
        else if (wave == TWave::T)
            addT(t);
        m_onset.reset();
    }

    void addBeat(double t)
    {
        TMarkedBeat beat;
        beat.r = t;
        beat.marks[QrsOnset] = m_onset;
        std::copy(m_p.begin(), m_p.end(), beat.marks.begin() + POnset);
        m_p = {};
        m_beats.push_back(beat);
        m_hasT = false;
    }

    void addT(double t)
    {
        if (m_beats.empty() || m_hasT) {
            m_wave = TWave::U;
            return;
        }
        m_beats.back().marks[TOnset] = m_onset;
        m_beats.back().marks[TPeak] = t;
        m_hasT = true;
    }

    void end(double t)
    {
        if (m_wave == TWave::P)
            m_p[2] = t;
        else if (m_wave == TWave::Qrs)
            m_beats.back().marks[QrsOffset] = t;
        else if (m_wave == TWave::T)
            m_beats.back().marks[TOffset] = t;
        m_wave = TWave::None;
    }

    /// The wave whose peak came last and that is not closed.
    TWave m_wave = TWave::None;
    std::optional<double> m_onset;
    /// Onset, peak and offset of a P wave that waits for its beat.
    std::array<std::optional<double>, 3> m_p;
    bool m_hasT = false;
    std::vector<TMarkedBeat> m_beats;
};

double secondsOf(const TWfdbAnnotations& annotations, const TWfdbAnnotation& annotation, double frequency)
{
    const double own = annotations.frequency();
    return static_cast<double>(annotation.sample) / (own > 0.0 ? own : frequency);
}

char mnemonicOf(const TWfdbAnnotation& annotation)
{
    const QByteArray name = wfdb::mnemonicOf(annotation.code);
    return name.isEmpty() ? '\0' : name.at(0);
}

double median(const std::vector<double>& sorted)
{
    const std::size_t half = sorted.size() / 2;
    return sorted.size() % 2 == 1 ? sorted[half] : (sorted[half - 1] + sorted[half]) / 2.0;
}

} // namespace

TBeatReference beatsOf(const TWfdbAnnotations& annotations, double frequency)
{
    TBeatReference reference;
    bool flutters = false;
    double flutterStart = 0.0;
    for (const TWfdbAnnotation& annotation : annotations.list()) {
        const double t = secondsOf(annotations, annotation, frequency);
        const char mnemonic = mnemonicOf(annotation);
        if (wfdb::isBeat(annotation.code))
            reference.beats.push_back(t);
        else if (mnemonic == '[' && !flutters) {
            flutters = true;
            flutterStart = t;
        } else if (mnemonic == ']') {
            reference.excluded.push_back({flutters ? flutterStart : wholeRecord.start, t});
            flutters = false;
        }
    }
    if (flutters)
        reference.excluded.push_back({flutterStart, wholeRecord.end});
    std::sort(reference.beats.begin(), reference.beats.end());
    return reference;
}

std::vector<TMarkedBeat> marksOf(const TWfdbAnnotations& annotations, double frequency)
{
    TWaveReader reader;
    for (const TWfdbAnnotation& annotation : annotations.list())
        reader.take(mnemonicOf(annotation), wfdb::isBeat(annotation.code),
                    secondsOf(annotations, annotation, frequency));
    return reader.beats();
}

TBeatReference readBeats(const QString& path, double frequency)
{
    return beatsOf(TWfdbAnnotations::read(path), frequency);
}

std::vector<TMarkedBeat> readMarks(const QString& path, double frequency)
{
    return marksOf(TWfdbAnnotations::read(path), frequency);
}

TBeatReference mergeLeads(const std::vector<std::vector<TMarkedBeat>>& leads)
{
    std::vector<double> times;
    for (const std::vector<TMarkedBeat>& lead : leads) {
        for (const TMarkedBeat& beat : lead)
            times.push_back(beat.r);
    }
    std::sort(times.begin(), times.end());
    TBeatReference reference;
    for (auto first = times.begin(); first != times.end();) {
        const auto end = std::upper_bound(first, times.end(), *first + matchWindow);
        reference.beats.push_back(median(std::vector<double>(first, end)));
        first = end;
    }
    if (!times.empty())
        reference.marked = {times.front() - matchWindow, times.back() + matchWindow};
    else
        reference.marked = {0.0, -1.0};
    return reference;
}

QStringList leadEndings()
{
    return QStringLiteral("i ii iii avr avl avf v1 v2 v3 v4 v5 v6").split(QLatin1Char(' '));
}

} // namespace accuracy
