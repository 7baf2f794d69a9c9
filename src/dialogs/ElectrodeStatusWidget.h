#pragma once

#include <QMap>
#include <QString>
#include <QWidget>

#include <memory>

class QLabel;

namespace Ui {
class ElectrodeStatusWidget;
}

/// Floats over the live ECG and shows which electrodes have come off. The window shows it, moves it and asks
/// `mayShow` first.
class ElectrodeStatusWidget : public QWidget
{
    Q_OBJECT

public:
    explicit ElectrodeStatusWidget(QWidget* parent = nullptr);
    ~ElectrodeStatusWidget() override;

    /// Electrodes are "LL", "LA", "RA" and "V1" to "V6"; nothing happens for any other name.
    void setElectrodeState(const QString& name, bool off);
    /// False for good once its user has sent it away.
    bool mayShow() const { return m_mayShow; }

private Q_SLOTS:
    void on_btnHide_clicked();

private:
    std::unique_ptr<Ui::ElectrodeStatusWidget> m_ui;
    QMap<QString, QLabel*> m_labels;
    bool m_mayShow = true;
};
