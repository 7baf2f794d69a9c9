#include "dialogs/BPDialog.h"

#include "base/Settings.h"
#include "ui_BPDialog.h"

#include <QKeyEvent>
#include <QPushButton>

namespace {

/// From here on a third digit would make a pressure that nobody has.
constexpr int completeSystolic = 36;

int pressureIn(const QLineEdit* field)
{
    return field->text().toInt();
}

bool isReturn(const QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<const QKeyEvent*>(event)->key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

/// A click on a masked field puts the cursor where it hits, at times behind the last place, where no digit is
/// taken. Queued, as the field sets its cursor after this.
void placeCursor(QLineEdit* field, const QEvent* event)
{
    if (event->type() == QEvent::FocusIn &&
        static_cast<const QFocusEvent*>(event)->reason() == Qt::MouseFocusReason)
        QMetaObject::invokeMethod(field, &QLineEdit::selectAll, Qt::QueuedConnection);
    if (event->type() == QEvent::MouseButtonPress && field->text().isEmpty())
        QMetaObject::invokeMethod(
            field, [field] { field->setCursorPosition(0); }, Qt::QueuedConnection);
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
    for (QLineEdit* field : {m_ui->txtSBP, m_ui->txtDBP})
        field->installEventFilter(this);
    validate();
}

BPDialog::~BPDialog() = default;

bool BPDialog::eventFilter(QObject* watched, QEvent* event)
{
    // Taken before the field does: it passes the key on to the button, and tells of it only with three
    // digits.
    if (watched == m_ui->txtSBP && isReturn(event)) {
        on_txtSBP_returnPressed();
        return true;
    }
    for (QLineEdit* field : {m_ui->txtSBP, m_ui->txtDBP}) {
        if (watched == field)
            placeCursor(field, event);
    }
    return QDialog::eventFilter(watched, event);
}

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
