#include "blanks/ZelvoraView.h"

#include <QGraphicsItem>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include "blanks/BlankWindow.h"

namespace {

constexpr double zoomInFactor = 1.15;
constexpr double zoomOutFactor = 0.8695652173913044;
constexpr double keyStep = 1.0; // scene units

// The vertical turn of the wheel, or the horizontal one where there is no vertical one.
int wheelDelta(const QWheelEvent* event)
{
    const QPoint delta = event->angleDelta();
    return delta.y() != 0 ? delta.y() : delta.x();
}

int nextIndex(int index, int count)
{
    return index + 1 < count ? index + 1 : 0;
}

// Never the topmost item: the walk backwards goes round from the second one to the last.
int previousIndex(int index, int count)
{
    return index - 1 < 1 ? count - 1 : index - 1;
}

// Selects the first frame that the steps lead to from the item at `start`. One pass at most, since
// a page need not have a frame.
void selectByWalk(const QList<QGraphicsItem*>& items, int start, int (*step)(int, int))
{
    int index = start;
    for (int steps = 0; steps < items.size(); ++steps) {
        index = step(index, items.size());
        if (!items[index]->childItems().isEmpty()) {
            items[start]->setSelected(false);
            items[index]->setSelected(true);
            return;
        }
    }
}

} // namespace

ZelvoraView::ZelvoraView(BlankWindow* parent)
    : QGraphicsView(parent)
{
    setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setMinimumSize(100, 100);
    setTransformationAnchor(AnchorUnderMouse);
    setDragMode(ScrollHandDrag);
    setBackgroundBrush(QColor(0xB9, 0xE5, 0xFF));
    viewport()->setCursor(Qt::ArrowCursor);
}

ZelvoraView::~ZelvoraView() = default;

void ZelvoraView::showEvent(QShowEvent* event)
{
    QGraphicsView::showEvent(event);
    // The brush covers all, so nothing behind is painted with each step of a drag. A style sheet
    // takes the mark away when it is applied, which was before.
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
}

void ZelvoraView::mouseReleaseEvent(QMouseEvent* event)
{
    QGraphicsView::mouseReleaseEvent(event);
    emit endDrag();
    viewport()->setCursor(Qt::ArrowCursor);
}

void ZelvoraView::mouseDoubleClickEvent(QMouseEvent* event)
{
    QGraphicsView::mouseDoubleClickEvent(event);
    if (event->button() != Qt::RightButton) {
        return;
    }
    releaseFrame();
    resetTransform();
    scale(1.0, 1.0);
    scrollContentsBy(0, 0);
    horizontalScrollBar()->setValue(0);
    verticalScrollBar()->setValue(0);
}

void ZelvoraView::mouseMoveEvent(QMouseEvent* event)
{
    QGraphicsView::mouseMoveEvent(event);
}

void ZelvoraView::wheelEvent(QWheelEvent* event)
{
    const double factor = wheelDelta(event) >= 1 ? zoomInFactor : zoomOutFactor;
    scale(factor, factor);
}

void ZelvoraView::keyPressEvent(QKeyEvent* event)
{
    if (!scene()) {
        return;
    }
    const QList<QGraphicsItem*> items = scene()->items(Qt::DescendingOrder);
    if (items.isEmpty()) {
        return;
    }
    const QList<QGraphicsItem*> selected = scene()->selectedItems();
    QGraphicsItem* current = selected.isEmpty() ? items.first() : selected.first();
    const int index = items.indexOf(current);
    const bool isMove = event->modifiers() & Qt::ShiftModifier;

    switch (event->key()) {
    case Qt::Key_Delete:
        removeFrame(current);
        break;
    case Qt::Key_Right:
        isMove ? moveItem(current, keyStep, 0.0) : selectByWalk(items, index, nextIndex);
        break;
    case Qt::Key_Left:
        isMove ? moveItem(current, -keyStep, 0.0) : selectByWalk(items, index, previousIndex);
        break;
    case Qt::Key_Up:
        isMove ? moveItem(current, 0.0, -keyStep) : selectByWalk(items, index, nextIndex);
        break;
    case Qt::Key_Down:
        isMove ? moveItem(current, 0.0, keyStep) : selectByWalk(items, index, previousIndex);
        break;
    default:
        break;
    }
}

// A frame that took the press would follow the cursor to another place of the reset page.
void ZelvoraView::releaseFrame()
{
    QGraphicsItem* grabber = scene() ? scene()->mouseGrabberItem() : nullptr;
    if (grabber) {
        grabber->ungrabMouse();
    }
}

void ZelvoraView::moveItem(QGraphicsItem* item, double dx, double dy)
{
    item->moveBy(dx, dy);
    emit endDrag();
}

void ZelvoraView::removeFrame(QGraphicsItem* item)
{
    if (item->childItems().isEmpty()) {
        return;
    }
    scene()->removeItem(item);
    delete item;
}
