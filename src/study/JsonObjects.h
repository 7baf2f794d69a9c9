#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>

// Small readers for JSON that may have been made by anyone.

/// A number, 0 for what is none or is not finite.
inline double finiteNumber(const QJsonValue& value)
{
    const double number = value.toDouble();
    return std::isfinite(number) ? number : 0.0;
}

/// Hands the objects of a list to `take`, at most `limit`; what is no object is passed over. A short text can
/// list a million of them, each of which becomes something larger here.
template <typename Take> void forEachObject(const QJsonValue& list, int limit, Take take)
{
    int taken = 0;
    for (const QJsonValue element : list.toArray()) {
        if (!element.isObject())
            continue;
        if (taken++ == limit)
            return;
        take(element.toObject());
    }
}
