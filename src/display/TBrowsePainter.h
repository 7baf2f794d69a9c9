#pragma once

#include "display/TColumnTrace.h"
#include "display/TLeadLabels.h"
#include "display/TSampleTrace.h"

class QPainter;
struct BrowsePage;
struct BrowseView;

/// Paints a page of the browse display over its grid, in device pixels. Keeps its memory from page to page.
class TBrowsePainter
{
public:
    /// `page` lasts a time above 0.
    void paint(QPainter& painter, const BrowsePage& page, const BrowseView& view);

private:
    void paintTraces(QPainter& painter, const BrowsePage& page, const BrowseView& view);
    void paintByColumns(QPainter& painter, const BrowsePage& page, const BrowseView& view, int pageSamples);
    void paintPerSample(QPainter& painter, const BrowsePage& page, const BrowseView& view, int pageSamples);

    TLeadLabels m_labels;
    TColumnTrace m_columns;
    TSampleTrace m_samples;
};
