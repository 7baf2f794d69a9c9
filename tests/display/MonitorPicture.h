#pragma once

#include "analysis/signals/TInt16Signal.h"
#include "display/ColorTags.h"
#include "display/PageLayout.h"
#include "display/PaintCounter.h"
#include "display/QSignalMonitorDisplay.h"

#include <QImage>
#include <QtTest>

#include <cmath>
#include <vector>

/// A live display on plain paper, and its picture pixel by pixel. Everything in device pixels.
struct MonitorPicture
{
    static constexpr int rate = 500;
    /// 32768 counts are 10 mV.
    static constexpr double range = 10.0;

    explicit MonitorPicture(int channels = 1, int signalRate = rate)
        : signal(512, 40 * signalRate, channels, signalRate)
    {
        signal.setRange(-range, range);
        for (const int tag : {BackgroundColor, GridColor, LabelColor})
            display.setColor(tag, Qt::white);
        display.setColor(CursorColor, Qt::blue);
        display.setColor(AverageBeatColor, Qt::green);
        display.setColor(FiducialColor, Qt::red);
        display.resize(600, 300);
    }

    void show()
    {
        display.show();
        QVERIFY(QTest::qWaitForWindowExposed(&display));
        display.setSignal(&signal);
    }

    /// Appends samples of one value to all channels.
    void add(int count, int value)
    {
        const std::vector<short> frames(count * signal.channelCount(), static_cast<short>(value));
        signal.addInterleaved(reinterpret_cast<const char*>(frames.data()),
                              static_cast<int>(frames.size() * sizeof(short)));
    }

    QImage take()
    {
        const QPixmap pixmap = display.grab();
        scale = PageScale::of(pixmap, display.devicePixelRatioF());
        layout = layOutPage(scale, display.speed(), 0.0);
        thickness = scale.penWidth(1.0);
        return pixmap.toImage().convertToFormat(QImage::Format_RGB32);
    }

    double countHeight() const { return scale.pixelsPerCount(signal, display.amplitude()); }
    /// Where a value is drawn in a row of so many.
    int y(double counts, int row = 0, int rows = 1) const
    {
        const double centre = (row + 0.5) * scale.height / rows;
        return static_cast<int>(centre - counts * countHeight());
    }

    TInt16Signal signal;
    QSignalMonitorDisplay display;
    // Known once a picture was taken.
    PageScale scale;
    PageLayout layout;
    int thickness = 1;
};

inline bool isColor(const QImage& image, int x, int y, const QColor& color)
{
    return image.valid(x, y) && image.pixelColor(x, y) == color;
}

/// How many pixels within the rectangle have the colour.
inline int countColor(const QImage& image, const QRect& area, const QColor& color)
{
    int count = 0;
    const QRect inside = area.intersected(image.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x)
            count += image.pixelColor(x, y) == color;
    }
    return count;
}

inline int countOther(const QImage& image, const QRect& area, const QColor& color)
{
    const QRect inside = area.intersected(image.rect());
    return inside.width() * inside.height() - countColor(image, inside, color);
}
