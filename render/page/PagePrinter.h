#pragma once

#include <QPoint>

#include "render/page/BlankPaper.h"

class PageBuilder;
class QGraphicsPixmapItem;
class QGraphicsScene;
class QPainter;
class QPrinter;

/// Puts a page onto sheets of paper.
class PagePrinter
{
public:
    /// `background` is the page's picture, null for none; `offset` is the blank's, millimetres.
    PagePrinter(QGraphicsScene* page, QGraphicsPixmapItem* background, const BlankPaper& paper,
                const QPoint& offset);

    /// Of a page that is there.
    explicit PagePrinter(const PageBuilder& builder);

    /// Whether the background comes onto the paper too; not by default.
    void setBackgroundPrinted(bool printed) { m_isBackgroundPrinted = printed; }

    /// Sets the blank's paper on the printer and paints the page with `painter` on one sheet. The
    /// first sheet begins the painter, each further one starts a new sheet. False if the printer
    /// can't print. The items stay moved by the offset, a background that is not printed hidden.
    bool print(QPrinter& printer, QPainter& painter) const;

private:
    void shiftByOffset() const;

    QGraphicsScene* m_page;
    QGraphicsPixmapItem* m_background;
    BlankPaper m_paper;
    QPoint m_offset; // millimetres
    bool m_isBackgroundPrinted = false;
};
