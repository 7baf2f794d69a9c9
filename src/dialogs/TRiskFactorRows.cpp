#include "dialogs/TRiskFactorRows.h"

#include "base/Text.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QLineEdit>
#include <QVariant>

#include <algorithm>

namespace {

QString boxName(const QByteArray& factor)
{
    return QStringLiteral("chk_") + velantor::fromText(factor);
}

QString commentName(const QByteArray& factor)
{
    return QStringLiteral("txt_") + velantor::fromText(factor);
}

/// The row of the grid below the headers where the template stands.
int rowOf(const QGridLayout* grid, QWidget* widget)
{
    int row = 0;
    int column = 0;
    int rowSpan = 0;
    int columnSpan = 0;
    grid->getItemPosition(grid->indexOf(widget), &row, &column, &rowSpan, &columnSpan);
    return row;
}

} // namespace

TRiskFactorRows::TRiskFactorRows(QGridLayout* grid, QCheckBox* box, QLineEdit* comment,
                                 std::vector<QByteArray> names)
    : m_page(box->parentWidget()), m_names(std::move(names))
{
    box->setVisible(!m_names.empty());
    comment->setVisible(!m_names.empty());
    const QString placeholder = comment->placeholderText();
    int row = rowOf(grid, box);
    for (const QByteArray& factor : m_names) {
        if (factor != m_names.front()) {
            QWidget* const before = comment;
            box = new QCheckBox(m_page);
            comment = new QLineEdit(m_page);
            comment->setPlaceholderText(placeholder);
            grid->addWidget(box, ++row, 0);
            grid->addWidget(comment, row, 1);
            QWidget::setTabOrder(before, box);
            QWidget::setTabOrder(box, comment);
        }
        name(box, comment, factor);
    }
    grid->setRowStretch(row + 1, 1);
}

void TRiskFactorRows::fill(const std::vector<TRiskFactor>& factors)
{
    for (const QByteArray& name : m_names) {
        const auto found = std::find_if(factors.begin(), factors.end(),
                                        [&](const TRiskFactor& factor) { return factor.name == name; });
        const bool isKnown = found != factors.end();
        boxOf(name)->setChecked(isKnown && found->status);
        commentOf(name)->setText(isKnown ? velantor::fromText(found->comment) : QString());
        commentOf(name)->setCursorPosition(0);
    }
}

std::vector<TRiskFactor> TRiskFactorRows::collect(const std::vector<TRiskFactor>& factors) const
{
    std::vector<TRiskFactor> result;
    for (const QByteArray& name : m_names)
        result.push_back({name, boxOf(name)->isChecked(), velantor::toText(commentOf(name)->text())});
    std::copy_if(factors.begin(), factors.end(), std::back_inserter(result),
                 [this](const TRiskFactor& factor) { return !hasRow(factor.name); });
    return result;
}

void TRiskFactorRows::name(QCheckBox* box, QLineEdit* comment, const QByteArray& factor)
{
    const QString shown = velantor::fromText(factor);
    box->setText(shown);
    box->setObjectName(boxName(factor));
    comment->setObjectName(commentName(factor));
    comment->setAccessibleName(QCoreApplication::translate("StudyDialog", "Comments on %1").arg(shown));
    for (QWidget* widget : {static_cast<QWidget*>(box), static_cast<QWidget*>(comment)})
        widget->setProperty("riskFactorName", shown);
}

bool TRiskFactorRows::hasRow(const QByteArray& factor) const
{
    return std::find(m_names.begin(), m_names.end(), factor) != m_names.end();
}

QCheckBox* TRiskFactorRows::boxOf(const QByteArray& factor) const
{
    return m_page->findChild<QCheckBox*>(boxName(factor));
}

QLineEdit* TRiskFactorRows::commentOf(const QByteArray& factor) const
{
    return m_page->findChild<QLineEdit*>(commentName(factor));
}
