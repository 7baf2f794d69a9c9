#include "gallery/GalleryPages.h"

#include "display/ColorSchemes.h"
#include "display/DisplayColorDialog.h"
#include "display/LeadLayout.h"
#include "display/QBeatDisplay.h"
#include "display/QPlotGraphic.h"
#include "display/QSignalBrowseDisplay.h"
#include "display/QSignalMonitorDisplay.h"
#include "gallery/GalleryTrends.h"
#include "gallery/LiveRecording.h"
#include "gallery/StoredRecording.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QMouseEvent>

namespace {

constexpr int leadII = 1;
constexpr int leadV5 = 10;
constexpr int gap = 2;
const QColor stageShade(0, 0, 0, 20);

template <typename Layout> Layout* layOut(QWidget& page)
{
    auto* layout = new Layout(&page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);
    return layout;
}

template <typename Display> void setView(Display& display, const TGalleryView& view)
{
    display.setSpeed(view.speed);
    display.setAmplitude(view.amplitude);
    display.setShowAverageBeat(view.averageBeat);
    applyScheme(view.scheme, &display);
}

QSignalMonitorDisplay* addMonitor(QWidget& page, LiveRecording& recording, const TGalleryView& view)
{
    auto* display = new QSignalMonitorDisplay(&page);
    display->setSignal(&recording.signal());
    display->setAverageBeat(&recording.averageBeat());
    display->setFiducialSource(&recording.fiducialSource());
    display->setSaturationSource(&recording.saturationSource());
    setView(*display, view);
    return display;
}

void setCursors(QBeatDisplay& display, StoredRecording& recording, int channel)
{
    const TAverageBeatDelineator places = recording.delineate(channel);
    const double rate = recording.averageBeat().signal()->samplingRate();
    display.setCursorPosition(pOnCursor, places.pOnset() / rate);
    display.setCursorPosition(pOffCursor, places.pOffset() / rate);
    display.setCursorPosition(pPeakCursor, places.pPeak() / rate);
    display.setCursorPosition(qrsOnCursor, places.qrsOnset() / rate);
    display.setCursorPosition(qrsOffCursor, places.qrsOffset() / rate);
    display.setCursorPosition(tOnCursor, places.tOnset() / rate);
    display.setCursorPosition(tOffCursor, places.tOffset() / rate);
    display.setCursorPosition(tPeakCursor, places.tPeak() / rate);
    display.refresh();
}

QPlotGraphic* addPlot(QWidget& page, const TPlotSource& source, const char* caption, const QColor& color)
{
    auto* plot = new QPlotGraphic(&page);
    plot->setDataSource(&source);
    plot->setCaption(QString::fromLatin1(caption));
    plot->setTraceColor(color);
    plot->setXDateFormat(QStringLiteral("mm:ss"));
    plot->setYWidestLabel(QStringLiteral("00:00"));
    plot->setXRange(0, GalleryTrends::duration);
    plot->setHighlight(0, GalleryTrends::stageStart, GalleryTrends::stageEnd, stageShade);
    plot->autoScale(false, true);
    plot->replot();
    return plot;
}

/// Draws the measuring triangle as a user would.
class TCaliperPage : public QWidget
{
public:
    explicit TCaliperPage(QSignalBrowseDisplay* display) : m_display(display) {}

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        QWidget::resizeEvent(event);
        send(QEvent::MouseMove, {width() / 2, height() / 8}, Qt::NoButton);
        send(QEvent::MouseMove, {width() / 2, height() / 8}, Qt::LeftButton);
        send(QEvent::MouseMove, {width() / 2 + width() / 8, height() / 6}, Qt::LeftButton);
    }

private:
    void send(QEvent::Type type, QPoint position, Qt::MouseButton held)
    {
        QMouseEvent event(type, position, Qt::NoButton, held, Qt::NoModifier);
        QApplication::sendEvent(m_display, &event);
    }

    QSignalBrowseDisplay* m_display;
};

} // namespace

std::unique_ptr<QWidget> makeMonitorPage(LiveRecording& recording, const TGalleryView& view)
{
    auto page = std::make_unique<QWidget>();
    auto* layout = layOut<QHBoxLayout>(*page);
    QSignalMonitorDisplay* first = addMonitor(*page, recording, view);
    QSignalMonitorDisplay* second = addMonitor(*page, recording, view);
    layout->addWidget(first);
    layout->addWidget(second);
    layOutLeads(*first, *second, &recording.signal());
    setHexaxialOrder(*first, &recording.signal(), true);
    return page;
}

