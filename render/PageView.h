#pragma once

#include <QGraphicsView>

/// The view of a page on the screen. Paints the edge of the page behind it: a page without a scan
/// is white on white otherwise. The edge belongs to the view and never reaches paper.
class PageView : public QGraphicsView
{
    Q_OBJECT

public:
    using QGraphicsView::QGraphicsView;

protected:
    void drawBackground(QPainter* painter, const QRectF& rect) override;
};
