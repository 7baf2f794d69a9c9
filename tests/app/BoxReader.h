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
    };

    BoxReader() { startTimer(5); }

    const std::vector<TBox>& boxes() const { return m_boxes; }
    /// "title: text" of each, for comparisons.
    QStringList texts() const
    {
        QStringList all;
        for (const TBox& box : m_boxes)
            all << box.title + QLatin1String(": ") + box.text;
        return all;
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || !box->isVisible())
            return;
        m_boxes.push_back({box->icon(), box->windowTitle(), box->text()});
        box->accept();
    }

private:
    std::vector<TBox> m_boxes;
};
