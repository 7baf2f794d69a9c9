#pragma once

#include "gallery/GalleryTrends.h"
#include "gallery/LiveRecording.h"
#include "gallery/StoredRecording.h"

#include <QMainWindow>
#include <QTimer>

#include <vector>

class QTabWidget;

/// All pages in tabs, the live one with samples that go on arriving, in a colour scheme of the user's choice.
class GalleryWindow : public QMainWindow
{
    Q_OBJECT

public:
    GalleryWindow();
    ~GalleryWindow() override;

private:
    void addSchemeBar();
    void showScheme(const QString& scheme);
    void tick();

    // What the pages show stands before them and outlives them.
    std::vector<short> m_samples = demoSamples();
    LiveRecording m_live{m_samples, 0.0};
    StoredRecording m_stored{m_samples, 50.0};
    GalleryTrends m_trends;
    QTabWidget* m_tabs;
    QTimer m_timer;
};
