#pragma once

/// What a colour of the signal displays is for; the integers under which `setColor` knows them.
enum TColorTag : int
{
    TraceColor = 0,
    BackgroundColor = 1,
    GridColor = 2,
    /// Lead labels, and the time ruler of the browse display.
    LabelColor = 3,
    AverageBeatColor = 4,
    ReferenceBeatColor = 5,
    SaturationColor = 6,
    BeatTickColor = 7,
    CursorColor = 8,
    FiducialColor = 9,
    /// Band of the selected beat in the browse display; no scheme changes it.
    SelectedBeatColor = 10
};
