#include "dialogs/TStudyForm.h"

#include "base/Text.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMetaProperty>

namespace {

/// The text of a field, whatever its class calls it.
QMetaProperty textOf(const QWidget* field)
{
    return field->metaObject()->userProperty();
}

/// A text longer than its field is read from its beginning.
void showBeginning(QWidget* field)
{
    auto* const combo = qobject_cast<QComboBox*>(field);
    if (auto* const line = combo ? combo->lineEdit() : qobject_cast<QLineEdit*>(field))
        line->setCursorPosition(0);
}

} // namespace

void TStudyForm::add(TMember member, QWidget* field)
{
    m_fields.push_back({member, field, {}});
}

void TStudyForm::fill(const StudyInfo& source, StudyInfo& kept)
{
    for (TField& each : m_fields) {
        kept.*each.member = source.*each.member;
        textOf(each.field).write(each.field, velantor::fromText(source.*each.member));
        showBeginning(each.field);
        each.shown = textOf(each.field).read(each.field).toString();
    }
}

void TStudyForm::collect(StudyInfo& kept)
{
    for (TField& each : m_fields) {
        const QString text = textOf(each.field).read(each.field).toString();
        if (text != each.shown)
            kept.*each.member = velantor::toText(text);
        each.shown = text;
    }
}
