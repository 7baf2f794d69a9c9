#include "gallery/StyleStates.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QTextEdit>
#include <QToolButton>

#include <array>
#include <functional>

namespace {

using TMaker = std::function<QWidget*()>;

enum class TState
{
    Normal,
    Hover,
    Focus,
    Switched,
    Disabled
};

template <typename TButton> QWidget* button(const QString& text, const char* icon = nullptr)
{
    auto* made = new TButton;
    made->setText(text);
    if (icon)
        made->setIcon(QIcon(QLatin1String(icon)));
    made->setCheckable(true);
    if (auto* push = qobject_cast<QPushButton*>(made))
        push->setAutoDefault(false);
    return made;
}

QWidget* primaryButton()
{
    auto* made = new QPushButton(QIcon(QStringLiteral(":/res/start")), QStringLiteral("Primary"));
    made->setProperty("primary", true);
    made->setAutoDefault(false);
    return made;
}

QWidget* toolButton()
{
    auto* made = new QToolButton;
    made->setIcon(QIcon(QStringLiteral(":/res/filter-muscle")));
    made->setIconSize({24, 24});
    made->setCheckable(true);
    return made;
}

QWidget* field(const QString& text, const char* style = "")
{
    auto* made = new QLineEdit(text);
    made->setStyleSheet(QLatin1String(style));
    return made;
}

QWidget* readOnlyField()
{
    auto* made = new QLineEdit(QStringLiteral("Computed"));
    made->setReadOnly(true);
    return made;
}

QWidget* combo(bool editable)
{
    auto* made = new QComboBox;
    made->setEditable(editable);
    made->addItems({QStringLiteral("Bruce"), QStringLiteral("Naughton")});
    return made;
}

QWidget* sexComboInError()
{
    auto* made = new QComboBox;
    made->addItems({QStringLiteral("Male"), QStringLiteral("Female")});
    made->setStyleSheet(QStringLiteral("background-color: lightyellow"));
    return made;
}

QWidget* dateEdit(bool calendar)
{
    auto* made = new QDateTimeEdit(QDateTime(QDate(2024, 2, 29), QTime(9, 30)));
    made->setCalendarPopup(calendar);
    return made;
}

QWidget* slider()
{
    auto* made = new QSlider(Qt::Horizontal);
    made->setValue(60);
    return made;
}

QWidget* progressBar()
{
    auto* made = new QProgressBar;
    made->setValue(60);
    return made;
}

QWidget* textEdit()
{
    auto* made = new QTextEdit(QStringLiteral("Sinus rhythm"));
    made->setMaximumHeight(56);
    return made;
}

struct TRow
{
    const char* name;
    TMaker make;
};

const std::array rows{
    TRow{"QPushButton", [] { return button<QPushButton>(QStringLiteral("Repeat"), ":/res/repeat"); }},
    TRow{"primary", primaryButton},
    TRow{"QToolButton", toolButton},
    TRow{"QCheckBox", [] { return button<QCheckBox>(QStringLiteral("Print this stage")); }},
    TRow{"QRadioButton", [] { return button<QRadioButton>(QStringLiteral("Male")); }},
    TRow{"QLineEdit", [] { return field(QStringLiteral("Muster")); }},
    TRow{"read-only", readOnlyField},
    TRow{"in error", [] { return field(QStringLiteral("1"), "background-color: lightyellow"); }},
    TRow{"QComboBox", [] { return combo(false); }},
    TRow{"editable", [] { return combo(true); }},
    TRow{"in error", sexComboInError},
    TRow{"QSpinBox", []() -> QWidget* { return new QSpinBox; }},
    TRow{"QDoubleSpinBox", []() -> QWidget* { return new QDoubleSpinBox; }},
    TRow{"QDateTimeEdit", [] { return dateEdit(false); }},
    TRow{"with calendar", [] { return dateEdit(true); }},
    TRow{"QSlider", slider},
    TRow{"QProgressBar", progressBar},
    TRow{"QTextEdit", textEdit},
};

/// A photograph of the control while it has the focus or is under the mouse.
QWidget* photographed(const TMaker& make, TState state)
{
    QDialog window;
    window.setAttribute(Qt::WA_DontShowOnScreen);
    QGridLayout layout(&window);
    QWidget* control = make();
    layout.addWidget(control);
    window.setFixedWidth(200);
    window.show();
    QApplication::setActiveWindow(&window);
    if (state == TState::Focus)
        control->setFocus(Qt::TabFocusReason);
    else
        control->clearFocus();
    QApplication::processEvents();
    control->setAttribute(Qt::WA_UnderMouse, state == TState::Hover);
    auto* picture = new QLabel;
    picture->setPixmap(window.grab(control->geometry()));
    return picture;
}

QWidget* inState(const TMaker& make, TState state)
{
    if (state == TState::Focus || state == TState::Hover)
        return photographed(make, state);
    QWidget* control = make();
    control->setDisabled(state == TState::Disabled);
    auto* asButton = qobject_cast<QAbstractButton*>(control);
    if (asButton && state == TState::Switched) {
        asButton->setChecked(true);
        asButton->setDown(!asButton->isCheckable());
    }
    return control;
}

} // namespace

std::unique_ptr<QWidget> makeStatesPage()
{
    constexpr std::array states{TState::Normal, TState::Hover, TState::Focus, TState::Switched,
                                TState::Disabled};
    constexpr std::array names{"normal", "under the mouse", "focus", "switched or pressed", "disabled"};
    auto page = std::make_unique<QDialog>();
    page->setFocusPolicy(Qt::StrongFocus);
    page->setFocus();
    auto* grid = new QGridLayout(page.get());
    for (std::size_t column = 0; column < states.size(); ++column)
        grid->addWidget(new QLabel(QLatin1String(names[column])), 0, int(column) + 1);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        grid->addWidget(new QLabel(QLatin1String(rows[row].name)), int(row) + 1, 0);
        for (std::size_t column = 0; column < states.size(); ++column)
            grid->addWidget(inState(rows[row].make, states[column]), int(row) + 1, int(column) + 1);
    }
    return page;
}
