#pragma once

#include <QMenu>

class MonitorDisplays;
class QSignalMonitorDisplay;

/// What the user of a monitor window chooses on its live displays: leads, their order, colours.
class LeadMenu : public QMenu
{
    Q_OBJECT

public:
    /// The displays are borrowed and outlive the menu.
    explicit LeadMenu(MonitorDisplays& displays, QWidget* parent = nullptr);

    /// Made anew for the display that was clicked, and shown at a place of the screen. Does not wait. It
    /// comes again after a lead was switched, for the next one.
    void popupFor(QSignalMonitorDisplay& clicked, const QPoint& place);

private:
    void addLeads(QSignalMonitorDisplay& clicked, const QPoint& place);
    void addLayout(QSignalMonitorDisplay& other);
    void addColorSchemes();
    /// A checkable action that calls `set` with its new state.
    template <typename Set> QAction* addSwitch(const QString& text, bool checked, Set set);

    MonitorDisplays& m_displays;
};
