#pragma once

#include "study/StudyInfo.h"

#include <QString>

#include <vector>

class QCheckBox;
class QGridLayout;
class QLineEdit;
class QWidget;

/// The rows of the risk factors on their page: for a factor N the check box "chk_N" and the line edit
/// "txt_N", both with the dynamic property "riskFactorName". The widgets belong to the page.
class TRiskFactorRows
{
public:
    /// Lays the rows out from the place of the template row, which becomes the first one; the others are made
    /// like it and follow it in the tab order. Without names the template row is hidden.
    TRiskFactorRows(QGridLayout* grid, QCheckBox* box, QLineEdit* comment, std::vector<QByteArray> names);

    /// Shows each factor of the rows; one that `factors` doesn't have is off and without a comment.
    void fill(const std::vector<TRiskFactor>& factors);
    /// The factors of the rows in their order, then those of `factors` that have no row.
    std::vector<TRiskFactor> collect(const std::vector<TRiskFactor>& factors) const;

private:
    void name(QCheckBox* box, QLineEdit* comment, const QByteArray& factor);
    bool hasRow(const QByteArray& factor) const;
    QCheckBox* boxOf(const QByteArray& factor) const;
    QLineEdit* commentOf(const QByteArray& factor) const;

    QWidget* m_page;
    std::vector<QByteArray> m_names;
};
