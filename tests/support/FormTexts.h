#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QCoreApplication>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QMap>
#include <QShortcut>
#include <QStringList>
#include <QTranslator>

// What the texts of a window are like in the languages of the program.

/// As long as it lives the program speaks Spanish, or English.
class TLanguage
{
public:
    /// `folder` has the catalogues.
    TLanguage(const char* folder, bool isSpanish)
    {
        if (isSpanish) {
            load(m_qtTexts, folder, "/qt_es.qm");
            load(m_texts, folder, "/VelantorStressECG_es.qm");
        }
    }

private:
    static void load(QTranslator& texts, const char* folder, const char* name)
    {
        if (!texts.load(QString::fromUtf8(folder) + QLatin1String(name)))
            qFatal("There is no %s%s", folder, name);
        QCoreApplication::installTranslator(&texts);
    }

    // They take themselves out of the program when they end.
    QTranslator m_qtTexts;
    QTranslator m_texts;
};

/// Names of the labels and buttons that are shown with less room than their texts need.
inline QStringList cutTexts(const QWidget& window)
{
    QStringList cut;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isText =
            qobject_cast<const QLabel*>(widget) || qobject_cast<const QAbstractButton*>(widget);
        if (isText && widget->isVisible() && widget->width() < widget->sizeHint().width())
            cut += widget->objectName();
    }
    return cut;
}

/// The keys that lead to what is shown of a window, each with the names of those that want it.
inline QMap<QString, QStringList> keysOf(const QWidget& window)
{
    QMap<QString, QStringList> wanted;
    const auto add = [&wanted](const QKeySequence& key, const QObject* object) {
        if (!key.isEmpty())
            wanted[key.toString()] += object->objectName();
    };
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisible())
            continue;
        if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
            add(button->shortcut(), button);
        const auto* label = qobject_cast<const QLabel*>(widget);
        if (label && label->buddy())
            add(QKeySequence::mnemonic(label->text()), label);
        if (const auto* group = qobject_cast<const QGroupBox*>(widget))
            add(QKeySequence::mnemonic(group->title()), group);
    }
    for (const QAction* action : window.findChildren<QAction*>())
        add(action->shortcut(), action);
    for (const QShortcut* shortcut : window.findChildren<QShortcut*>())
        add(shortcut->key(), shortcut);
    return wanted;
}

/// "key: names" of each key that leads to more than one part of what is shown of a window.
inline QStringList repeatedKeys(const QWidget& window)
{
    QStringList repeated;
    const QMap<QString, QStringList> wanted = keysOf(window);
    for (auto each = wanted.begin(); each != wanted.end(); ++each) {
        if (each->size() > 1)
            repeated += each.key() + QLatin1String(": ") + each->join(QLatin1Char(' '));
    }
    return repeated;
}
