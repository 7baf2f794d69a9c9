#pragma once

#include <QSize>

class QPixmap;
class TSignal;

/// What a picture's pixels are worth. All lengths are device pixels; figures that are meant as pixels of a
/// plain screen (gaps, pen widths, font sizes) go through `px` and `penWidth`, so that a dense screen shows
/// the same picture, only sharper.
struct PageScale
{
    int width = 0;
    int height = 0;
    double ratio = 1.0;
    double widthMm = 0.0;
    double pixelsPerCm = 0.0;

    /// `reportedMm` is the physical width that a picture of this many pixels tells for a plain screen. Where
    /// it gives less than 50 or more than 400 dots per inch, 96 are taken.
    static PageScale of(QSize devicePixels, double reportedMm, double ratio);
    static PageScale of(const QPixmap& pixmap, double ratio);

    /// Time across the whole picture; `speed` in mm/s. See `isUsablePage`.
    double pageSeconds(double speed) const { return widthMm / speed; }
    /// Height of one count of the signal; `amplitude` in mm/mV.
    double pixelsPerCount(const TSignal& signal, double amplitude) const;

    /// A length in pixels of a plain screen.
    int px(double length) const;
    /// At least one pixel.
    int penWidth(double width) const;
};

/// Whether a page lasts a time that can be drawn: finite and above 0.
bool isUsablePage(double pageSeconds);
