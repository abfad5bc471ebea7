#include "render/PagedPainting.h"

#include <QPagedPaintDevice>
#include <QPainter>

bool paintsOnPage(const QPainter* painter)
{
    return dynamic_cast<const QPagedPaintDevice*>(painter->device()) != nullptr;
}
