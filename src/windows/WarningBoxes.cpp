#include "windows/WarningBoxes.h"

#include <QEvent>
#include <QMessageBox>

WarningBoxes::WarningBoxes(QWidget* window) : QObject(window), m_window(window)
{
    window->installEventFilter(this);
}

void WarningBoxes::show(const QString& text)
{
    if (m_texts.contains(text))
        return;
    m_texts << text;
    showLater();
}

QStringList WarningBoxes::untold() const
{
    return m_texts.mid(m_box ? 1 : 0);
}

bool WarningBoxes::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && event->type() == QEvent::Show)
        showLater();
    return QObject::eventFilter(watched, event);
}

void WarningBoxes::showLater()
{
    QMetaObject::invokeMethod(this, &WarningBoxes::showNext, Qt::QueuedConnection);
}

void WarningBoxes::showNext()
{
    if (m_box || m_texts.isEmpty() || !m_window->isVisible())
        return;
    m_box = new QMessageBox(QMessageBox::Warning, tr("Warning"), m_texts.first(), QMessageBox::Ok, m_window);
    m_box->setTextFormat(Qt::PlainText);
    m_box->setAttribute(Qt::WA_DeleteOnClose);
    m_box->setModal(true);
    connect(m_box.data(), &QMessageBox::finished, this, &WarningBoxes::next);
    m_box->show();
}

void WarningBoxes::next()
{
    m_box.clear();
    m_texts.removeFirst();
    showNext();
}
