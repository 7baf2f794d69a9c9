#pragma once

#include "display/QPlotGraphic.h"

#include <QImage>
#include <QtTest>

/// A plot of 400 by 200 pixels without labels, one pixel for each unit; its series is drawn in red.
struct TPicture
{
    TPicture()
    {
        plot.resize(400, 200);
        plot.setXLabelsVisible(false);
        plot.setYLabelsVisible(false);
        plot.setXRange(0, 400);
        plot.setYRange(0, 200);
        plot.setTraceColor(Qt::red);
        plot.show();
        if (!QTest::qWaitForWindowExposed(&plot))
            qFatal("The plot is not shown.");
    }

    QImage image() { return plot.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    QColor at(int x, int y)
    {
        const QImage picture = image();
        const double ratio = picture.devicePixelRatioF();
        return picture.pixelColor(static_cast<int>((x + 0.5) * ratio), static_cast<int>((y + 0.5) * ratio));
    }
    /// The part of the picture that has exactly this colour, in pixels of the widget.
    double areaOf(const QColor& color)
    {
        const QImage picture = image();
        int count = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                count += picture.pixel(x, y) == color.rgb() ? 1 : 0;
        }
        return count / picture.devicePixelRatioF() / picture.devicePixelRatioF();
    }

    QPlotGraphic plot;
};
