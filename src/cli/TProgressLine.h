#pragma once

#include <QString>

/// A line on the terminal, if there is one, that is written again and again while something goes on.
class TProgressLine
{
public:
    TProgressLine();
    /// Leaves the terminal to whoever comes next.
    ~TProgressLine();
    TProgressLine(const TProgressLine&) = delete;
    TProgressLine& operator=(const TProgressLine&) = delete;

    void show(const QString& text);

private:
    bool m_isOn;
    bool m_isShown = false;
};
