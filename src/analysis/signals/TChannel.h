#pragma once

#include <QByteArray>

class TSignal;

/// One channel of a signal, owned by it.
class TChannel
{
public:
    TChannel(TSignal* signal, int index) : m_signal(signal), m_index(index) {}
    virtual ~TChannel() = default;
    TChannel(const TChannel&) = delete;
    TChannel& operator=(const TChannel&) = delete;

    /// Condenses `count` samples from `start` on into `width` columns for drawing: the least and the greatest
    /// sample of each column go to `low[offset + i]` and `high[offset + i]`. A column looks at about 16
    /// samples at most and begins with the last sample of the one before, so that neighbours touch. With
    /// `wrap` the columns beyond the end of the signal show the page before, `count` samples earlier. Nothing
    /// is written if `count` or `width` is 0 or `count` is less than `width`.
    virtual void peaks(int start, int count, int* low, int* high, int offset, int width, bool wrap);

    /// Integer mean of `n` samples, truncated.
    int mean(int start, int n);

    /// The first stretch within [start, end) that lies outside [low, high]: `first` is its first sample,
    /// `last` the first sample inside again, or `end`. False if there is none.
    bool findOutside(int start, int end, int low, int high, int* first, int* last);

    int index() const { return m_index; }
    TSignal* signal() const { return m_signal; }
    const QByteArray& name() const { return m_name; }
    void setName(const QByteArray& name) { m_name = name; }

private:
    TSignal* m_signal;
    int m_index;
    QByteArray m_name;
};
