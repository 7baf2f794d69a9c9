#pragma once

#include <QMessageBox>

/// Shows a box and returns when the user has closed it. The text is shown as it is, whatever stands in the
/// names and folders that it holds. `parent` may be null.
void showBox(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text);
