#pragma once

#include <QByteArray>

#include <array>

enum class TEchoTime
{
    Rest = 0,
    Peak = 1,
    Post = 2
};

/// Wall motion scores of a stress echocardiogram: one per segment of the left ventricle (16 segment model of
/// the American Society of Echocardiography) at rest, at peak and after the effort.
class TEchoScoring
{
public:
    static constexpr int segmentCount = 16;

    /// Number of the segment of that stored name, 1 to 16; 0 if there is none.
    static int segmentNumber(const QByteArray& storedName);
    /// The name in files, empty outside 1 to 16.
    static QByteArray storedName(int segment);
    /// The name that users see, with its coronary territory; UTF-8, empty outside 1 to 16.
    static QByteArray shownName(int segment);

    /// An unknown name sets nothing.
    void setScore(const QByteArray& storedName, TEchoTime time, qint32 score);
    /// 0 outside 1 to 16.
    qint32 score(int segment, TEchoTime time) const;

    bool operator==(const TEchoScoring&) const = default;

private:
    /// Slot 0 of each time stays unused, so that segments are numbered as cardiologists do.
    std::array<std::array<qint32, segmentCount + 1>, 3> m_scores{};
};
