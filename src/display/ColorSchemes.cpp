#include "display/ColorSchemes.h"

#include "display/ColorTags.h"

namespace {

using TScheme = QMap<int, QColor>;

const QColor saturation(255, 128, 0, 128);

TScheme lightScheme()
{
    return {
        {TraceColor, Qt::black},       {BackgroundColor, Qt::white},     {GridColor, QColor(220, 200, 180)},
        {LabelColor, Qt::lightGray},   {AverageBeatColor, Qt::darkBlue}, {ReferenceBeatColor, Qt::darkGreen},
        {SaturationColor, saturation}, {BeatTickColor, Qt::blue},        {CursorColor, Qt::gray},
        {FiducialColor, Qt::darkRed}};
}

TScheme blueScheme()
{
    return {{TraceColor, Qt::white},          {BackgroundColor, QColor(Qt::darkBlue).darker(200)},
            {GridColor, QColor(96, 96, 128)}, {LabelColor, Qt::gray},
            {AverageBeatColor, Qt::cyan},     {ReferenceBeatColor, Qt::green},
            {SaturationColor, saturation},    {BeatTickColor, Qt::yellow},
            {CursorColor, Qt::darkGray},      {FiducialColor, Qt::red}};
}

TScheme blackScheme()
{
    return {{TraceColor, Qt::green},       {BackgroundColor, Qt::black},   {GridColor, QColor(96, 96, 96)},
            {LabelColor, Qt::gray},        {AverageBeatColor, Qt::yellow}, {ReferenceBeatColor, Qt::white},
            {SaturationColor, saturation}, {BeatTickColor, Qt::cyan},      {CursorColor, Qt::darkGray},
            {FiducialColor, Qt::red}};
}

const QMap<QString, TScheme>& schemes()
{
    static const QMap<QString, TScheme> table{{QStringLiteral("Light"), lightScheme()},
                                              {QStringLiteral("Blue"), blueScheme()},
                                              {QStringLiteral("Black"), blackScheme()}};
    return table;
}

} // namespace

QStringList schemeNames()
{
    return schemes().keys();
}

QMap<int, QColor> schemeColors(const QString& name)
{
    return schemes().value(name);
}
