#pragma once

#include <QWidget>

#include <memory>

/// Every control in its states, a row for each control: as it stands, under the mouse, with the focus,
/// switched or pressed, disabled. Those with the focus or under the mouse are photographs, as there
/// is but one of each. Needs an
/// application with a sheet.
std::unique_ptr<QWidget> makeStatesPage();
