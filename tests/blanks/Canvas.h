#pragma once

#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QGraphicsView>
#include <QList>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <QtTest>

#include "blanks/ResizableRectItem.h"

/// Drives a page in a view like a user, by events sent to the viewport.
namespace Canvas {

/// The frames of a page, topmost first: the items that have children.
inline QList<QGraphicsRectItem*> frames(const QGraphicsScene* scene)
{
    QList<QGraphicsRectItem*> found;
    const QList<QGraphicsItem*> items = scene->items(Qt::DescendingOrder);
    for (QGraphicsItem* item : items) {
        auto* frame = qgraphicsitem_cast<QGraphicsRectItem*>(item);
        if (frame && !frame->childItems().isEmpty()) {
            found << frame;
        }
    }
    return found;
}

/// Adds a movable frame around a text, at a place of the page.
inline QGraphicsRectItem* addFrame(QGraphicsScene* scene, const QRectF& place,
                                   const ResizeLimits* limits)
{
    auto* frame = new ResizableRectItem(QRectF(QPointF(0, 0), place.size()), limits);
    new QGraphicsTextItem("#LNAME", frame);
    frame->setPos(place.topLeft());
    frame->setFlags(QGraphicsItem::ItemIsSelectable | QGraphicsItem::ItemIsFocusable |
                    QGraphicsItem::ItemIsMovable);
    scene->addItem(frame);
    return frame;
}

inline void press(QGraphicsView* view, const QPoint& pixel, Qt::MouseButton button = Qt::LeftButton)
{
    QTest::mousePress(view->viewport(), button, Qt::NoModifier, pixel);
}

inline void release(QGraphicsView* view, const QPoint& pixel,
                    Qt::MouseButton button = Qt::LeftButton)
{
    QTest::mouseRelease(view->viewport(), button, Qt::NoModifier, pixel);
}

inline void move(QGraphicsView* view, const QPoint& pixel, Qt::MouseButtons held = Qt::LeftButton)
{
    QMouseEvent event(QEvent::MouseMove, pixel, view->viewport()->mapToGlobal(pixel), Qt::NoButton,
                      held, Qt::NoModifier);
    QApplication::sendEvent(view->viewport(), &event);
}

/// Drags with the left button from one viewport position to another, in two moves.
inline void drag(QGraphicsView* view, const QPoint& from, const QPoint& to)
{
    press(view, from);
    move(view, (from + to) / 2);
    move(view, to);
    release(view, to);
}

inline void wheel(QGraphicsView* view, const QPoint& angleDelta)
{
    const QPointF position = view->viewport()->rect().center();
    QWheelEvent event(position, view->viewport()->mapToGlobal(position.toPoint()), QPoint(),
                      angleDelta, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view->viewport(), &event);
}

/// Zooms by whole wheel steps, away from the user for positive numbers.
inline void zoom(QGraphicsView* view, int steps)
{
    for (int i = 0; i < qAbs(steps); ++i) {
        wheel(view, QPoint(0, steps > 0 ? 120 : -120));
    }
}

inline void key(QGraphicsView* view, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(view->viewport(), key, modifiers);
}

} // namespace Canvas
