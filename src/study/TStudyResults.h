#pragma once

#include "study/TResultItem.h"

#include <map>
#include <memory>

/// The named results of a study. The set of names is fixed: every entry exists from the start, readers of
/// files fill those that they find. Millivolts, millivolts per second, mmHg and seconds.
class TStudyResults
{
public:
    TStudyResults();

    /// Walks the names in sorted order with a cursor of its own; an empty name is the end.
    QByteArray first();
    QByteArray next();

    /// Null for an unknown name.
    TResultItem* get(const QByteArray& name);
    const TResultItem* get(const QByteArray& name) const;

    // Shortcuts by kind; null for an unknown name or another kind.
    TResultValue* value(const QByteArray& name);
    TResultList* list(const QByteArray& name);
    TResultTrend* trend(const QByteArray& name);

    /// "STLevelTrend(3)" for "STLevelTrend(%i)" and channel 3.
    static QByteArray channelName(const char* pattern, int channel);

    const std::map<QByteArray, std::unique_ptr<TResultItem>>& items() const { return m_items; }

private:
    QByteArray nameAtCursor() const;

    std::map<QByteArray, std::unique_ptr<TResultItem>> m_items;
    std::map<QByteArray, std::unique_ptr<TResultItem>>::const_iterator m_cursor;
};
