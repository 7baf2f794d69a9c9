#include "windows/LeadMenu.h"

#include "analysis/signals/TChannel.h"
#include "analysis/signals/TSignal.h"
#include "base/Text.h"
#include "display/ColorSchemes.h"
#include "display/LeadLayout.h"
#include "display/QSignalMonitorDisplay.h"
#include "windows/MonitorDisplays.h"

#include <QActionGroup>

namespace {

/// Names of schemes as users read them.
QString schemeText(const QString& name)
{
    if (name == QLatin1String("Black"))
        return LeadMenu::tr("Black");
    if (name == QLatin1String("Blue"))
        return LeadMenu::tr("Blue");
    if (name == QLatin1String("Light"))
        return LeadMenu::tr("Light");
    return name;
}

} // namespace

LeadMenu::LeadMenu(MonitorDisplays& displays, QWidget* parent) : QMenu(parent), m_displays(displays)
{
    setTitle(tr("Show leads"));
}

void LeadMenu::popupFor(QSignalMonitorDisplay& clicked, const QPoint& place)
{
    clear();
    // The menu keeps those as its children.
    qDeleteAll(findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly));
    addLeads(clicked, place);
    addSeparator();
    addLayout(m_displays.other(clicked));
    addSwitch(tr("Average beat"), clicked.showAverageBeat(),
              [this](bool on) { m_displays.setShowAverageBeat(on); });
    addColorSchemes();
    popup(place);
}

void LeadMenu::addLeads(QSignalMonitorDisplay& clicked, const QPoint& place)
{
    const TSignal* signal = m_displays.signal();
    for (int channel = 0; signal && channel < signal->channelCount(); ++channel) {
        const QString name = velantor::fromText(signal->channel(channel)->name());
        QAction* lead = addSwitch(name, clicked.channelVisible(channel), [=, this, &clicked](bool on) {
            clicked.setChannelVisible(channel, on);
            popup(place);
        });
        lead->setData(channel);
    }
}

void LeadMenu::addLayout(QSignalMonitorDisplay& other)
{
    const int channels = m_displays.signal() ? m_displays.signal()->channelCount() : 0;
    if (channels > channelsOfOneDisplay)
        addSwitch(tr("Double panel"), !other.isHidden(), [&other](bool on) { other.setVisible(on); });
    if (channels >= limbLeads)
        addSwitch(tr("Hexaxial order"), m_displays.hexaxialOrder(),
                  [this](bool on) { m_displays.setHexaxialOrder(on); });
}

void LeadMenu::addColorSchemes()
{
    QMenu* menu = addMenu(tr("Color scheme"));
    auto* group = new QActionGroup(menu);
    group->setExclusive(true);
    for (const QString& name : schemeNames()) {
        QAction* scheme = menu->addAction(schemeText(name));
        scheme->setCheckable(true);
        scheme->setChecked(name == m_displays.colorScheme());
        scheme->setData(name);
        group->addAction(scheme);
        connect(scheme, &QAction::triggered, this, [this, name](bool on) {
            if (on)
                m_displays.setColorScheme(name);
        });
    }
}

template <typename Set> QAction* LeadMenu::addSwitch(const QString& text, bool checked, Set set)
{
    QAction* action = addAction(text);
    action->setCheckable(true);
    action->setChecked(checked);
    connect(action, &QAction::triggered, this, set);
    return action;
}
