#pragma once

#include <QString>
#include <QWidget>

#include <memory>

struct GalleryTrends;
class LiveRecording;
class StoredRecording;

// What the gallery shows, each as a page of its own. What a page is given it borrows; an empty scheme leaves
// the displays their own colours.

/// How a display of an ECG is set up.
struct TGalleryView
{
    QString scheme;
    double speed = 25.0;
    double amplitude = 10.0;
    bool averageBeat = true;
};

/// Limb leads in hexaxial order and chest leads, side by side.
std::unique_ptr<QWidget> makeMonitorPage(LiveRecording& recording, const TGalleryView& view);
/// A browse display in one of its mouse modes: a beat is selected, or the caliper stands.
std::unique_ptr<QWidget> makeBrowsePage(StoredRecording& recording, const TGalleryView& view, int mouseMode);
/// The leads II and V5 of the average beat with their cursors.
std::unique_ptr<QWidget> makeBeatPage(StoredRecording& recording);
/// The charts of a stress review over a chart of the last two minutes.
std::unique_ptr<QWidget> makePlotPage(const GalleryTrends& trends);
/// One series drawn in every way.
std::unique_ptr<QWidget> makePlotModesPage(const GalleryTrends& trends);
std::unique_ptr<QWidget> makeColorPage(const QString& scheme);
