#include "res/DarkPalette.h"

#include "DarkColours.h" // written by the build from the table that the sheets are made of

#include <array>

namespace {

struct TRoleColour
{
    QPalette::ColorRole role;
    const char* name;
};

constexpr std::array colours{
    TRoleColour{QPalette::Window, DARK_WINDOW},
    TRoleColour{QPalette::WindowText, DARK_TEXT},
    TRoleColour{QPalette::Base, DARK_FIELD},
    TRoleColour{QPalette::AlternateBase, DARK_STRIPE},
    TRoleColour{QPalette::Text, DARK_TEXT},
    TRoleColour{QPalette::PlaceholderText, DARK_SECONDARY},
    TRoleColour{QPalette::Button, DARK_RAISED},
    TRoleColour{QPalette::ButtonText, DARK_TEXT},
    TRoleColour{QPalette::BrightText, DARK_BRIGHT},
    TRoleColour{QPalette::ToolTipBase, DARK_RAISED},
    TRoleColour{QPalette::ToolTipText, DARK_TEXT},
    TRoleColour{QPalette::Highlight, DARK_ACCENT},
    TRoleColour{QPalette::HighlightedText, DARK_ACCENT_TEXT},
    TRoleColour{QPalette::Link, DARK_FOCUS},
    TRoleColour{QPalette::LinkVisited, DARK_FOCUS},
    TRoleColour{QPalette::Light, DARK_HOVER},
    TRoleColour{QPalette::Midlight, DARK_RAISED},
    TRoleColour{QPalette::Mid, DARK_BORDER},
    TRoleColour{QPalette::Dark, DARK_FIELD},
    TRoleColour{QPalette::Shadow, DARK_FIELD},
};
constexpr std::array textRoles{QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                               QPalette::HighlightedText};

QColor colour(const char* name)
{
    return QColor(QLatin1String(name));
}

} // namespace

QPalette darkPalette()
{
    QPalette palette;
    for (const TRoleColour& each : colours)
        palette.setColor(each.role, colour(each.name));
    for (const QPalette::ColorRole role : textRoles)
        palette.setColor(QPalette::Disabled, role, colour(DARK_DISABLED));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colour(DARK_RAISED));
    return palette;
}
