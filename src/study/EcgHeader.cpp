#include "analysis/signals/TChannel.h"
#include "base/Text.h"
#include "study/JsonText.h"
#include "study/Study.h"
#include "study/StudyDocument.h"
#include "study/TEcgFile.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace {

QJsonObject makeEcgObject(const TEcgFile& ecg)
{
    QJsonArray channels;
    for (int i = 0; i < ecg.channelCount(); ++i)
        channels.append(velantor::fromText(ecg.channel(i)->name()));
    return {{QLatin1String("sampleFormat"), QLatin1String("short")},
            {QLatin1String("samplingRate"), ecg.samplingRate()},
            {QLatin1String("resolution"), ecg.resolutionBits()},
            {QLatin1String("gainMin"), ecg.rangeMin()},
            {QLatin1String("gainMax"), ecg.rangeMax()},
            {QLatin1String("channels"), channels}};
}

/// Cuts without parting the two halves of a character outside the basic plane.
QString shortened(const QString& text, int length)
{
    if (text.size() <= length)
        return text;
    return text.left(length > 0 && text.at(length - 1).isHighSurrogate() ? length - 1 : length);
}

/// A copy in which no text is longer than `length`; what finds the study again stays whole.
QJsonValue shortened(const QJsonValue& value, int length)
{
    if (value.isString())
        return shortened(value.toString(), length);
    if (value.isArray()) {
        QJsonArray array;
        for (const QJsonValue element : value.toArray())
            array.append(shortened(element, length));
        return array;
    }
    if (!value.isObject())
        return value;
    QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (member.key() != QLatin1String("baseFilename") &&
            !member.key().endsWith(QLatin1String("DateTime")))
            member.value() = shortened(QJsonValue(member.value()), length);
    }
    return object;
}

int longestText(const QJsonValue& value)
{
    int longest = value.toString().size();
    for (const QJsonValue element : value.toArray())
        longest = std::max(longest, longestText(element));
    for (const QJsonValue member : value.toObject())
        longest = std::max(longest, longestText(member));
    return longest;
}

} // namespace

QByteArray makeEcgHeaderDocument(Study& study, int maxBytes)
{
    const QJsonObject whole{{QLatin1String("study"), makeStudyObject(study)},
                            {QLatin1String("patient"), makePatientObject(study)}};
    const QJsonObject ecg = makeEcgObject(*study.ecg());
    const auto documentWithTexts = [&](int length) {
        QJsonObject document = shortened(QJsonValue(whole), length).toObject();
        document.insert(QLatin1String("ecg"), ecg);
        return compactJson(QJsonDocument(document));
    };

    // The longest texts that still fit: a lower limit never makes the document longer.
    int tooLong = longestText(whole) + 1;
    int fitting = 0;
    QByteArray document = documentWithTexts(fitting);
    if (document.size() > maxBytes)
        return {};
    while (tooLong - fitting > 1) {
        const int length = fitting + (tooLong - fitting) / 2;
        const QByteArray candidate = documentWithTexts(length);
        if (candidate.size() <= maxBytes) {
            fitting = length;
            document = candidate;
        } else {
            tooLong = length;
        }
    }
    return document;
}
