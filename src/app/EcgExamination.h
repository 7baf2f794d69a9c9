#pragma once

#include "study/StudyInfo.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

class EcgMonitorWindow;
class Study;
class TAcqDevice;

/// A resting ECG from its start to the stored study: makes the device, the study and the monitor, and files
/// or drops the study when the monitor has gone. One at a time. Main thread; the store of the process must
/// exist.
class EcgExamination : public QObject
{
    Q_OBJECT

public:
    explicit EcgExamination(QObject* parent = nullptr);
    /// A monitor that is still there is closed and its study kept, unless its user wanted another one.
    ~EcgExamination() override;

    /// Opens the monitor. What cannot be had is told by `failed`, nothing is left of the study, and the value
    /// is false.
    bool start(const StudyInfo& info);
    /// From the start until the study of the monitor is filed, over all repetitions.
    bool isRunning() const { return m_isRunning; }

Q_SIGNALS:
    void begun();
    void ended();
    /// After `ended`: the study is stored and closed.
    void kept(qint32 id);
    /// What failed, in the user's language; after `ended` if an examination was running.
    void failed(const QString& text);
    /// After `failed`: the recording was dropped for another one, which does not begin. `info` is what the
    /// first one was started with.
    void notRepeated(const StudyInfo& info);

private:
    void openMonitor();
    void removeMonitor();
    void abandon();
    void monitorGone(QObject* window);
    void file();
    void repeat();
    void fail(const QString& failure);
    QString keepStudy();
    QString dropStudy();
    void setRunning(bool isRunning);

    StudyInfo m_info;
    bool m_isRunning = false;
    bool m_isRepeated = false; ///< what the user of the monitor wants, once that is gone
    QString m_untoldFailure;   ///< what the monitor had no time to tell
    // Borrowed by the monitor; they live until it is gone.
    std::unique_ptr<TAcqDevice> m_device;
    Study* m_study = nullptr;
    QPointer<EcgMonitorWindow> m_monitor;
};
