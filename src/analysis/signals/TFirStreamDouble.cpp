#include "analysis/signals/TFirStreamDouble.h"

void TFirStreamDouble::give(TFrameBuffer& frames)
{
    frames.giveDoubles(sink());
}
