#include "app/PleaseWait.h"

#include <QApplication>

PleaseWait::PleaseWait(QWidget* parent) : m_dialog(tr("Please wait..."), QString(), 0, 0, parent)
{
    m_dialog.setWindowModality(Qt::WindowModal);
    m_dialog.show();
    QCoreApplication::processEvents();
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

PleaseWait::~PleaseWait()
{
    QApplication::restoreOverrideCursor();
}
