#pragma once

#include "study/StudyInfo.h"

#include <QString>

#include <vector>

class QWidget;

/// Which field of a form shows which text of a study. A text whose field was not changed keeps its bytes,
/// even those that the field cannot show, such as line ends of another system. The widgets are borrowed.
class TStudyForm
{
public:
    using TMember = QByteArray StudyInfo::*;

    /// The field is a line edit, an editable combo box or a plain text edit.
    void add(TMember member, QWidget* field);

    /// Shows the texts of `source` and copies them to `kept`.
    void fill(const StudyInfo& source, StudyInfo& kept);
    /// Brings the texts that were changed since, or since they were last collected, to `kept`.
    void collect(StudyInfo& kept);

private:
    struct TField
    {
        TMember member;
        QWidget* field;
        QString shown;
    };
    std::vector<TField> m_fields;
};
