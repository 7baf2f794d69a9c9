#pragma once

/// The series that a plot draws. Points come in order of rising x; what is not a finite number is left out of
/// the picture. Main thread only.
class TPlotSource
{
public:
    TPlotSource() = default;
    TPlotSource(const TPlotSource&) = delete;
    TPlotSource& operator=(const TPlotSource&) = delete;
    virtual ~TPlotSource() = default;

    virtual int count() const = 0;
    virtual double x(int index) const = 0;
    virtual double y(int index) const = 0;
    /// The other end of a range mark, as the diastolic pressure under the systolic one.
    virtual double secondY(int index) const { return y(index); }
};
