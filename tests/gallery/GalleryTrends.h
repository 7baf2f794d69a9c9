#pragma once

#include "display/TPlotSource.h"
#include "study/TResultItem.h"

/// A trend of a study as a plot draws it, with the trend of the lower values for range marks.
class TTrendSource : public TPlotSource
{
public:
    explicit TTrendSource(const TResultTrend& trend) : m_trend(trend), m_second(trend) {}
    TTrendSource(const TResultTrend& trend, const TResultTrend& second) : m_trend(trend), m_second(second) {}

    int count() const override { return m_trend.count(); }
    double x(int index) const override { return m_trend.timeAt(index); }
    double y(int index) const override { return m_trend.valueAtIndex(index); }
    double secondY(int index) const override { return m_second.valueAt(m_trend.timeAt(index)); }

private:
    const TResultTrend& m_trend;
    const TResultTrend& m_second;
};

/// The trends of an exercise test of 15 minutes: rest, stages of 3 minutes from the second minute on,
/// recovery from the eleventh.
struct GalleryTrends
{
    GalleryTrends();

    static constexpr double duration = 900.0;
    static constexpr double stageStart = 300.0;
    static constexpr double stageEnd = 480.0;

    TResultTrend heartRate{"BPMTrend"};
    TResultTrend systolic{"sysBPTrend"};
    TResultTrend diastolic{"diaBPTrend"};
    TResultTrend doubleProduct{"DPTrend"};
    /// mm
    TResultTrend stLevel{"STLevelTrend(7)"};
    TResultTrend mets{"METSTrend"};

    TTrendSource heartRateSource{heartRate};
    TTrendSource pressureSource{systolic, diastolic};
    TTrendSource doubleProductSource{doubleProduct};
    TTrendSource stSource{stLevel};
    TTrendSource metsSource{mets};
};
