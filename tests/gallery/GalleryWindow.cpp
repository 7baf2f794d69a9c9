#include "gallery/GalleryWindow.h"

#include "display/BrowseView.h"
#include "display/ColorSchemes.h"
#include "display/QSignalMonitorDisplay.h"
#include "gallery/GalleryPages.h"

#include <QComboBox>
#include <QTabWidget>
#include <QToolBar>

namespace {

constexpr int tickMilliseconds = 100;

} // namespace

GalleryWindow::GalleryWindow() : m_tabs(new QTabWidget(this))
{
    setWindowTitle(QStringLiteral("Displays"));
    setCentralWidget(m_tabs);
    addSchemeBar();
    showScheme(QString());
    connect(&m_timer, &QTimer::timeout, this, &GalleryWindow::tick);
    m_timer.start(tickMilliseconds);
}

GalleryWindow::~GalleryWindow()
{
    delete takeCentralWidget();
}

void GalleryWindow::addSchemeBar()
{
    auto* schemes = new QComboBox(this);
    schemes->addItem(QString());
    schemes->addItems(schemeNames());
    connect(schemes, &QComboBox::currentTextChanged, this, &GalleryWindow::showScheme);
    addToolBar(QStringLiteral("Colors"))->addWidget(schemes);
}

void GalleryWindow::showScheme(const QString& scheme)
{
    const int tab = m_tabs->currentIndex();
    while (m_tabs->count() > 0)
        delete m_tabs->widget(0);
    m_tabs->addTab(makeMonitorPage(m_live, {scheme}).release(), QStringLiteral("Live"));
    m_tabs->addTab(makeBrowsePage(m_stored, {scheme}, SelectBeatsMode).release(), QStringLiteral("Stored"));
    m_tabs->addTab(makeBrowsePage(m_stored, {scheme}, CaliperMode).release(), QStringLiteral("Caliper"));
    m_tabs->addTab(makeBeatPage(m_stored).release(), QStringLiteral("Beat"));
    m_tabs->addTab(makePlotPage(m_trends).release(), QStringLiteral("Plots"));
    m_tabs->addTab(makePlotModesPage(m_trends).release(), QStringLiteral("Plot modes"));
    m_tabs->addTab(makeColorPage(scheme).release(), QStringLiteral("Colors"));
    m_tabs->setCurrentIndex(std::max(0, tab));
}

void GalleryWindow::tick()
{
    m_live.advance(tickMilliseconds / 1000.0);
    for (QSignalMonitorDisplay* display : m_tabs->findChildren<QSignalMonitorDisplay*>())
        display->refresh();
}
