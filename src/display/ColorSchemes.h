#pragma once

#include <QColor>
#include <QMap>
#include <QString>
#include <QStringList>

/// The named colour schemes of the signal displays: built in code on first use and stored nowhere; windows
/// keep a name alone. Main thread.

/// "Black", "Blue", "Light".
QStringList schemeNames();

/// Colours by tag (ColorTags.h); none for a name that is no scheme, as the empty one of a fresh installation.
QMap<int, QColor> schemeColors(const QString& name);

/// Gives a display, `QSignalMonitorDisplay` or `QSignalBrowseDisplay`, the colours of a scheme and refreshes
/// it. An unknown name leaves it the colours it has. Null is passed over.
template <typename Display> void applyScheme(const QString& name, Display* display)
{
    if (!display)
        return;
    const QMap<int, QColor> colors = schemeColors(name);
    for (auto each = colors.begin(); each != colors.end(); ++each)
        display->setColor(each.key(), each.value());
    display->refresh();
}
