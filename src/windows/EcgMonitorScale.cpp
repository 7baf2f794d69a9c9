#include "display/QSignalMonitorDisplay.h"
#include "windows/EcgMonitorWindow.h"
#include "windows/MonitorDisplays.h"

// What the buttons of speed and amplitude do while the signal is live.

void EcgMonitorWindow::on_btnSpeed12_clicked()
{
    setSpeed(12.5);
}

void EcgMonitorWindow::on_btnSpeed25_clicked()
{
    setSpeed(25.0);
}

void EcgMonitorWindow::on_btnSpeed50_clicked()
{
    setSpeed(50.0);
}

void EcgMonitorWindow::setSpeed(double mmPerSec)
{
    m_displays->each([mmPerSec](QSignalMonitorDisplay& display) { display.setSpeed(mmPerSec); });
}

void EcgMonitorWindow::on_btnAmp5_clicked()
{
    setAmplitude(5.0);
}

void EcgMonitorWindow::on_btnAmp10_clicked()
{
    setAmplitude(10.0);
}

void EcgMonitorWindow::on_btnAmp20_clicked()
{
    setAmplitude(20.0);
}

void EcgMonitorWindow::setAmplitude(double mmPerMv)
{
    m_displays->each([mmPerMv](QSignalMonitorDisplay& display) { display.setAmplitude(mmPerMv); });
}
