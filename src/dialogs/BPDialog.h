#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class BPDialog;
}

/// Takes a blood pressure, and whether a strip of the stage is to be printed. It closes with OK only on two
/// plausible numbers; what it holds counts once it was accepted.
class BPDialog : public QDialog
{
    Q_OBJECT

public:
    /// `stage` is shown as it stands.
    explicit BPDialog(const QString& stage, QWidget* parent = nullptr);
    ~BPDialog() override;

    /// mmHg; 0 until accepted, and so is `diastolic`.
    int systolic() const { return m_systolic; }
    int diastolic() const { return m_diastolic; }
    /// False until accepted.
    bool printStage() const { return m_printStage; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void on_txtSBP_returnPressed();
    void on_txtSBP_textChanged(const QString& text);
    void on_txtDBP_textChanged(const QString& text);
    void on_BPDialog_accepted();

private:
    void validate();

    std::unique_ptr<Ui::BPDialog> m_ui;
    int m_systolic = 0;
    int m_diastolic = 0;
    bool m_printStage = false;
};
