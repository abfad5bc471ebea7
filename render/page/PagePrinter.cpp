#include "render/page/PagePrinter.h"

#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QPageLayout>
#include <QPainter>
#include <QPrinter>

#include "blanks/BlankRecord.h"
#include "render/page/PageBuilder.h"

namespace {

/// Where a scene comes to lie on a page, in the printer's dots. The rest of the page stays blank:
/// the toolkit alone would let an item reach beyond the scene's edge there.
QRectF placeOnPaper(const QSizeF& scene, const QSize& page)
{
    return {QPointF(0, 0), scene.scaled(page, Qt::KeepAspectRatio)};
}

} // namespace

PagePrinter::PagePrinter(QGraphicsScene* page, QGraphicsPixmapItem* background,
                         const BlankPaper& paper, const QPoint& offset)
    : m_page(page)
    , m_background(background)
    , m_paper(paper)
    , m_offset(offset)
{
}

PagePrinter::PagePrinter(const PageBuilder& builder)
    : PagePrinter(builder.page(), builder.background(), builder.blank().paper(),
                  builder.blank().offset)
{
}

bool PagePrinter::print(QPrinter& printer, QPainter& painter) const
{
    m_paper.setOn(printer);
    if (m_background && !m_isBackgroundPrinted) {
        m_background->hide();
    }
    printer.setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter);
    printer.setFullPage(true);
    shiftByOffset();
    const bool ready = painter.isActive() ? printer.newPage() : painter.begin(&printer);
    if (ready) {
        painter.save();
        painter.setClipRect(placeOnPaper(m_page->sceneRect().size(), painter.viewport().size()));
        m_page->render(&painter, QRectF(), QRectF(), Qt::KeepAspectRatio);
        painter.restore();
    }
    return ready;
}

void PagePrinter::shiftByOffset() const
{
    // kept: to the left and up, in whole units. Blanks are set up for it.
    const QPointF offset(mmToPixels(m_offset.x()), mmToPixels(m_offset.y()));
    const QList<QGraphicsItem*> items = m_page->items(Qt::DescendingOrder);
    for (QGraphicsItem* item : items) {
        if (!item->parentItem()) {
            item->setPos(item->pos() - offset);
        }
    }
}
