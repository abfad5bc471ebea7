#include "render/page/PageItem.h"

#include "render/page/QrPixmapItem.h"

QRectF PageItem::place() const
{
    const QPointF corner = blankItem.geometry.topLeft();
    if (symbol) {
        return {corner, QSizeF(symbol->pixmap().size())};
    }
    return {corner, QSizeF(qMax(blankItem.json["size_w"].toDouble(), 0.0),
                           qMax(blankItem.json["size_h"].toDouble(), 0.0))};
}

QGraphicsItem* PageItem::graphicsItem() const
{
    return symbol ? static_cast<QGraphicsItem*>(symbol) : frame.container;
}
