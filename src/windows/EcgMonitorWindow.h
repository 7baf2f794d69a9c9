#pragma once

#include "recorder/TRecorderObserver.h"
#include "study/TStressProtocol.h"

#include <QMainWindow>
#include <QTimer>

#include <memory>

class LeadMenu;
class MonitorDisplays;
class MonitorStatus;
class QSignalMonitorDisplay;
class RecordingReview;
class Study;
class TAcqDevice;
class TFiducialSource;
class TSaturationSource;
class TStudyRecorder;
class WarningBoxes;

namespace Ui {
class EcgMonitorWindow;
}

/// Takes a resting ECG: the live signal is watched, recorded, and what was recorded is looked at. The window
/// files nothing: whoever opened it does, when it is destroyed, unless the recording is to be repeated.
class EcgMonitorWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Both are borrowed and outlive the window. The study is new, with its files open for recording in the
    /// form of the device.
    EcgMonitorWindow(QWidget* parent, TAcqDevice* device, Study* study);
    /// A recording that still runs is left as it is; closing ends it.
    ~EcgMonitorWindow() override;

    /// Whether the user of a window threw the recording away to take another one. May be asked of what is
    /// left of the window when it tells of its destruction.
    static bool repeatRequested(const QObject* window);
    /// Failures that came too late for the window to show them, each on a line, in the language of the user;
    /// empty if none. To be asked when the window tells of its destruction.
    static QString untoldFailure(const QObject* window);

protected:
    void closeEvent(QCloseEvent* event) override;

private Q_SLOTS:
    void on_btnSpeed12_clicked();
    void on_btnSpeed25_clicked();
    void on_btnSpeed50_clicked();
    void on_btnAmp5_clicked();
    void on_btnAmp10_clicked();
    void on_btnAmp20_clicked();
    void on_btnFilterNotch_clicked();
    void on_btnFilterLowpass_clicked();
    void on_btnFilterBaseline_clicked();
    void on_btnStart_clicked();
    void on_btnStop_clicked();
    void on_ecgDisplay1_customContextMenuRequested(const QPoint& place);
    void on_ecgDisplay2_customContextMenuRequested(const QPoint& place);
    void on_btnRepeat_clicked();
    void on_btnSave_clicked();

private:
    /// What the recorder tells the window.
    class Observer : public TRecorderObserver
    {
    public:
        explicit Observer(EcgMonitorWindow& window) : m_window(window) {}

        void signalUpdated() override;
        void beatFound(const TBeat&) override {}
        void studyStarted() override;
        void stageChanged() override {}
        void studyFinished() override {}
        void failed(const char* text) override;

    private:
        EcgMonitorWindow& m_window;
    };

    void decorate();
    void startMonitoring();
    void readSettings();
    void setSpeed(double mmPerSec);
    void setAmplitude(double mmPerMv);
    void applyFilters();
    void releaseRecorder();

    void showRecording();
    void popUpMenu(QSignalMonitorDisplay& clicked, const QPoint& place);
    void updateStatus();
    void updateHeartRate();

    TAcqDevice* m_acqDriver;
    Study* m_study;
    const TStressProtocol m_protocol;
    std::unique_ptr<Ui::EcgMonitorWindow> m_ui;
    std::unique_ptr<MonitorDisplays> m_displays;
    MonitorStatus* m_status;
    WarningBoxes* m_warnings;
    Observer m_recorderObserver{*this};
    /// While the signal is live.
    std::unique_ptr<TStudyRecorder> m_recorder;
    std::unique_ptr<TSaturationSource> m_saturation;
    std::unique_ptr<TFiducialSource> m_fiducials;
    /// Once there is a recording to look at.
    std::unique_ptr<RecordingReview> m_review;
    std::unique_ptr<LeadMenu> m_contextMenu;
    QTimer m_timer{this};
};
