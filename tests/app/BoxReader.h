#pragma once

#include <QApplication>
#include <QMessageBox>
#include <QTimerEvent>

#include <vector>

/// Reads every message box that comes up, and answers it with its default button. An application must exist.
class BoxReader : public QObject
{
public:
    struct TBox
    {
        QMessageBox::Icon icon;
        QString title;
        QString text;
        bool isPlain; ///< no tags are looked for in the text
    };

    BoxReader() { startTimer(5); }

    const std::vector<TBox>& boxes() const { return m_boxes; }
    /// "kind, title: text" of each, for comparisons; a text that may be taken for another is marked.
    QStringList texts() const
    {
        QStringList all;
        for (const TBox& box : m_boxes)
            all << kindOf(box.icon) + QLatin1String(", ") + box.title + QLatin1String(": ") +
                       QLatin1String(box.isPlain ? "" : "(not plain) ") + box.text;
        return all;
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || !box->isVisible())
            return;
        m_boxes.push_back({box->icon(), box->windowTitle(), box->text(), box->textFormat() == Qt::PlainText});
        box->accept();
    }

private:
    static QString kindOf(QMessageBox::Icon icon)
    {
        switch (icon) {
        case QMessageBox::Information:
            return QStringLiteral("information");
        case QMessageBox::Warning:
            return QStringLiteral("warning");
        case QMessageBox::Critical:
            return QStringLiteral("critical");
        default:
            return QStringLiteral("other");
        }
    }

    std::vector<TBox> m_boxes;
};
