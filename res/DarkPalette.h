#pragma once

#include <QPalette>

/// The colours of :/styles/dark.css as a palette. What no sheet can reach takes its colours from there.
QPalette darkPalette();
