#pragma once

#include "app/QuickStudy.h"

#include <QWidget>

#include <memory>

namespace Ui {
class QuickFields;
}

/// The few fields of a patient with which a study starts at once.
class QuickFields : public QWidget
{
    Q_OBJECT

public:
    explicit QuickFields(QWidget* parent = nullptr);
    ~QuickFields() override;

    TQuickPatient patient() const;
    void setPatient(const TQuickPatient& patient);
    /// Empties all of them and puts the focus on the last name.
    void clear();
    void focusLastName();

Q_SIGNALS:
    void changed();
    /// The user pressed Enter in a field.
    void submitted();

private:
    QByteArray sex() const;

    std::unique_ptr<Ui::QuickFields> m_ui;
};
