#include "dialogs/StudyDialog.h"

#include "base/Settings.h"
#include "base/Text.h"
#include "dialogs/LatestStudy.h"
#include "dialogs/PatientRules.h"
#include "dialogs/StudyFields.h"
#include "dialogs/TRiskFactorRows.h"
#include "study/StudyDatabase.h"
#include "ui_StudyDialog.h"

#include <QPushButton>
#include <QShortcut>

#include <algorithm>

namespace {

constexpr int maleIndex = 1;
constexpr int femaleIndex = 2;

QString dateTimeFormat()
{
    return QStringLiteral("yyyyMMddHHmmss");
}

/// Names of protocols are keys and stay as they are in every language.
QString tiltTest()
{
    return QStringLiteral("Tilt test");
}

int sexIndex(const QByteArray& sex)
{
    return sex == "M" ? maleIndex : sex == "F" ? femaleIndex : 0;
}

QByteArray sexAt(int index)
{
    return index == maleIndex ? "M" : index == femaleIndex ? "F" : "";
}

void mark(QWidget* field, bool isGood)
{
    const QString style = isGood ? QString() : QStringLiteral("background-color: lightyellow");
    // Even the same style is worked out anew when it is set.
    if (field->styleSheet() != style)
        field->setStyleSheet(style);
}

/// No entry is cut, in any language and under any style; what is left goes to the pages beside the list.
void fitWidth(QListWidget* list)
{
    list->ensurePolished();
    const int needed = list->sizeHintForColumn(0) + 2 * list->frameWidth();
    list->setFixedWidth(std::max(list->minimumWidth(), needed));
}

} // namespace

StudyDialog::StudyDialog(QWidget* parent, const StudyInfo& info, bool isNew)
    : QDialog(parent), m_ui(std::make_unique<Ui::StudyDialog>()), m_info(info), m_edited(info), m_isNew(isNew)
{
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setTitle();
    setUpCategories();
    setUpLists();
    setUpProtocols();
    setUpRiskFactors();
    addStudyFields(m_form, *m_ui);
    fillDateTime();
    fill(info);
    setUpValidation();
}

StudyDialog::~StudyDialog() = default;

bool StudyDialog::isEcg() const
{
    return m_info.studyType == "ECG";
}

void StudyDialog::setTitle()
{
    setWindowTitle(!m_isNew ? tr("Study data") : isEcg() ? tr("New ECG study") : tr("New Stress Test study"));
}

void StudyDialog::setUpCategories()
{
    QListWidget* list = m_ui->listCategory;
    list->addItems({tr("Patient"), tr("Risk factors"), tr("Study info"), tr("Protocol")});
    list->setCurrentRow(0);
    if (isEcg())
        list->model()->removeRow(list->count() - 1);
    fitWidth(list);
    const auto turnBy = [this](int step) { return [this, step] { turnPage(step); }; };
    connect(new QShortcut(QKeySequence(QStringLiteral("Ctrl+PgDown")), this), &QShortcut::activated, this,
            turnBy(1));
    connect(new QShortcut(QKeySequence(QStringLiteral("Ctrl+PgUp")), this), &QShortcut::activated, this,
            turnBy(-1));
}

void StudyDialog::turnPage(int step)
{
    const int row = m_ui->listCategory->currentRow() + step;
    if (row >= 0 && row < m_ui->listCategory->count())
        m_ui->listCategory->setCurrentRow(row);
}

void StudyDialog::setUpLists()
{
    m_ui->cboSex->addItems({QString(), tr("Male"), tr("Female")});
    loadHistories(*m_ui);
}

void StudyDialog::setUpProtocols()
{
    if (const StudyDatabase* database = studyDatabase()) {
        for (const QByteArray& name : database->protocolNames())
            m_ui->cboProtocol->addItem(velantor::fromText(name));
    }
    m_ui->cboProtocol->addItem(tiltTest());
    if (m_isNew)
        selectProtocol(velantor::toText(settings::lastProtocol.value()));
    m_ui->cboProtocol->setEnabled(m_isNew);
    m_ui->btnProtocols->setVisible(m_isNew);
    m_ui->btnRepeat->setVisible(m_isNew);
}

void StudyDialog::setUpRiskFactors()
{
    const StudyDatabase* database = studyDatabase();
    m_riskFactors =
        std::make_unique<TRiskFactorRows>(m_ui->riskFactorGrid, m_ui->chkRiskFactor, m_ui->txtRiskFactor,
                                          database ? database->riskFactorNames() : standardRiskFactors());
}

void StudyDialog::setUpValidation()
{
    for (const QLineEdit* field : {m_ui->txtLastName, m_ui->txtFirstName, m_ui->txtAge})
        connect(field, &QLineEdit::textChanged, this, &StudyDialog::validate);
    connect(m_ui->cboSex, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &StudyDialog::validate);
    // Or the first button of the form would be the one that the Enter key means.
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setDefault(true);
    if (m_isNew)
        m_ui->txtLastName->setFocus();
    validate();
}

