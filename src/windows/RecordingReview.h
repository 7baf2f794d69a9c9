#pragma once

#include "analysis/filters/TOfflineFilterChain.h"
#include "display/QSignalBrowseDisplay.h"

#include <QObject>
#include <QPointer>

#include <utility>
#include <vector>

class QAbstractButton;

/// Checkable buttons that tell how a recording is shown; of each scale one is checked.
struct TReviewControls
{
    QAbstractButton* notch;
    QAbstractButton* lowpass;
    QAbstractButton* baseline;
    /// With their mm/s.
    std::vector<std::pair<QAbstractButton*, double>> speeds;
    /// With their mm/mV.
    std::vector<std::pair<QAbstractButton*, double>> amplitudes;
};

/// A recording just made, in the place of the live displays and at the command of the same buttons.
class RecordingReview : public QObject
{
    Q_OBJECT

public:
    /// `recording` and the buttons are borrowed and outlive this. The buttons command nothing else from now
    /// on; as they stand, so the recording is shown. The display belongs to `frame`.
    RecordingReview(TSignal* recording, const TReviewControls& controls, QWidget* frame);
    /// Takes the signal from the display.
    ~RecordingReview() override;

    QSignalBrowseDisplay& display() const { return *m_display; }

private:
    void takeOverButtons();
    void filter();
    void applyScale();

    TReviewControls m_controls;
    TOfflineFilterChain m_signalFilter;
    QPointer<QSignalBrowseDisplay> m_display;
};
