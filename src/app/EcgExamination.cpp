#include "app/EcgExamination.h"

#include "acq/AcqDeviceFactory.h"
#include "app/GuardedApplication.h"
#include "app/RecentStudies.h"
#include "dialogs/FailureText.h"
#include "recorder/AcquisitionInfo.h"
#include "study/Study.h"
#include "study/StudyCreation.h"
#include "study/StudyDatabase.h"
#include "windows/EcgMonitorWindow.h"

#include <utility>

namespace {

/// The text of what `action` or an event handler within it throws; empty if nothing.
QString failureOf(const std::function<void()>& action)
{
    try {
        GuardedApplication::call(action);
        return {};
    } catch (const std::exception& error) {
        return failureText(error.what());
    } catch (...) {
        return failureText("Unspecified application error");
    }
}

} // namespace

EcgExamination::EcgExamination(QObject* parent) : QObject(parent) {}

EcgExamination::~EcgExamination()
{
    if (m_monitor)
        m_isRepeated = EcgMonitorWindow::repeatRequested(m_monitor);
    removeMonitor();
    m_device.reset();
    // Nobody is left to be told.
    if (m_study && m_isRepeated)
        dropStudy();
    else if (m_study)
        keepStudy();
}

/// Without a word of its destruction.
void EcgExamination::removeMonitor()
{
    if (!m_monitor)
        return;
    m_monitor->disconnect(this);
    m_monitor->close();
    delete m_monitor;
}

bool EcgExamination::start(const StudyInfo& info)
{
    m_info = info;
    m_isRepeated = false;
    const QString failure = failureOf([this] { openMonitor(); });
    if (failure.isEmpty()) {
        setRunning(true);
        return true;
    }
    failureOf([this] { abandon(); });
    fail(failure);
    return false;
}

void EcgExamination::fail(const QString& failure)
{
    setRunning(false);
    Q_EMIT failed(failure);
}

void EcgExamination::openMonitor()
{
    m_device = createAcqDevice(false);
    StudyInfo info = m_info;
    fillAcquisition(info, *m_device);
    findFreeName(info, studyDatabase()->folder());
    m_study = studyDatabase()->createStudy(info);
    m_monitor = new EcgMonitorWindow(nullptr, m_device.get(), m_study);
    m_monitor->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_monitor, &QObject::destroyed, this, &EcgExamination::monitorGone);
    m_monitor->showFullScreen();
}

/// A study without a monitor would be an empty one in every list.
void EcgExamination::abandon()
{
    removeMonitor();
    m_device.reset();
    if (!m_study)
        return;
    const qint32 id = m_study->id();
    studyDatabase()->closeStudy(std::exchange(m_study, nullptr));
    studyDatabase()->deleteStudy(id);
}

/// Only the QObject is left of the window: no place for a box that asks for events.
void EcgExamination::monitorGone(QObject* window)
{
    m_isRepeated = EcgMonitorWindow::repeatRequested(window);
    m_untoldFailure = EcgMonitorWindow::untoldFailure(window);
    QMetaObject::invokeMethod(this, m_isRepeated ? &EcgExamination::repeat : &EcgExamination::file,
                              Qt::QueuedConnection);
}

void EcgExamination::file()
{
    m_device.reset();
    const qint32 id = m_study->id();
    const QString failure = keepStudy();
    setRunning(false);
    for (const QString& text : {m_untoldFailure, failure}) {
        if (!text.isEmpty())
            Q_EMIT failed(text);
    }
    if (failure.isEmpty())
        Q_EMIT kept(id);
}

void EcgExamination::repeat()
{
    m_device.reset();
    const StudyInfo info = m_info;
    const QString failure = dropStudy();
    if (failure.isEmpty() && start(info))
        return;
    if (!failure.isEmpty())
        fail(failure);
    Q_EMIT notRepeated(info);
}

/// Returns what went wrong. The study is closed in any case.
QString EcgExamination::keepStudy()
{
    QString failure = failureOf([this] {
        StudyInfo info;
        studyDatabase()->infoFromStudy(info, *m_study);
        RecentStudies::add(info);
        studyDatabase()->saveStudy(m_study);
    });
    studyDatabase()->closeStudy(std::exchange(m_study, nullptr));
    return failure;
}

QString EcgExamination::dropStudy()
{
    const qint32 id = m_study->id();
    // What cannot be written, of a study that goes anyway, is nothing that the user has to know.
    failureOf([this] { studyDatabase()->saveStudy(m_study); });
    studyDatabase()->closeStudy(std::exchange(m_study, nullptr));
    return failureOf([id] { studyDatabase()->deleteStudy(id); });
}

void EcgExamination::setRunning(bool isRunning)
{
    if (std::exchange(m_isRunning, isRunning) == isRunning)
        return;
    if (isRunning)
        Q_EMIT begun();
    else
        Q_EMIT ended();
}
