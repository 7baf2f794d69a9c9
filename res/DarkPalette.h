#pragma once

#include <QPalette>

/// The colours of :/styles/dark.css as a palette. To be set on the application before the sheet: what no
/// sheet can reach takes its colours from there, above all the icons of disabled buttons.
QPalette darkPalette();
