#pragma once

#include <QGraphicsRectItem>

struct ResizeLimits;

/// The frame of an item on a blank's page. The user moves it by its inside and resizes it by the
/// outer band of 8 scene units: corners in two directions, edges in one. The rectangle keeps its
/// origin; the item's position follows the grabbed edge.
///
/// A frame is told from other items by the type of its base and by having a child.
class ResizableRectItem : public QGraphicsRectItem
{
public:
    /// `rect` in item coordinates; `resizeLimits` is not owned and must outlive the frame.
    ResizableRectItem(const QRectF& rect, const ResizeLimits* resizeLimits,
                      QGraphicsItem* parent = nullptr);
    ~ResizableRectItem() override;

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;

private:
    QRectF innerRect() const;
    QPointF cursorPosition(const QGraphicsSceneMouseEvent* event) const;
    Qt::CursorShape cursorShapeAt(const QPointF& position) const;
    void applyResize(const QPointF& position);
    QRectF applyLimits(QRectF proposed) const;

    // One drag happens at a time, so all frames share its state.
    static int resizeModeX;
    static int resizeModeY;
    static double grabOffsetX; // grabbed edge minus cursor at the press
    static double grabOffsetY;

    const ResizeLimits* limits;
};
