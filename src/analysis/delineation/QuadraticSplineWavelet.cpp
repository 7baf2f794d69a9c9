#include "analysis/delineation/QuadraticSplineWavelet.h"

TDoubleVector velantor::waveletFilter(int scale)
{
    if (scale < 1 || scale > waveletScales)
        return TDoubleVector();
    TDoubleVector lowPass{0.125, 0.375, 0.375, 0.125};
    TDoubleVector highPass{-2.0, 2.0};
    TDoubleVector smoothing{1.0};
    for (int i = 1; i < scale; ++i) {
        smoothing = smoothing.convolved(lowPass);
        lowPass = lowPass.stretched();
        highPass = highPass.stretched();
    }
    return smoothing.convolved(highPass);
}
