#pragma once

#include <QIcon>
#include <QLabel>

/// Shows an icon as large as the label, sharp on a screen of any density.
class IconLabel : public QLabel
{
    Q_OBJECT

public:
    explicit IconLabel(QWidget* parent = nullptr) : QLabel(parent) {}

    void setIcon(const QIcon& icon);
    const QIcon& icon() const { return m_icon; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QIcon m_icon;
};