std::unique_ptr<QWidget> makeBrowsePage(StoredRecording& recording, const TGalleryView& view, int mouseMode)
{
    auto* display = new QSignalBrowseDisplay;
    auto page =
        mouseMode == CaliperMode ? std::make_unique<TCaliperPage>(display) : std::make_unique<QWidget>();
    layOut<QHBoxLayout>(*page)->addWidget(display);
    display->setSignal(&recording.signal());
    display->setBeatSource(&recording.beatSource());
    display->setAverageBeat(&recording.averageBeat());
    display->setSaturationSource(&recording.saturationSource());
    for (int channel = 12; channel < demoChannels; ++channel)
        display->setChannelVisible(channel, false);
    setView(*display, view);
    display->setMouseMode(mouseMode);
    display->setStartTime(20.0);
    const std::optional<TBeatMark> beat = recording.beatSource().firstBeatAfter(22.0);
    if (mouseMode == SelectBeatsMode && beat)
        display->setSelectedBeat(beat->id);
    return page;
}

std::unique_ptr<QWidget> makeBeatPage(StoredRecording& recording)
{
    auto page = std::make_unique<QWidget>();
    auto* layout = layOut<QHBoxLayout>(*page);
    for (const int channel : {leadII, leadV5}) {
        auto* display = new QBeatDisplay(page.get());
        layout->addWidget(display);
        display->setAverageBeat(&recording.averageBeat());
        display->setChannel(channel);
        setCursors(*display, recording, channel);
    }
    return page;
}

std::unique_ptr<QWidget> makePlotPage(const GalleryTrends& trends)
{
    auto page = std::make_unique<QWidget>();
    auto* layout = layOut<QGridLayout>(*page);
    layout->addWidget(addPlot(*page, trends.heartRateSource, "HR", Qt::darkRed), 0, 0);
    QPlotGraphic* pressure = addPlot(*page, trends.pressureSource, "BP", Qt::darkBlue);
    pressure->setDrawMode(DrawRangeMarks);
    pressure->autoScale(false, true);
    pressure->replot();
    layout->addWidget(pressure, 0, 1);
    QPlotGraphic* product = addPlot(*page, trends.doubleProductSource, "DP", Qt::darkMagenta);
    product->setDrawMode(DrawLinesWithMarkers);
    layout->addWidget(product, 1, 0);
    QPlotGraphic* level = addPlot(*page, trends.stSource, "ST [V2]", Qt::darkGreen);
    level->setYFormat(QStringLiteral("%+.1f"));
    level->replot();
    layout->addWidget(level, 1, 1);
    layout->addWidget(addPlot(*page, trends.metsSource, "METS", Qt::black), 2, 0);
    QPlotGraphic* latest = addPlot(*page, trends.heartRateSource, "HR", Qt::darkRed);
    latest->setXRange(547, 667);
    latest->setYRange(50, 200);
    latest->setCursorMode(1);
    latest->setSelectedX(600);
    layout->addWidget(latest, 2, 1);
    return page;
}

std::unique_ptr<QWidget> makePlotModesPage(const GalleryTrends& trends)
{
    auto page = std::make_unique<QWidget>();
    auto* layout = layOut<QGridLayout>(*page);
    int place = 0;
    for (const int mode : {DrawPoints, DrawLines, DrawLinesWithMarkers, DrawRangeMarks}) {
        for (const bool labels : {true, false}) {
            QPlotGraphic* plot = addPlot(*page, trends.pressureSource, labels ? "Labels" : "", Qt::darkBlue);
            plot->setDrawMode(mode);
            plot->setXDateFormat(QString());
            plot->setYWidestLabel(QString());
            plot->setXLabelsVisible(labels);
            plot->setYLabelsVisible(labels);
            plot->autoScale(true, true);
            plot->replot();
            layout->addWidget(plot, place / 4, place % 4);
            ++place;
        }
    }
    return page;
}

std::unique_ptr<QWidget> makeColorPage(const QString& scheme)
{
    auto page = std::make_unique<DisplayColorDialog>();
    page->setColors(schemeColors(scheme.isEmpty() ? QStringLiteral("Light") : scheme));
    return page;
}
