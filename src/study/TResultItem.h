#pragma once

#include <QByteArray>

#include <utility>
#include <vector>

/// What a result holds, with its fixed code.
enum class TResultKind
{
    Value = 0,
    ValueArray = 1,
    Trend = 4
};

/// One named result of a study.
class TResultItem
{
public:
    TResultItem(const QByteArray& name, TResultKind kind) : m_name(name), m_kind(kind) {}
    virtual ~TResultItem() = default;
    TResultItem(const TResultItem&) = delete;
    TResultItem& operator=(const TResultItem&) = delete;

    const QByteArray& name() const { return m_name; }
    TResultKind kind() const { return m_kind; }

private:
    QByteArray m_name;
    TResultKind m_kind;
};

/// A single number.
class TResultValue : public TResultItem
{
public:
    explicit TResultValue(const QByteArray& name, double initial = 0.0)
        : TResultItem(name, TResultKind::Value), m_value(initial)
    {
    }

    double value() const { return m_value; }
    void setValue(double value) { m_value = value; }

private:
    double m_value;
};

/// A list of numbers: one per stage, or the times of single happenings.
class TResultList : public TResultItem
{
public:
    /// No recording has as many; what lies beyond is a fault and is passed over.
    static constexpr int maxCount = 1'000'000;

    explicit TResultList(const QByteArray& name) : TResultItem(name, TResultKind::ValueArray) {}

    int count() const { return static_cast<int>(m_values.size()); }
    /// 0.0 past the end.
    double value(int index) const;
    /// Grows the list as needed, with 0.0 between.
    void setValue(int index, double value);
    void setValues(std::vector<double> values);
    void append(double value) { setValue(count(), value); }
    void clear() { m_values.clear(); }
    /// The greatest value, 0.0 if empty.
    double maxValue() const;
    const std::vector<double>& values() const { return m_values; }

private:
    std::vector<double> m_values;
};

/// A value over time: pairs kept sorted by their time, in seconds from the start of the recording.
class TResultTrend : public TResultItem
{
public:
    explicit TResultTrend(const QByteArray& name) : TResultItem(name, TResultKind::Trend) {}

    /// A later time goes to the end, an earlier one moves in; of equal times the later call stands later.
    /// Pairs that are not finite are passed over.
    virtual void add(double time, double value);
    /// Replaces all pairs; what is longer is cut, what is not sorted gets sorted.
    void setPoints(std::vector<double> times, std::vector<double> values);

    int count() const { return static_cast<int>(m_times.size()); }
    void clear();
    /// The greatest value; 0.0 if empty or all are negative.
    double maxValue() const;
    /// The value at the nearest time, the earlier one on a tie; 0.0 if empty.
    double valueAt(double time) const;
    /// Out of range both give 0.0.
    double timeAt(int index) const;
    double valueAtIndex(int index) const;

    const std::vector<double>& times() const { return m_times; }
    const std::vector<double>& values() const { return m_values; }

private:
    std::vector<double> m_times;
    std::vector<double> m_values;
};
