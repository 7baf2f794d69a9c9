#pragma once

#include <QColor>
#include <QDialog>
#include <QMap>

#include <memory>

class QColorDialog;
class QListWidgetItem;

namespace Ui {
class DisplayColorDialog;
}

/// Edits the colours of a signal display, one element after the other; the display shows each change at once.
class DisplayColorDialog : public QDialog
{
    Q_OBJECT

public:
    explicit DisplayColorDialog(QWidget* parent = nullptr);
    ~DisplayColorDialog() override;

    /// Lists the elements of these tags (ColorTags.h) with their colours; at first those of the "Light"
    /// scheme.
    void setColors(const QMap<int, QColor>& colors);
    QMap<int, QColor> colors() const;

    /// From now on a changed colour is set on the display, a `QSignalMonitorDisplay` or
    /// `QSignalBrowseDisplay`, and shown there. The connection ends with either of the two.
    template <typename Display> void connectTo(Display* display)
    {
        connect(this, &DisplayColorDialog::colorChanged, display, [display](int tag, const QColor& color) {
            display->setColor(tag, color);
            display->refresh();
        });
    }

Q_SIGNALS:
    /// The user chose a colour. Its alpha is the one that the element had.
    void colorChanged(int tag, QColor color);

private Q_SLOTS:
    void on_listElements_currentItemChanged(QListWidgetItem* current, QListWidgetItem* previous);

private:
    void embedColorDialog();
    void changeCurrent(const QColor& color);

    std::unique_ptr<Ui::DisplayColorDialog> m_ui;
    QColorDialog* m_colorDialog;
};
