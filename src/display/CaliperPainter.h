#pragma once

class QPainter;
struct BrowsePage;
struct BrowseView;

/// The measuring triangle while it is drawn, and its two measures.
void paintCaliper(QPainter& painter, const BrowsePage& page, const BrowseView& view);
