#include "equipment/TOlmoErgometer.h"

TOlmoErgometer::TOlmoErgometer(const std::string& port, const TOlmoTimes& times)
    : TPortEquipment(Ergometer, std::make_unique<TOlmoThread>(port, times))
{
}
