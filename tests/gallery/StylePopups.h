#pragma once

#include <QWidget>

#include <memory>
#include <vector>

struct TStylePopup
{
    QString name;
    std::unique_ptr<QWidget> widget;
};

/// What comes up over the windows: menu, boxes, progress, the choice of a colour.
std::vector<TStylePopup> makePopups();
