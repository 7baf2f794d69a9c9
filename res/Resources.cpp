#include "res/Resources.h"

#include <QtCore/qglobal.h>

void initResources()
{
    Q_INIT_RESOURCE(icons);
    Q_INIT_RESOURCE(styles);
}
