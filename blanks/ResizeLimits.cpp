#include "blanks/ResizeLimits.h"

ResizeLimits::ResizeLimits(double extent, const QSizeF& minimum)
    : defaultExtent(extent)
    , minimumSize(minimum.isEmpty() ? QSizeF(extent, extent) : minimum)
{
}
