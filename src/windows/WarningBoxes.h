#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>

class QMessageBox;

/// Shows failures to the user of a window, one box after the other. It never waits for the user itself, so
/// failures may be told from where nothing may wait, and a box goes with its window. While the window is
/// hidden the texts wait.
class WarningBoxes : public QObject
{
    Q_OBJECT

public:
    /// Belongs to the window.
    explicit WarningBoxes(QWidget* window);

    /// Shows the text when the caller is back in the event loop. A text that is shown or waits is not
    /// repeated.
    void show(const QString& text);

    /// What nobody has seen yet, as after the window was closed.
    QStringList untold() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showLater();
    void showNext();
    void next();

    QWidget* m_window;
    /// The first one is the box that is open, if one is.
    QStringList m_texts;
    QPointer<QMessageBox> m_box;
};
