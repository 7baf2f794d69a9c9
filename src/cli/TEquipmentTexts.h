#pragma once

#include <QByteArrayList>
#include <QtGlobal>

/// Takes what the drivers of the equipment write to the debug log while it lives, so that it can be told in
/// its place and not among whatever else stands on the terminal. One at a time.
class TEquipmentTexts
{
public:
    TEquipmentTexts();
    /// The log is again as it was.
    ~TEquipmentTexts();
    TEquipmentTexts(const TEquipmentTexts&) = delete;
    TEquipmentTexts& operator=(const TEquipmentTexts&) = delete;

    /// The texts since the last time, UTF-8. Any thread, as the drivers write from theirs.
    QByteArrayList take();
};
