#include "render/vector/PagedPainting.h"

#include <QPagedPaintDevice>
#include <QPainter>

PageSurface::~PageSurface() = default;

bool paintsOnPage(const QPainter* painter)
{
    const QPaintDevice* device = painter->device();
    return dynamic_cast<const QPagedPaintDevice*>(device) != nullptr ||
           dynamic_cast<const PageSurface*>(device) != nullptr;
}
