#include "wfdb/LeadNames.h"

#include "base/Text.h"

#include <algorithm>
#include <utility>

namespace {

constexpr const char* leadNames[] = {"I",  "II", "III", "aVR", "aVL", "aVF", "V1",
                                     "V2", "V3", "V4",  "V5",  "V6",  "CM5", "CR5"};
constexpr int maxNameBytes = 32;

QByteArray withoutPrefix(const QByteArray& name, const QByteArray& prefix)
{
    const bool has = name.size() > prefix.size() && qstrnicmp(name, prefix, prefix.size()) == 0;
    return has ? name.mid(prefix.size()) : name;
}

/// Headers are UTF-8 by now and were Latin-1.
QString textOf(const QByteArray& bytes)
{
    const QString text = QString::fromUtf8(bytes);
    return text.contains(QChar::ReplacementCharacter) ? QString::fromLatin1(bytes) : text;
}

QByteArray plainName(const QByteArray& description)
{
    QString text = textOf(description);
    // A study keeps its channels' names in a list with commas.
    for (QChar& c : text) {
        if (!c.isPrint() || c == QLatin1Char(','))
            c = c.isSurrogate() ? c : QLatin1Char(' ');
    }
    text = text.simplified();
    while (velantor::toText(text).size() > maxNameBytes)
        text.chop(std::as_const(text).back().isLowSurrogate() ? 2 : 1);
    return velantor::toText(text).trimmed();
}

} // namespace

QByteArray canonicalLeadName(const QByteArray& name)
{
    const QByteArray lead = withoutPrefix(withoutPrefix(name.simplified(), "ECG "), "lead ");
    const auto* found = std::find_if(std::begin(leadNames), std::end(leadNames),
                                     [&](const char* each) { return qstricmp(each, lead) == 0; });
    return found == std::end(leadNames) ? QByteArray() : QByteArray(*found);
}

std::vector<QByteArray> channelNames(const std::vector<QByteArray>& descriptions)
{
    std::vector<QByteArray> names;
    for (std::size_t i = 0; i < descriptions.size(); ++i) {
        QByteArray name = canonicalLeadName(descriptions[i]);
        if (name.isEmpty())
            name = plainName(descriptions[i]);
        if (name.isEmpty())
            name = "Signal " + QByteArray::number(static_cast<int>(i) + 1);
        names.push_back(name);
    }
    return names;
}
