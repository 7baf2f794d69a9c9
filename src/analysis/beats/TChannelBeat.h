#pragma once

/// One channel's view of one candidate for a beat. Positions are sample indices of the analysis signal,
/// `absent` where the wave was not found. A wave is there if its type is not 0; the type is +1 if the
/// negative wavelet extreme comes first (an upright wave), -1 if the positive one does.
struct TChannelBeat
{
    static constexpr int absent = -999999999;

    int rPosition = absent; ///< where the detector found the complex
    int pPeak = absent;
    int qrsOnset = absent;
    int rPeak = absent;
    int qrsOffset = absent;
    int tPeak = absent;
    int isoelectricPoint = absent; ///< flat, before the complex
    int stPoint = absent;          ///< end of the complex by the coarsest scale
    int qrsStart = absent;         ///< outer bounds of the complex, beyond its first and last wave
    int qrsEnd = absent;
    int pStart = absent;
    int pEnd = absent;
    int tStart = absent;
    int tEnd = absent;
    short pType = 0;
    short qrsType = 0;
    short tType = 0;

    static bool known(int position) { return position != absent; }
    bool hasQrs() const { return qrsType != 0; }
};
