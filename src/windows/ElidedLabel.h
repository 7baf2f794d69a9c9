#pragma once

#include <QLabel>

/// A plain text in one line that ends in dots where it does not fit; its tool tip has all of it.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    void setFullText(const QString& text);
    /// What there is room for.
    QString shownText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QSize sizeOf(const QString& text) const;
};
