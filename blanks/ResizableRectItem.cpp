#include "blanks/ResizableRectItem.h"

#include <QCursor>
#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>

#include <algorithm>
#include <cmath>

#include "blanks/ResizeLimits.h"

namespace {

constexpr double gripWidth = 8.0;
constexpr double maximumExtent = 1000.0;

// What a drag does with the edges of one axis: left or top is the near one.
constexpr int resizeNone = 0;
constexpr int resizeNear = 1;
constexpr int resizeFar = 2;

// Edges of one axis, in item coordinates.
struct Span
{
    double near;
    double far;
};

struct Grab
{
    int mode = resizeNone;
    double offset = 0.0;
};

// An inner span turned inside out (a frame narrower than both grips) makes every press a grab.
Grab grabAt(double position, const Span& outer, const Span& inner)
{
    if (position < inner.near) {
        return {resizeNear, outer.near - position};
    }
    if (position > inner.far) {
        return {resizeFar, outer.far - position};
    }
    return {};
}

Span limited(Span span, int mode, double minimum)
{
    if (mode == resizeNear) {
        span.near = std::min(span.near, span.far - minimum);
        span.near = std::max(span.near, span.far - maximumExtent);
    } else if (mode == resizeFar) {
        span.far = std::min(span.far, span.near + maximumExtent);
        span.far = std::max(span.far, span.near + minimum);
    }
    return span;
}

} // namespace

int ResizableRectItem::resizeModeX = resizeNone;
int ResizableRectItem::resizeModeY = resizeNone;
double ResizableRectItem::grabOffsetX = 0.0;
double ResizableRectItem::grabOffsetY = 0.0;

ResizableRectItem::ResizableRectItem(const QRectF& rect, const ResizeLimits* resizeLimits,
                                     QGraphicsItem* parent)
    : QGraphicsRectItem(rect, parent)
    , limits(resizeLimits)
{
}

ResizableRectItem::~ResizableRectItem() = default;

void ResizableRectItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
                              QWidget* widget)
{
    QGraphicsRectItem::paint(painter, option, widget);
}

void ResizableRectItem::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    scene()->clearSelection();
    setSelected(true);

    const QRectF outer = rect();
    const QRectF inner = innerRect();
    const QPointF position = cursorPosition(event);
    const Grab x =
        grabAt(position.x(), {outer.left(), outer.right()}, {inner.left(), inner.right()});
    const Grab y =
        grabAt(position.y(), {outer.top(), outer.bottom()}, {inner.top(), inner.bottom()});
    resizeModeX = x.mode;
    grabOffsetX = x.offset;
    resizeModeY = y.mode;
    grabOffsetY = y.offset;

    if (resizeModeX == resizeNone && resizeModeY == resizeNone) {
        QGraphicsRectItem::mousePressEvent(event);
    }
}

void ResizableRectItem::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    const Qt::CursorShape shape = cursorShapeAt(cursorPosition(event));
    if (!hasCursor() || cursor().shape() != shape) { // the scene looks for what is under the mouse
        setCursor(shape);
    }
    if (resizeModeX == resizeNone && resizeModeY == resizeNone) {
        QGraphicsRectItem::mouseMoveEvent(event);
        return;
    }
    applyResize(cursorPosition(event));
}

void ResizableRectItem::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    if (resizeModeX == resizeNone && resizeModeY == resizeNone) {
        QGraphicsRectItem::mouseReleaseEvent(event);
        return;
    }
    // kept: also without a move. A frame beyond the limits of its size changes then.
    applyResize(cursorPosition(event));
    setCursor(Qt::ArrowCursor);
}

QRectF ResizableRectItem::innerRect() const
{
    return rect().adjusted(gripWidth, gripWidth, -gripWidth, -gripWidth);
}

QPointF ResizableRectItem::cursorPosition(const QGraphicsSceneMouseEvent* event) const
{
    // The event's own item position is stale once the item has moved under the cursor: the
    // release right after a move would then resize a second time.
    return mapFromScene(event->scenePos());
}

Qt::CursorShape ResizableRectItem::cursorShapeAt(const QPointF& position) const
{
    const QRectF inner = innerRect();
    const bool isLeft = position.x() < inner.left();
    const bool isRight = position.x() > inner.right();
    const bool isAbove = position.y() < inner.top();
    const bool isBelow = position.y() > inner.bottom();
    if (!isLeft && !isRight) {
        return isAbove || isBelow ? Qt::SizeVerCursor : Qt::ArrowCursor;
    }
    if ((isLeft && isAbove) || (isRight && isBelow)) {
        return Qt::SizeFDiagCursor;
    }
    if ((isRight && isAbove) || (isLeft && isBelow)) {
        return Qt::SizeBDiagCursor;
    }
    return Qt::SizeHorCursor;
}

void ResizableRectItem::applyResize(const QPointF& position)
{
    const QRectF current = rect();
    QRectF proposed = current;
    if (resizeModeX == resizeNear) {
        proposed.setLeft(position.x() + grabOffsetX);
    } else if (resizeModeX == resizeFar) {
        proposed.setRight(position.x() + grabOffsetX);
    }
    if (resizeModeY == resizeNear) {
        proposed.setTop(position.y() + grabOffsetY);
    } else if (resizeModeY == resizeFar) {
        proposed.setBottom(position.y() + grabOffsetY);
    }
    proposed = applyLimits(proposed);
    if (proposed == current) {
        return;
    }

    prepareGeometryChange();
    const QPointF shift = mapToParent(proposed.topLeft()) - mapToParent(current.topLeft());
    moveBy(shift.x(), shift.y());
    proposed.moveTopLeft(current.topLeft());
    setRect(proposed);
}

QRectF ResizableRectItem::applyLimits(QRectF proposed) const
{
    const QSizeF minimum = limits->minimumSize;
    const Span x = limited({proposed.left(), proposed.right()}, resizeModeX, minimum.width());
    const Span y = limited({proposed.top(), proposed.bottom()}, resizeModeY, minimum.height());
    return QRectF(QPointF(x.near, y.near), QPointF(x.far, y.far));
}
