#pragma once

#include "analysis/beats/TChannelBeat.h"
#include "analysis/detection/TModulusMarks.h"
#include "analysis/detection/TWaveletTransform.h"

#include <vector>

/// Finds the QRS complexes of one channel: pairs of modulus maxima of opposite sign, with a search for missed
/// ones at lower thresholds (after C. Li, C. Zheng and C. Tai, IEEE Trans Biomed Eng 42, 1995, 21-28). A beat
/// is delineated and handed out when the one after it is known.
class TChannelDetector
{
public:
    /// `transform` is borrowed. Without `delineateWaves` only the complexes are delineated.
    TChannelDetector(const TWaveletTransform& transform, int channel, int samplingRate, bool delineateWaves);

    /// Takes the signal over [`from`, `to`), which follows what it took before, and appends the beats that
    /// are complete. Marks of the last 0.25 s wait for the next call, when their partners are known.
    void detect(int from, int to, std::vector<TChannelBeat>& out);
    /// The same for the last stretch of a signal that ends at `to`: nothing waits for a partner, and the last
    /// beat is delineated as if another came after the mean RR interval.
    void finish(int from, int to, std::vector<TChannelBeat>& out);
    /// Begins at `position` and forgets what was before, but for what the channel has learnt of its rhythm.
    void restart(int position);

    double meanRR() const { return m_meanRR; }

private:
    using TMark = TModulusMarks::TMark;

    void startAfreshAfterGap(int from, std::vector<TChannelBeat>& out);
    void closePrevious(std::vector<TChannelBeat>& out);
    void enterMarks(int from, int to);
    TWaveletThresholds measureThresholds(int windowBegin, int windowEnd) const;
    void walkMarks(int limit, std::vector<TChannelBeat>& out);
    void judgePair(const TMark& first, const TMark& second, int limit, std::vector<TChannelBeat>& out);
    bool isPair(const TMark& first, const TMark& second) const;
    int positionBetween(const TMark& first, const TMark& second) const;
    void searchBack(int r, int limit);
    void accept(int r, double rr, std::vector<TChannelBeat>& out);
    void delineatePrevious(int nextR, std::vector<TChannelBeat>& out);

    const TWaveletTransform& m_transform;
    int m_channel;
    int m_rate;
    bool m_delineateWaves;

    TModulusMarks m_marks;
    /// What the present call looks at.
    TWaveletSpan m_span;
    TWaveletThresholds m_thresholds;
    /// Where the walk over the marks has come.
    int m_lastIndex = 0;
    bool m_hasPreviousR = false;
    int m_previousR = 0;
    bool m_searchedBack = false;
    double m_meanRR = 0.75;
    int m_previousWaveEnd = TChannelBeat::absent;
};
