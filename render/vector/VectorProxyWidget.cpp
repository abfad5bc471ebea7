#include "render/vector/VectorProxyWidget.h"

#include <QPainter>
#include <QStyleOptionGraphicsItem>
#include <QWidget>

#include "render/vector/PagePaintable.h"
#include "render/vector/PagedPainting.h"
#include "render/vector/PaintForwarder.h"

VectorProxyWidget::VectorProxyWidget(QGraphicsItem* parent)
    : QGraphicsProxyWidget(parent)
{
}

VectorProxyWidget::~VectorProxyWidget() = default;

void VectorProxyWidget::paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
                              QWidget* view)
{
    if (!paintsOnPage(painter)) {
        QGraphicsProxyWidget::paint(painter, option, view);
        return;
    }
    if (!widget() || !widget()->isVisible()) {
        return;
    }
    const QRect exposed = (option->exposedRect & rect()).toAlignedRect();
    if (exposed.isEmpty()) {
        return;
    }
    if (auto* paintable = dynamic_cast<PagePaintable*>(widget())) {
        painter->save();
        paintable->paintOnPage(*painter, exposed);
        painter->restore();
        return;
    }
    PaintForwarder forwarder(painter, widget()->size(), widget()->logicalDpiX());
    widget()->render(&forwarder, exposed.topLeft(), exposed);
}
