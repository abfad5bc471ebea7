#pragma once

#include <QSizeF>

/// How small a frame may become while it is dragged by its edges, in scene units.
struct ResizeLimits
{
    /// An empty minimum size becomes a square of the default extent.
    ResizeLimits(double extent, const QSizeF& minimum);

    double defaultExtent;
    QSizeF minimumSize;
};
