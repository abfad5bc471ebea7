#include "render/PageView.h"

#include <QPainter>

void PageView::drawBackground(QPainter* painter, const QRectF& rect)
{
    QGraphicsView::drawBackground(painter, rect);
    const QRectF page = sceneRect();
    if (page.isEmpty()) {
        return;
    }
    painter->save();
    painter->setPen(QPen(QColor("#B8C0D8"), 0));
    painter->setBrush(Qt::white);
    painter->drawRect(page.adjusted(0, 0, -1, -1));
    painter->restore();
}
