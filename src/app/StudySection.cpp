#include "app/StudySection.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QWidget>

namespace {

constexpr int unfoldMs = 200;

} // namespace

StudySection::StudySection(QWidget* body, QAbstractButton* defaultAction)
    : m_body(body), m_defaultAction(defaultAction), m_animation(body, "maximumHeight")
{
    m_body->hide();
    m_body->setMaximumHeight(0);
    m_animation.setDuration(unfoldMs);
    m_animation.setEasingCurve(QEasingCurve::InOutCubic);
    QObject::connect(&m_animation, &QAbstractAnimation::finished, m_body, [this] { settle(); });
}

void StudySection::open()
{
    if (m_isOpen)
        return;
    m_isOpen = true;
    m_body->show();
    // The style sheet has just given the contents their sizes.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    animateTo(m_body->sizeHint().height());
}

void StudySection::close()
{
    if (!m_isOpen)
        return;
    m_isOpen = false;
    animateTo(0);
}

void StudySection::triggerDefaultAction()
{
    m_defaultAction->click();
}

void StudySection::animateTo(int height)
{
    m_animation.stop();
    m_animation.setStartValue(std::min(m_body->maximumHeight(), m_body->sizeHint().height()));
    m_animation.setEndValue(height);
    m_animation.start();
}

void StudySection::settle()
{
    // Once open it follows its contents, one that has closed takes no part in the order of tabs.
    if (m_isOpen)
        m_body->setMaximumHeight(QWIDGETSIZE_MAX);
    else
        m_body->hide();
}
