#pragma once

#include <QGraphicsPixmapItem>

/// A QR symbol on the page, one scene unit a module. On paper its modules are exact filled
/// squares: a small picture would be smoothed by whatever scales it up to the printer's dots.
class QrPixmapItem : public QGraphicsPixmapItem
{
public:
    explicit QrPixmapItem(const QPixmap& pixmap, QGraphicsItem* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* view) override;
};
