#pragma once

#include <QByteArray>

#include <memory>
#include <vector>

/// Something that was noted during a recording.
struct TStudyEvent
{
    qint32 index = 0;      ///< its place when it was added
    double position = 0.0; ///< seconds from the start of the recording
    double duration = 0.0; ///< seconds
    QByteArray description;
    bool print = true; ///< whether the report prints its strip

    void setDescription(const QByteArray& text) { description = text; }
};

/// The events of a study in the order in which they were added. Events stay where they are in memory until
/// they are removed.
class TStudyEvents
{
public:
    int count() const { return static_cast<int>(m_events.size()); }
    /// `i` must be below `count()`.
    TStudyEvent& at(int i) { return *m_events.at(static_cast<std::size_t>(i)); }
    const TStudyEvent& at(int i) const { return *m_events.at(static_cast<std::size_t>(i)); }

    TStudyEvent& add()
    {
        m_events.push_back(std::make_unique<TStudyEvent>());
        m_events.back()->index = count() - 1;
        return *m_events.back();
    }

    /// An index out of range removes nothing.
    void remove(int i)
    {
        if (i >= 0 && i < count())
            m_events.erase(m_events.begin() + i);
    }

private:
    std::vector<std::unique_ptr<TStudyEvent>> m_events;
};
