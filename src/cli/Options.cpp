#include "cli/Options.h"

#include <algorithm>

namespace {

bool isOption(const QString& word)
{
    return word.startsWith(QLatin1String("--"));
}

const TOption& findOption(std::span<const TOption> known, const QString& word)
{
    const auto found = std::find_if(known.begin(), known.end(), [&word](const TOption& option) {
        return word == QLatin1String(option.name);
    });
    if (found == known.end())
        throw TUsageError(QStringLiteral("Unknown option %1").arg(word));
    return *found;
}

} // namespace

QString TOptions::value(const char* name, const QString& otherwise) const
{
    const auto found = m_values.constFind(QLatin1String(name));
    return found == m_values.constEnd() ? otherwise : found->last();
}

void TOptions::add(const TOption& option, const QString& value)
{
    QStringList& values = m_values[QLatin1String(option.name)];
    if (!values.isEmpty() && !option.repeatable)
        throw TUsageError(QStringLiteral("%1 is given twice").arg(QLatin1String(option.name)));
    values << value;
}

TCommandWords parseCommandWords(std::span<const TOption> known, const QStringList& words)
{
    TCommandWords parsed;
    for (int i = 0; i < words.size(); ++i) {
        if (!isOption(words.at(i))) {
            parsed.arguments << words.at(i);
            continue;
        }
        const TOption& option = findOption(known, words.at(i));
        if (option.value == nullptr) {
            parsed.options.add(option, QString());
        } else if (i + 1 == words.size() || isOption(words.at(i + 1))) {
            throw TUsageError(QStringLiteral("%1 needs %2").arg(words.at(i), QLatin1String(option.value)));
        } else {
            parsed.options.add(option, words.at(++i));
        }
    }
    return parsed;
}

QStringList describeOptions(std::span<const TOption> known)
{
    QStringList texts;
    for (const TOption& option : known) {
        QString text = QLatin1String(option.name);
        if (option.value != nullptr)
            text += QLatin1Char(' ') + QLatin1String(option.value);
        texts << QLatin1Char('[') + text + (option.repeatable ? QLatin1String("]...") : QLatin1String("]"));
    }
    return texts;
}
