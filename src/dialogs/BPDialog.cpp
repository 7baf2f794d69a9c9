#include "dialogs/BPDialog.h"

#include "base/Settings.h"
#include "ui_BPDialog.h"

#include <QPushButton>

namespace {

/// From here on a third digit would make a pressure that nobody has.
constexpr int completeSystolic = 36;

int pressureIn(const QLineEdit* field)
{
    return field->text().toInt();
}

} // namespace

BPDialog::BPDialog(const QString& stage, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::BPDialog>())
{
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setFixedSize(size());
    m_ui->lblStage->setText(tr("Stage: ") + stage);
    m_ui->lblStage->setToolTip(stage);
    m_ui->chkPrintStage->setChecked(settings::bpPrint.value());
    validate();
}

BPDialog::~BPDialog() = default;

void BPDialog::on_txtSBP_returnPressed()
{
    m_ui->txtDBP->setFocus();
}

void BPDialog::on_txtSBP_textChanged(const QString&)
{
    validate();
    if (pressureIn(m_ui->txtSBP) >= completeSystolic)
        m_ui->txtDBP->setFocus();
}

void BPDialog::on_txtDBP_textChanged(const QString&)
{
    validate();
}

void BPDialog::on_BPDialog_accepted()
{
    m_systolic = pressureIn(m_ui->txtSBP);
    m_diastolic = pressureIn(m_ui->txtDBP);
    m_printStage = m_ui->chkPrintStage->isChecked();
    settings::bpPrint.setValue(m_printStage);
}

void BPDialog::validate()
{
    const int diastolic = pressureIn(m_ui->txtDBP);
    const bool isPlausible = diastolic >= 1 && pressureIn(m_ui->txtSBP) > diastolic;
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(isPlausible);
}
