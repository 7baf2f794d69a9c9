#pragma once

#include <QDateTime>
#include <QString>

#include <vector>

struct StudyInfo;

/// A study of the recent list, as it is shown.
struct TRecentStudy
{
    QString id;
    QString patient; ///< "last, first"
    QDateTime time;  ///< invalid if the study had none

    bool operator==(const TRecentStudy&) const = default;
};

/// The studies that were made last, newest first, which the settings remember. An entry is one text, its
/// parts joined with "||"; an entry of other parts than four, such as one of a name with "||" in it, is
/// passed over.
class RecentStudies
{
public:
    static constexpr int mostKept = 10;
    static constexpr int mostShown = 5;

    /// The study comes first; the oldest ones go.
    static void add(const StudyInfo& info);
    /// Takes away the first entry that begins with the digits of the id. They are compared as text: 12 finds
    /// 123 too, if that comes first.
    static void remove(qint32 id);
    /// At most `mostShown`.
    static std::vector<TRecentStudy> shown();
};
