#include "app/QuickFields.h"

#include "ui_QuickFields.h"

namespace {

/// Of the age field: a birth date that came with the patient, "yyyyMMdd".
constexpr char birthDateProperty[] = "birthDate";

} // namespace

QuickFields::QuickFields(QWidget* parent) : QWidget(parent), m_ui(std::make_unique<Ui::QuickFields>())
{
    m_ui->setupUi(this);
    for (QLineEdit* field : findChildren<QLineEdit*>()) {
        connect(field, &QLineEdit::textChanged, this, &QuickFields::changed);
        connect(field, &QLineEdit::returnPressed, this, &QuickFields::submitted);
    }
    for (QAbstractButton* button : m_ui->grpSex->buttons())
        connect(button, &QAbstractButton::toggled, this, &QuickFields::changed);
    // The two must not contradict each other.
    connect(m_ui->txtAge, &QLineEdit::textEdited, this,
            [this] { m_ui->txtAge->setProperty(birthDateProperty, QVariant()); });
}

QuickFields::~QuickFields() = default;

TQuickPatient QuickFields::patient() const
{
    return {m_ui->txtLastName->text(),
            m_ui->txtFirstName->text(),
            m_ui->txtAge->text(),
            m_ui->txtAge->property(birthDateProperty).toByteArray(),
            sex(),
            m_ui->txtPatientId->text(),
            m_ui->txtPersonId->text()};
}

void QuickFields::setPatient(const TQuickPatient& patient)
{
    clear();
    m_ui->txtLastName->setText(patient.lastName);
    m_ui->txtFirstName->setText(patient.firstName);
    m_ui->txtAge->setText(patient.age);
    m_ui->txtAge->setProperty(birthDateProperty, patient.birthDate);
    m_ui->btnMale->setChecked(patient.sex == "M");
    m_ui->btnFemale->setChecked(patient.sex == "F");
    m_ui->txtPatientId->setText(patient.patientId);
    m_ui->txtPersonId->setText(patient.personId);
}

void QuickFields::clear()
{
    for (QLineEdit* field : findChildren<QLineEdit*>())
        field->clear();
    m_ui->txtAge->setProperty(birthDateProperty, QVariant());
    // An exclusive group never lets go of its last choice.
    m_ui->grpSex->setExclusive(false);
    for (QAbstractButton* button : m_ui->grpSex->buttons())
        button->setChecked(false);
    m_ui->grpSex->setExclusive(true);
    focusLastName();
}

void QuickFields::focusLastName()
{
    m_ui->txtLastName->setFocus();
}

QByteArray QuickFields::sex() const
{
    if (m_ui->btnMale->isChecked())
        return "M";
    return m_ui->btnFemale->isChecked() ? "F" : "";
}
