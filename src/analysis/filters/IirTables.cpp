#include "analysis/filters/IirTables.h"

using velantor::TIirTable;

const TIirTable* velantor::highPassRecursion(int samplingRate)
{
    static const TIirTable at500{
        {{0.997781024102941, -1.995562048205882, 0.997781024102941}, {1.995557124345789, -0.995566972065975}},
        2000};
    return samplingRate == 500 ? &at500 : nullptr;
}

const TIirTable* velantor::notchRecursion(int samplingRate)
{
    static const TIirTable at500{
        {{0.951558090821252, -2.128420753699903, 2.85527558178394, -2.128420753699904, 0.951558090821252},
         {2.181925067619687, -2.854072963143573, 2.07491643978012, -0.904318800282871}},
        500};
    static const TIirTable at1000{
        {{0.975331910638375, -3.433582821317144, 4.952900855244864, -3.433582821317145, 0.975331910638375},
         {3.476732766930921, -4.952592786329411, 3.390432875703367, -0.950971890192202}},
        2000};
    if (samplingRate == 500)
        return &at500;
    return samplingRate == 1000 ? &at1000 : nullptr;
}

const TIirTable* velantor::baselineRecursion(int samplingRate)
{
    static const TIirTable at500{
        {{0.987761389276826, -3.951045557107303, 5.926568335660954, -3.951045557107303, 0.987761389276826},
         {3.975371912560921, -5.926418555965424, 3.926719197756786, -0.975672562146085}},
        3000};
    // Of order 3 by design, with numerator 0.997131 (1 - z^-1)^3 and denominator (1 - z^-1) (1 - 1.994254
    // z^-1 + 0.994271 z^-2). Without the common factor the response is the same, but a block that starts from
    // rest keeps no constant from it.
    static const TIirTable at1000{{{0.997131, -1.994262, 0.997131}, {1.994254, -0.994271}}, 3000};
    if (samplingRate == 500)
        return &at500;
    return samplingRate == 1000 ? &at1000 : nullptr;
}
