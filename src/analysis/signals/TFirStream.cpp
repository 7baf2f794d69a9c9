#include "analysis/signals/TFirStream.h"

void TFirStream::give(TFrameBuffer& frames)
{
    frames.giveTruncated(sink());
}
