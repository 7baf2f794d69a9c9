#pragma once

#include <limits>

class TSignal;

/// Consumes a signal as it grows and appends what it computes to another one. Both are borrowed and outlive
/// the processor's last `run`.
class TStreamProcessor
{
public:
    TStreamProcessor() = default;
    virtual ~TStreamProcessor() = default;
    TStreamProcessor(const TStreamProcessor&) = delete;
    TStreamProcessor& operator=(const TStreamProcessor&) = delete;

    /// Starts afresh on `source` at sample index `position`, one below 0 counts as 0. What the source no
    /// longer holds reads 0.
    virtual void attach(TSignal* source, int position);
    /// Consumes what the source has beyond `position()`; does nothing without source or sink. The sink gets
    /// the frames in pieces rather than one by one, so its listeners are told once per piece.
    virtual void run() = 0;
    /// The same, but takes nothing from the sample index `end` of the source on.
    void runTo(int end);

    /// The sink should have the source's number of channels; further ones get 0.
    void setSink(TSignal* sink) { m_sink = sink; }

    TSignal* source() const { return m_source; }
    TSignal* sink() const { return m_sink; }
    /// Next sample index of the source to consume.
    int position() const { return m_position; }

protected:
    void setPosition(int position) { m_position = position; }
    /// Samples of the source beyond `position()`, as far as this run may take them.
    int available() const;

private:
    TSignal* m_source = nullptr;
    TSignal* m_sink = nullptr;
    int m_position = 0;
    int m_end = std::numeric_limits<int>::max();
};
