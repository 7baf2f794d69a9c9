#include "windows/WarningBoxes.h"

#include <QMessageBox>

WarningBoxes::WarningBoxes(QWidget* window) : QObject(window), m_window(window) {}

void WarningBoxes::show(const QString& text)
{
    if (m_texts.contains(text))
        return;
    m_texts << text;
    QMetaObject::invokeMethod(this, &WarningBoxes::showNext, Qt::QueuedConnection);
}

void WarningBoxes::showNext()
{
    // A window that was closed is about to go.
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
