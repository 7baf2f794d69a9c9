#include "dialogs/TStudyForm.h"

#include "base/Text.h"

#include <QMetaProperty>
#include <QWidget>

namespace {

/// The text of a field, whatever its class calls it.
QMetaProperty textOf(const QWidget* field)
{
    return field->metaObject()->userProperty();
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
        each.shown = textOf(each.field).read(each.field).toString();
    }
}

void TStudyForm::collect(StudyInfo& kept) const
{
    for (const TField& each : m_fields) {
        const QString text = textOf(each.field).read(each.field).toString();
        if (text != each.shown)
            kept.*each.member = velantor::toText(text);
    }
}
