#include "app/EcgExamination.h"

#include "acq/AcqDeviceFactory.h"
#include "app/RecentStudies.h"
#include "recorder/AcquisitionInfo.h"
#include "study/Study.h"
#include "study/StudyCreation.h"
#include "study/StudyDatabase.h"
#include "windows/EcgMonitorWindow.h"

#include <utility>

namespace {

/// The text of what `action` throws; empty if nothing.
template <typename Action> QString failureOf(Action action)
{
    try {
        action();
        return {};
    } catch (const std::exception& error) {
        return QString::fromUtf8(error.what());
    }
}

} // namespace

EcgExamination::EcgExamination(QObject* parent) : QObject(parent) {}

EcgExamination::~EcgExamination()
{
    removeMonitor();
    m_device.reset();
    // Nobody is left to be told.
    if (m_study)
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

void EcgExamination::start(const StudyInfo& info)
{
    m_info = info;
    const QString failure = failureOf([this] { openMonitor(); });
    if (failure.isEmpty()) {
        setRunning(true);
        return;
    }
    failureOf([this] { abandon(); });
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
    const bool isRepeated = EcgMonitorWindow::repeatRequested(window);
    QMetaObject::invokeMethod(
        this, [this, isRepeated] { file(isRepeated); }, Qt::QueuedConnection);
}

void EcgExamination::file(bool isRepeated)
{
    m_device.reset();
    const qint32 id = m_study->id();
    const QString failure = isRepeated ? dropStudy() : keepStudy();
    if (isRepeated && failure.isEmpty()) {
        start(m_info);
        return;
    }
    setRunning(false);
    if (failure.isEmpty())
        Q_EMIT kept(id);
    else
        Q_EMIT failed(failure);
}

/// Returns what went wrong. The study is closed in any case.
QString EcgExamination::keepStudy()
{
    const QString failure = failureOf([this] {
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
    const QString unsaved = failureOf([this] { studyDatabase()->saveStudy(m_study); });
    studyDatabase()->closeStudy(std::exchange(m_study, nullptr));
    const QString undeleted = failureOf([id] { studyDatabase()->deleteStudy(id); });
    return unsaved.isEmpty() ? undeleted : unsaved;
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
