#pragma once

#include "display/PageScale.h"
#include "display/TLeadRows.h"

#include <QColor>
#include <QFont>
#include <QStaticText>

#include <array>

class QPainter;
class TSignal;

/// The names of the leads at the left of their rows. Their layout is kept, for it is drawn with every
/// picture.
class TLeadLabels
{
public:
    void paint(QPainter& painter, const PageScale& scale, const TSignal& signal, const TLeadRows& rows,
               const QColor& color);

    /// The label of a channel: its name, with "-" in front if it is inverted; empty for an empty name.
    static QString text(const TSignal& signal, int channel, bool inverted);

private:
    void setFont(const PageScale& scale);

    QFont m_font;
    double m_fontRatio = 0.0;
    int m_height = 0;
    int m_ascent = 0;
    std::array<QStaticText, velantor::maxChannels> m_texts;
};

/// A font of the displays: "Helvetica", bold, of `size` points on a plain screen.
QFont displayFont(const PageScale& scale, int size);
