#include "render/page/QrPixmapItem.h"

#include <QBitmap>
#include <QPainter>
#include <QPainterPath>

#include "render/vector/PagedPainting.h"

QrPixmapItem::QrPixmapItem(const QPixmap& pixmap, QGraphicsItem* parent)
    : QGraphicsPixmapItem(pixmap, parent)
{
}

void QrPixmapItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* view)
{
    if (!paintsOnPage(painter)) {
        QGraphicsPixmapItem::paint(painter, option, view);
        return;
    }
    const QImage image = pixmap().toImage().convertToFormat(QImage::Format_Mono);
    // One path, so that neighbouring squares leave no hairlines between them.
    QPainterPath darkModules;
    darkModules.addRegion(QRegion(QBitmap::fromImage(image)));
    painter->fillRect(image.rect(), Qt::white);
    painter->fillPath(darkModules, Qt::black);
}
