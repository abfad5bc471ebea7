#include "blanks/GraphicsZItem.h"

#include <QPainter>
#include <QPen>

GraphicsZItem::GraphicsZItem(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TranslucentBackground);
}

GraphicsZItem::~GraphicsZItem() = default;

void GraphicsZItem::paintEvent(QPaintEvent*)
{
    if (height() < leastHeight) {
        return;
    }
    const int top = 1;
    const int bottom = height() - 1;
    QPainter painter(this);
    painter.setPen(QPen(Qt::black, 1));
    painter.drawLine(0, top, width(), top);
    painter.drawLine(width(), top, 0, bottom);
    painter.drawLine(0, bottom, width(), bottom);
}
