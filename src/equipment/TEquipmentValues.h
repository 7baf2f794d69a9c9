#pragma once

/// What a device is to do.
struct TEquipmentValues
{
    static constexpr double notSet = -999.0;

    double speed = notSet;    ///< km/h
    double incline = notSet;  ///< percent
    double workload = notSet; ///< watts
};