void StudyDialog::fill(const StudyInfo& source)
{
    // First, for it works out targets that those of the study then replace.
    m_ui->cboSex->setCurrentIndex(sexIndex(source.sex));
    m_form.fill(source, m_edited);
    takeHidden(source);
    m_ui->txtBirthDate->setText(shownBirthDate(source.birthDate));
    selectProtocol(source.protocolName);
    m_riskFactors->fill(source.riskFactors);
    updateBodyMassIndex();
    if (m_isNew && source.trainingZoneMax.isEmpty() && source.trainingZoneSubMax.isEmpty())
        updateHeartRateTargets();
}

void StudyDialog::takeHidden(const StudyInfo& source)
{
    for (const auto member : {&StudyInfo::country, &StudyInfo::animalSpecies, &StudyInfo::animalBreed})
        m_edited.*member = source.*member;
    // Among them may be factors without a row.
    m_edited.riskFactors = source.riskFactors;
}

void StudyDialog::fillDateTime()
{
    const QString stored = velantor::fromText(m_info.studyDateTime);
    const QDateTime time =
        m_isNew ? QDateTime::currentDateTime() : QDateTime::fromString(stored, dateTimeFormat());
    if (time.isValid())
        m_ui->dtStudyDateTime->setDateTime(time);
    m_shownDateTime = m_ui->dtStudyDateTime->dateTime();
}

void StudyDialog::selectProtocol(const QByteArray& name)
{
    const QString shown = velantor::fromText(name);
    QComboBox* combo = m_ui->cboProtocol;
    // A study keeps the protocol it was made with, even one that is no longer offered.
    if (!m_isNew && combo->findText(shown) < 0)
        combo->addItem(shown);
    if (const int index = combo->findText(shown); index >= 0)
        combo->setCurrentIndex(index);
}

void StudyDialog::collectDateTime()
{
    const QDateTime time = m_ui->dtStudyDateTime->dateTime();
    if (m_isNew || time != m_shownDateTime)
        m_edited.studyDateTime = velantor::toText(time.toString(dateTimeFormat()));
    m_shownDateTime = time;
}

void StudyDialog::saveLists() const
{
    saveHistories(*m_ui);
    // Elsewhere nobody chose one.
    if (m_isNew && !isEcg())
        settings::lastProtocol.setValue(m_ui->cboProtocol->currentText());
}

void StudyDialog::updateBodyMassIndex()
{
    m_ui->txtBMI->setText(
        bodyMassIndex(velantor::toText(m_ui->txtWeight->text()), velantor::toText(m_ui->txtHeight->text())));
}

void StudyDialog::updateHeartRateTargets()
{
    bool isAge = false;
    const int age = m_ui->txtAge->text().toInt(&isAge);
    const THeartRateTargets targets =
        heartRateTargets(age, m_ui->cboSex->currentIndex() == maleIndex, m_ui->numSubmaxPercent->value());
    // Targets of nobody's age would look like the patient's.
    m_ui->txtHRMax->setText(isAge ? QString::number(targets.maximum) : QString());
    m_ui->txtHRSubmax->setText(isAge ? QString::number(targets.submaximum) : QString());
}

void StudyDialog::validate()
{
    const TMandatoryFields fields =
        checkMandatoryFields(m_ui->txtLastName->text(), m_ui->txtFirstName->text(), m_ui->txtAge->text(),
                             m_ui->cboSex->currentIndex() > 0, isEcg());
    mark(m_ui->txtLastName, fields.lastName);
    mark(m_ui->txtFirstName, fields.firstName);
    mark(m_ui->txtAge, fields.age);
    mark(m_ui->cboSex, fields.sex);
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(fields.areGood());
}

void StudyDialog::on_listCategory_currentRowChanged(int row)
{
    m_ui->pages->setCurrentIndex(row);
}

void StudyDialog::on_txtWeight_textEdited()
{
    updateBodyMassIndex();
}

void StudyDialog::on_txtHeight_textEdited()
{
    updateBodyMassIndex();
}

void StudyDialog::on_txtBirthDate_textEdited(const QString& typed)
{
    const std::optional<int> age = ageAt(parseBirthDate(typed), m_ui->dtStudyDateTime->date());
    m_ui->txtAge->setText(age ? QString::number(*age) : QString());
    updateHeartRateTargets();
}

void StudyDialog::on_txtAge_textEdited()
{
    // The two can't disagree.
    m_ui->txtBirthDate->clear();
    updateHeartRateTargets();
}

void StudyDialog::on_StudyDialog_accepted()
{
    m_form.collect(m_edited);
    m_edited.birthDate = storedBirthDate(parseBirthDate(m_ui->txtBirthDate->text()));
    m_edited.sex = sexAt(m_ui->cboSex->currentIndex());
    if (m_isNew && !isEcg())
        m_edited.protocolName = velantor::toText(m_ui->cboProtocol->currentText());
    collectDateTime();
    m_edited.riskFactors = m_riskFactors->collect(m_edited.riskFactors);
    m_info = m_edited;
    saveLists();
}

void StudyDialog::on_numSubmaxPercent_valueChanged(int)
{
    updateHeartRateTargets();
}

void StudyDialog::on_cboSex_currentIndexChanged(int)
{
    updateHeartRateTargets();
}

void StudyDialog::on_btnRepeat_clicked()
{
    if (const std::optional<StudyInfo> latest = latestStudy(studyDatabase()))
        fill(*latest);
}
