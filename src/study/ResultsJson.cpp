#include "study/ResultsJson.h"

#include "base/Text.h"
#include "study/JsonObjects.h"
#include "study/JsonText.h"
#include "study/TStudyResults.h"

namespace {

const QLatin1String typeKey("type");
const QLatin1String valueKey("value");
const QLatin1String valuesKey("values");
const QLatin1String timestampsKey("timestamps");

QJsonArray makeArray(const std::vector<double>& values)
{
    QJsonArray array;
    for (const double value : values)
        array.append(value);
    return array;
}

std::vector<double> readArray(const QJsonValue& value)
{
    const QJsonArray array = value.toArray();
    std::vector<double> numbers;
    numbers.reserve(static_cast<std::size_t>(array.size()));
    for (const QJsonValue element : array)
        numbers.push_back(finiteNumber(element));
    return numbers;
}

QJsonObject makeItem(const TResultItem& item)
{
    switch (item.kind()) {
    case TResultKind::Value:
        return {{typeKey, QLatin1String("value")},
                {valueKey, static_cast<const TResultValue&>(item).value()}};
    case TResultKind::ValueArray:
        return {{typeKey, QLatin1String("valueArray")},
                {valuesKey, makeArray(static_cast<const TResultList&>(item).values())}};
    case TResultKind::Trend:
        break;
    }
    const auto& trend = static_cast<const TResultTrend&>(item);
    return {{typeKey, QLatin1String("trend")},
            {timestampsKey, makeArray(trend.times())},
            {valuesKey, makeArray(trend.values())}};
}

void readItem(TResultItem& item, const QJsonObject& object)
{
    switch (item.kind()) {
    case TResultKind::Value:
        static_cast<TResultValue&>(item).setValue(finiteNumber(object.value(valueKey)));
        break;
    case TResultKind::ValueArray:
        static_cast<TResultList&>(item).setValues(readArray(object.value(valuesKey)));
        break;
    case TResultKind::Trend:
        static_cast<TResultTrend&>(item).setPoints(readArray(object.value(timestampsKey)),
                                                   readArray(object.value(valuesKey)));
        break;
    }
}

} // namespace

QJsonObject makeResultsObject(const TStudyResults& results)
{
    QJsonObject object;
    for (const auto& [name, item] : results.items())
        object.insert(velantor::fromText(name), makeItem(*item));
    return object;
}

void appendResults(QByteArray& text, const TStudyResults& results)
{
    char separator = '{';
    for (const auto& [name, item] : results.items()) {
        text += separator;
        text += '"' + name + "\":"; // of the fixed table, so there is nothing to escape
        text += compactJson(QJsonDocument(makeItem(*item)));
        separator = ',';
    }
    text += '}';
}

void readResultsObject(TStudyResults& results, const QJsonObject& object)
{
    for (const auto& [name, item] : results.items()) {
        const auto found = object.constFind(velantor::fromText(name));
        if (found != object.constEnd())
            readItem(*item, found->toObject());
    }
}
