#include "dialogs/ElectrodeStatusWidget.h"

#include "ui_ElectrodeStatusWidget.h"

ElectrodeStatusWidget::ElectrodeStatusWidget(QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::ElectrodeStatusWidget>())
{
    m_ui->setupUi(this);
    // Without it a style sheet's background is not drawn behind a plain widget, and the trace shows through.
    setAttribute(Qt::WA_StyledBackground);
    for (QLabel* label : {m_ui->lblLL, m_ui->lblLA, m_ui->lblRA, m_ui->lblV1, m_ui->lblV2, m_ui->lblV3,
                          m_ui->lblV4, m_ui->lblV5, m_ui->lblV6})
        m_labels.insert(label->text(), label);
    for (const QString& name : m_labels.keys())
        setElectrodeState(name, false);
}

ElectrodeStatusWidget::~ElectrodeStatusWidget() = default;

void ElectrodeStatusWidget::setElectrodeState(const QString& name, bool off)
{
    QLabel* label = m_labels.value(name);
    if (!label)
        return;
    const QString style = off ? QStringLiteral("color: red") : QStringLiteral("color: green");
    // A style sheet is parsed and applied anew even if it is the same.
    if (label->styleSheet() != style)
        label->setStyleSheet(style);
    // For those who cannot tell the colours apart, or do not see them.
    label->setAccessibleName(off ? tr("%1 is off").arg(name) : tr("%1 is connected").arg(name));
}

void ElectrodeStatusWidget::on_btnHide_clicked()
{
    hide();
    m_mayShow = false;
}
