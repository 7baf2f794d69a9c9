#include "gallery/Screenshots.h"

#include "display/BrowseView.h"
#include "display/ColorSchemes.h"
#include "gallery/GalleryPages.h"
#include "gallery/GalleryTrends.h"
#include "gallery/LiveRecording.h"
#include "gallery/StoredRecording.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QSet>

#include <cstdio>

namespace {

constexpr QSize screenSizes[]{{1280, 800}, {1920, 1080}};

class TPhotographer
{
public:
    explicit TPhotographer(const QString& folder) : m_folder(folder) {}

    /// One file for each size of screen; pages that have a size of their own keep it.
    void take(std::unique_ptr<QWidget> page, const QString& name, bool ownSize = false)
    {
        for (const QSize& size : screenSizes) {
            if (!ownSize)
                page->resize(size);
            page->show();
            QApplication::processEvents();
            const QString file =
                QStringLiteral("%1-%2x%3.png").arg(name).arg(page->width()).arg(page->height());
            const QPixmap picture = page->grab();
            expect(ownSize || picture.size() == size * picture.devicePixelRatio(), "has another size", file);
            expect(coloursOf(picture.toImage()) >= leastColours, "shows nothing", file);
            expect(picture.save(m_folder.filePath(file)), "cannot be written", file);
            if (ownSize)
                break;
        }
    }

    bool ok() const { return m_ok; }

private:
    /// Paper, grid, trace and a label are four.
    static constexpr int leastColours = 4;

    static int coloursOf(const QImage& image)
    {
        QSet<QRgb> colours;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                colours.insert(image.pixel(x, y));
        }
        return colours.size();
    }

    void expect(bool holds, const char* failure, const QString& file)
    {
        if (holds)
            return;
        std::fprintf(stderr, "%s %s\n", qPrintable(m_folder.filePath(file)), failure);
        m_ok = false;
    }

    QDir m_folder;
    bool m_ok = true;
};

void takeSchemes(TPhotographer& photographer, LiveRecording& live, StoredRecording& stored)
{
    QStringList schemes = schemeNames();
    schemes.append(QString());
    for (const QString& scheme : schemes) {
        const QString end = scheme.isEmpty() ? QStringLiteral("default") : scheme.toLower();
        photographer.take(makeMonitorPage(live, {scheme}), QStringLiteral("monitor-") + end);
        photographer.take(makeBrowsePage(stored, {scheme}, SelectBeatsMode), QStringLiteral("browse-") + end);
        photographer.take(makeBrowsePage(stored, {scheme}, CaliperMode), QStringLiteral("caliper-") + end);
        photographer.take(makeColorPage(scheme), QStringLiteral("colors-") + end, true);
    }
}

void takeSpeeds(TPhotographer& photographer, LiveRecording& live, StoredRecording& stored)
{
    for (const double speed : {12.5, 50.0}) {
        const TGalleryView view{QStringLiteral("Black"), speed, speed > 25.0 ? 20.0 : 5.0, false};
        const QString end = QString::number(speed);
        photographer.take(makeMonitorPage(live, view), QStringLiteral("monitor-speed-") + end);
        photographer.take(makeBrowsePage(stored, view, SelectBeatsMode),
                          QStringLiteral("browse-speed-") + end);
    }
}

void takeMoments(TPhotographer& photographer, const std::vector<short>& samples)
{
    LiveRecording waiting(samples, 0.0);
    photographer.take(makeMonitorPage(waiting, {QStringLiteral("Black")}), QStringLiteral("monitor-waiting"));
    LiveRecording first(samples, 2.6);
    photographer.take(makeMonitorPage(first, {QStringLiteral("Black")}),
                      QStringLiteral("monitor-first-page"));
    LiveRecording saturated(samples, 47.3, 0.5);
    photographer.take(makeMonitorPage(saturated, {QStringLiteral("Light")}),
                      QStringLiteral("monitor-saturated"));
}

} // namespace

bool writeScreenshots(const QString& folder)
{
    if (!QDir().mkpath(folder)) {
        std::fprintf(stderr, "Cannot make the folder %s\n", qPrintable(folder));
        return false;
    }
    const std::vector<short> samples = demoSamples();
    LiveRecording live(samples, 47.3);
    StoredRecording stored(samples, 50.0);
    const GalleryTrends trends;
    TPhotographer photographer(folder);
    takeSchemes(photographer, live, stored);
    takeSpeeds(photographer, live, stored);
    takeMoments(photographer, samples);
    photographer.take(makeBeatPage(stored), QStringLiteral("beat"));
    photographer.take(makePlotPage(trends), QStringLiteral("plots"));
    photographer.take(makePlotModesPage(trends), QStringLiteral("plot-modes"));
    return photographer.ok();
}
