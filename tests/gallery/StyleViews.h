#pragma once

#include <QWidget>

#include <memory>

/// Lists, trees, tables, tabs, groups, scrolled areas and what else holds several things.
std::unique_ptr<QWidget> makeViewsPage();
/// Widgets that stand out by their object names or by a style of their own, as in the windows of the program.
std::unique_ptr<QWidget> makeNamedPage();
