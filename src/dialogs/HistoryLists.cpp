#include "dialogs/HistoryLists.h"

#include <QComboBox>
#include <QCompleter>

namespace {

/// The text counts as it will be offered: without blanks around it.
void addEntry(QStringList& entries, const QString& text)
{
    const QString entry = text.trimmed();
    if (!entry.isEmpty() && !entries.contains(entry))
        entries.append(entry);
}

QStringList cleaned(const QStringList& stored)
{
    QStringList entries;
    for (const QString& text : stored)
        addEntry(entries, text);
    return entries;
}

} // namespace

void loadHistory(QComboBox* combo, const TSetting<QStringList>& list)
{
    combo->clear();
    combo->addItems(cleaned(list.value()));
    combo->setCurrentIndex(-1);
    // Within the field it would put the rest of a longer name behind a shorter one that was meant.
    combo->completer()->setCompletionMode(QCompleter::PopupCompletion);
}

void saveHistory(QComboBox* combo, const TSetting<QStringList>& list)
{
    QStringList entries;
    for (int index = 0; index < combo->count(); ++index)
        entries.append(combo->itemText(index));
    addEntry(entries, combo->currentText());
    list.setValue(entries);
    if (entries.size() > combo->count())
        combo->addItem(entries.last());
}
