#pragma once

#include <QObject>

class AlarmLabel;
class BlinkingIcon;
class ElectrodeStatusWidget;
class QWidget;
class TStudyRecorder;

/// What a monitor window says over its live ECG about the device: battery, connection, electrodes,
/// amplifiers. Each part is made when it is first needed.
class MonitorStatus : public QObject
{
    Q_OBJECT

public:
    /// The frame around the displays; this belongs to it, and so does all that is shown.
    explicit MonitorStatus(QWidget* frame);

    /// To be called once a second.
    void update(TStudyRecorder& recorder);
    /// Hides everything: there is no device any more.
    void hide();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void updateLowBattery(bool low);
    void updateConnection(bool connected);
    void updateElectrodes(TStudyRecorder& recorder);
    void updateInoperative(bool inoperative);
    void addIcon(BlinkingIcon*& icon, const char* name, const char* path, const QString& meaning);
    void place();

    QWidget* m_frame;
    BlinkingIcon* m_lowBatteryIcon = nullptr;
    BlinkingIcon* m_connectingIcon = nullptr;
    ElectrodeStatusWidget* m_electrodeStatus = nullptr;
    AlarmLabel* m_inoperativeLabel = nullptr;
};
