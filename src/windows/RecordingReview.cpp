#include "windows/RecordingReview.h"

#include "base/Constants.h"

#include <QAbstractButton>
#include <QScopeGuard>

RecordingReview::RecordingReview(TSignal* recording, const TReviewControls& controls, QWidget* frame)
    : m_controls(controls), m_signalFilter(recording), m_display(new QSignalBrowseDisplay(frame))
{
    m_signalFilter.setNotchName(velantor::notchFilter50Hz);
    m_signalFilter.setMuscleName(velantor::muscleFilter40Hz);
    m_display->setAccessibleName(tr("Recorded ECG"));
    filter();
    applyScale();
    takeOverButtons();
}

RecordingReview::~RecordingReview()
{
    if (m_display)
        m_display->setSignal(nullptr);
}

void RecordingReview::takeOverButtons()
{
    for (QAbstractButton* button : {m_controls.notch, m_controls.lowpass, m_controls.baseline}) {
        disconnect(button, &QAbstractButton::clicked, nullptr, nullptr);
        connect(button, &QAbstractButton::clicked, this, &RecordingReview::filter);
    }
    for (const auto& scale : {m_controls.speeds, m_controls.amplitudes}) {
        for (const auto& [button, value] : scale) {
            disconnect(button, &QAbstractButton::clicked, nullptr, nullptr);
            connect(button, &QAbstractButton::clicked, this, &RecordingReview::applyScale);
        }
    }
}

void RecordingReview::filter()
{
    // The filters free the signal that the display looks at.
    m_display->setSignal(nullptr);
    const auto showCurrent = qScopeGuard([this] { m_display->setSignal(m_signalFilter.current()); });
    m_signalFilter.apply(m_controls.notch->isChecked(), m_controls.lowpass->isChecked(),
                         m_controls.baseline->isChecked());
}

void RecordingReview::applyScale()
{
    for (const auto& [button, mmPerMv] : m_controls.amplitudes) {
        if (button->isChecked())
            m_display->setAmplitude(mmPerMv);
    }
    for (const auto& [button, mmPerSec] : m_controls.speeds) {
        if (button->isChecked())
            m_display->setSpeed(mmPerSec);
    }
}
