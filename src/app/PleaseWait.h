#pragma once

#include <QCoreApplication>
#include <QProgressDialog>

/// Tells the user to wait for as long as it lives: a modal dialog without a button, and the wait cursor.
class PleaseWait
{
    Q_DECLARE_TR_FUNCTIONS(PleaseWait)

public:
    /// Lets the dialog be painted before it returns, which processes events once.
    explicit PleaseWait(QWidget* parent);
    ~PleaseWait();
    PleaseWait(const PleaseWait&) = delete;
    PleaseWait& operator=(const PleaseWait&) = delete;

private:
    QProgressDialog m_dialog;
};
