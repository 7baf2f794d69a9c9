#include "windows/MonitorStatus.h"

#include "acq/AcqChannels.h"
#include "dialogs/ElectrodeStatusWidget.h"
#include "recorder/TStudyRecorder.h"
#include "windows/AlarmLabel.h"
#include "windows/BlinkingIcon.h"

#include <QEvent>

namespace {

constexpr int edge = 10;
/// From the right edge of the window to the left one of the label, which leaves room for the electrodes.
constexpr int inoperativeFromRight = 349;

} // namespace

MonitorStatus::MonitorStatus(QWidget* frame) : QObject(frame), m_frame(frame)
{
    frame->installEventFilter(this);
}

void MonitorStatus::update(TStudyRecorder& recorder)
{
    updateLowBattery(recorder.batteryIsLow());
    updateConnection(recorder.driver().isConnected());
    updateElectrodes(recorder);
    updateInoperative(recorder.isAnyChannelSaturated());
}

void MonitorStatus::hide()
{
    for (QWidget* part :
         {static_cast<QWidget*>(m_lowBatteryIcon), static_cast<QWidget*>(m_connectingIcon),
          static_cast<QWidget*>(m_electrodeStatus), static_cast<QWidget*>(m_inoperativeLabel)})
        if (part)
            part->hide();
}

void MonitorStatus::updateLowBattery(bool low)
{
    if (low && !m_lowBatteryIcon)
        addIcon(m_lowBatteryIcon, "lowBatteryIcon", ":/res/low-battery", tr("The battery is low"));
    if (low)
        m_lowBatteryIcon->blink();
    else if (m_lowBatteryIcon)
        m_lowBatteryIcon->hide();
}

void MonitorStatus::updateConnection(bool connected)
{
    if (!connected && !m_connectingIcon)
        addIcon(m_connectingIcon, "connectingIcon", ":/res/connecting", tr("The device is not connected"));
    if (!connected)
        m_connectingIcon->blink();
    else if (m_connectingIcon)
        m_connectingIcon->hide();
}

void MonitorStatus::updateElectrodes(TStudyRecorder& recorder)
{
    const bool isAnyOff = recorder.isAnyElectrodeOff();
    if (isAnyOff && !m_electrodeStatus) {
        m_electrodeStatus = new ElectrodeStatusWidget(m_frame);
        m_electrodeStatus->hide();
    }
    if (!m_electrodeStatus)
        return;
    const bool isShown = isAnyOff && m_electrodeStatus->mayShow();
    for (const char* electrode : acq::electrodesByWeight) {
        if (isShown)
            m_electrodeStatus->setElectrodeState(QLatin1String(electrode),
                                                 recorder.driver().isElectrodeOff(electrode));
    }
    if (isShown && m_electrodeStatus->isHidden()) {
        m_electrodeStatus->adjustSize();
        place();
        m_electrodeStatus->raise();
    }
    m_electrodeStatus->setVisible(isShown);
}

void MonitorStatus::updateInoperative(bool inoperative)
{
    if (inoperative && !m_inoperativeLabel) {
        m_inoperativeLabel = new AlarmLabel(tr("Inoperative ECG"), m_frame);
        m_inoperativeLabel->setObjectName(QStringLiteral("inoperativeLabel"));
        place();
    }
    if (m_inoperativeLabel)
        m_inoperativeLabel->setVisible(inoperative);
}

void MonitorStatus::addIcon(BlinkingIcon*& icon, const char* name, const char* path, const QString& meaning)
{
    icon = new BlinkingIcon(QIcon(QLatin1String(path)), meaning, m_frame);
    icon->setObjectName(QLatin1String(name));
    place();
}

bool MonitorStatus::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_frame && event->type() == QEvent::Resize)
        place();
    return QObject::eventFilter(watched, event);
}

void MonitorStatus::place()
{
    const int right = m_frame->width() - edge;
    const int bottom = m_frame->height() - edge;
    if (m_lowBatteryIcon)
        m_lowBatteryIcon->move(right - BlinkingIcon::side, bottom - BlinkingIcon::side);
    if (m_connectingIcon)
        m_connectingIcon->move(right - 2 * BlinkingIcon::side, bottom - 2 * BlinkingIcon::side);
    if (m_electrodeStatus)
        m_electrodeStatus->move(right - m_electrodeStatus->width(), edge);
    if (m_inoperativeLabel)
        m_inoperativeLabel->move(m_frame->window()->width() - inoperativeFromRight, edge);
}
