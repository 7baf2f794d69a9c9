#include "windows/MonitorDisplays.h"

#include "analysis/signals/TSignal.h"
#include "display/ColorSchemes.h"
#include "display/LeadLayout.h"
#include "display/QSignalMonitorDisplay.h"

MonitorDisplays::MonitorDisplays(QSignalMonitorDisplay& first, QSignalMonitorDisplay& second,
                                 const TDisplaySettings& settings)
    : m_first(first), m_second(second), m_settings(settings)
{
}

void MonitorDisplays::setSignal(TSignal* signal)
{
    each([signal](QSignalMonitorDisplay& display) { display.setSignal(signal); });
}

TSignal* MonitorDisplays::signal() const
{
    return m_first.signal();
}

void MonitorDisplays::detach()
{
    each([](QSignalMonitorDisplay& display) {
        display.setSignal(nullptr);
        display.setSaturationSource(nullptr);
        display.setFiducialSource(nullptr);
        display.setAverageBeat(nullptr);
    });
}

void MonitorDisplays::layOutLeads()
{
    ::layOutLeads(m_first, m_second, signal());
}

void MonitorDisplays::refresh()
{
    each([](QSignalMonitorDisplay& display) { display.refresh(); });
}

void MonitorDisplays::setHexaxialOrder(bool on)
{
    if (!signal() || signal()->channelCount() < limbLeads)
        return;
    m_hexaxialOrder = on;
    ::setHexaxialOrder(m_first, signal(), on);
}

void MonitorDisplays::setColorScheme(const QString& name)
{
    m_colorScheme = name;
    each([&name](QSignalMonitorDisplay& display) { applyScheme(name, &display); });
}

void MonitorDisplays::setShowAverageBeat(bool show)
{
    each([show](QSignalMonitorDisplay& display) { display.setShowAverageBeat(show); });
}

void MonitorDisplays::readSettings()
{
    setColorScheme(m_settings.displayColorScheme.value());
    // Remembered also where too few leads are shown: it is meant for the next patient.
    m_hexaxialOrder = m_settings.hexaxialOrder.value();
    setHexaxialOrder(m_hexaxialOrder);
    setShowAverageBeat(m_settings.showAverageBeat.value());
}

void MonitorDisplays::writeSettings() const
{
    m_settings.displayColorScheme.setValue(m_colorScheme);
    m_settings.hexaxialOrder.setValue(m_hexaxialOrder);
    m_settings.showAverageBeat.setValue(m_first.showAverageBeat());
}
