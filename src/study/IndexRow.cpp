#include "study/IndexRow.h"

#include "base/Text.h"
#include "study/JsonText.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringView>

#include <algorithm>
#include <array>

namespace {

constexpr TStudyField rowFields[] = {
    {"baseFilename", &StudyInfo::baseFilename},
    {"status", &StudyInfo::status},
    {"studyType", &StudyInfo::studyType},
    {"studyDateTime", &StudyInfo::studyDateTime},
    {"patientFirstName", &StudyInfo::firstName},
    {"patientLastName", &StudyInfo::lastName},
    {"patientAnimalSpecies", &StudyInfo::animalSpecies},
    {"patientAnimalBreed", &StudyInfo::animalBreed},
};

/// The text of each row field in a row; null for an absent one.
using TRowTexts = std::array<QStringView, std::size(rowFields)>;

/// Takes `{"key":"text",...}` apart, without blanks and escapes, as nearly every row is. Making a JSON
/// document of each row would be most of the time that a list takes.
class TFlatRowScanner
{
public:
    explicit TFlatRowScanner(QStringView row) : m_at(row.begin()), m_end(row.end()) {}

    bool skip(char16_t c)
    {
        const bool found = m_at != m_end && *m_at == QChar(c);
        m_at += found ? 1 : 0;
        return found;
    }

    /// What stands between quotes; null if this is no plain string.
    QStringView string()
    {
        if (!skip(u'"'))
            return {};
        const auto from = m_at;
        m_at = std::find_if(from, m_end, [](QChar c) { return c == u'"' || c == u'\\'; });
        const QStringView text(from, m_at);
        return skip(u'"') ? text : QStringView();
    }

    bool isAtEnd() const { return m_at == m_end; }

private:
    QStringView::const_iterator m_at;
    QStringView::const_iterator m_end;
};

void keepText(TRowTexts& texts, QStringView key, QStringView text)
{
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (key == QLatin1String(rowFields[i].key))
            texts[i] = text;
    }
}

/// False for anything but a flat row, even if it is sound JSON.
bool splitFlatRow(QStringView row, TRowTexts& texts)
{
    TFlatRowScanner scanner(row);
    if (!scanner.skip(u'{'))
        return false;
    do {
        const QStringView key = scanner.string();
        const bool isMember = !key.isNull() && scanner.skip(u':');
        const QStringView text = isMember ? scanner.string() : QStringView();
        if (text.isNull())
            return false;
        keepText(texts, key, text);
    } while (scanner.skip(u','));
    return scanner.skip(u'}') && scanner.isAtEnd();
}

void readAnyRow(StudyInfo& info, const QString& data)
{
    const QJsonObject row = QJsonDocument::fromJson(data.toUtf8()).object();
    for (const TStudyField& field : rowFields) {
        const auto found = row.constFind(QLatin1String(field.key));
        if (found != row.constEnd())
            info.*field.member = velantor::toText(found->toString());
    }
}

} // namespace

QString indexRowFromInfo(const StudyInfo& info)
{
    const bool isAnimal = !info.animalSpecies.isEmpty() || !info.animalBreed.isEmpty();
    QJsonObject row;
    for (const TStudyField& field : rowFields) {
        if (isAnimal || !field.isAnimal())
            row.insert(QLatin1String(field.key), velantor::fromText(info.*field.member));
    }
    return QString::fromUtf8(compactJson(QJsonDocument(row)));
}

void readIndexRow(StudyInfo& info, const QString& data)
{
    TRowTexts texts{};
    if (!splitFlatRow(data, texts)) {
        readAnyRow(info, data);
        return;
    }
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (!texts[i].isNull())
            info.*rowFields[i].member = texts[i].toUtf8();
    }
}
