#pragma once

#include "display/PageScale.h"

class QPainter;

constexpr int spinnerSectors = 10;

/// The ring in the middle of the picture that turns while a signal is awaited; `index` is the dark sector.
void paintSpinner(QPainter& painter, const PageScale& scale, int index);
