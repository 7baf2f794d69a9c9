#pragma once

#include "dialogs/BPDialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

/// The dialog on the screen, with its parts.
struct TShownDialog
{
    TShownDialog()
    {
        dialog.show();
        QApplication::setActiveWindow(&dialog);
    }

    template <typename Part> Part* part(const char* name)
    {
        return dialog.findChild<Part*>(QLatin1String(name));
    }
    QPushButton* button(QDialogButtonBox::StandardButton which) { return box->button(which); }
    bool okEnabled() { return button(QDialogButtonBox::Ok)->isEnabled(); }
    void type(const char* keys) { QTest::keyClicks(QApplication::focusWidget(), QLatin1String(keys)); }

    BPDialog dialog{QStringLiteral("Exercise 2")};
    QLineEdit* systolic = part<QLineEdit>("txtSBP");
    QLineEdit* diastolic = part<QLineEdit>("txtDBP");
    QCheckBox* print = dialog.findChild<QCheckBox*>();
    QDialogButtonBox* box = dialog.findChild<QDialogButtonBox*>();
};
