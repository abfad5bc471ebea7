#pragma once

#include <QRectF>

class QGraphicsItem;
class QGraphicsProxyWidget;
class QLabel;
class QTableWidget;

/// What stands in the frame of a text or table item of a page.
struct FrameParts
{
    QGraphicsProxyWidget* content = nullptr; ///< of the label or the table
    QLabel* label = nullptr;                 ///< of a text
    QTableWidget* table = nullptr;
    QRectF stroke; ///< ink of the Z stroke on the page; null: none
};

/// The parts of the item that the page has for the frame.
FrameParts partsOf(const QGraphicsItem* container);
