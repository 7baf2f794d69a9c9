#include "study/RiskFactors.h"

std::vector<QByteArray> standardRiskFactors()
{
    return {
        "Hipertensión", "Tabaquismo actual", "Ex-tabaquismo", "Sedentarismo", "Obesidad",
        "Diabetes",     "Dislipemia",        "Stress",        "Angor",        "Infarto agudo de miocardio",
        "Gota"};
}
