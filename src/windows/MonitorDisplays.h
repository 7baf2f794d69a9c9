#pragma once

#include "base/Settings.h"

#include <QString>

class QSignalMonitorDisplay;
class TSignal;

/// The two live displays of a monitor window, which show one signal: what concerns both, and how their user
/// wants to see them.
class MonitorDisplays
{
public:
    /// The displays are borrowed; `settings` are those of the window.
    MonitorDisplays(QSignalMonitorDisplay& first, QSignalMonitorDisplay& second,
                    const TDisplaySettings& settings);

    /// Calls `call(display)` for both.
    template <typename Call> void each(Call call) const
    {
        call(m_first);
        call(m_second);
    }
    QSignalMonitorDisplay& other(const QSignalMonitorDisplay& display) const
    {
        return &display == &m_first ? m_second : m_first;
    }

    /// Null takes it away.
    void setSignal(TSignal* signal);
    TSignal* signal() const;
    /// Takes the signal and all that goes with it away: afterwards nothing that was set here is read.
    void detach();
    /// Shares the leads of the signal out to the displays.
    void layOutLeads();
    void refresh();

    /// Nothing happens, and nothing is remembered, if the signal has fewer than 6 channels.
    void setHexaxialOrder(bool on);
    bool hexaxialOrder() const { return m_hexaxialOrder; }
    /// An unknown name, as the empty one, leaves the colours.
    void setColorScheme(const QString& name);
    const QString& colorScheme() const { return m_colorScheme; }
    void setShowAverageBeat(bool show);

    /// Reads and applies what the window wrote when it was last closed.
    void readSettings();
    void writeSettings() const;

private:
    QSignalMonitorDisplay& m_first;
    QSignalMonitorDisplay& m_second;
    const TDisplaySettings& m_settings;
    bool m_hexaxialOrder = false;
    QString m_colorScheme;
};
