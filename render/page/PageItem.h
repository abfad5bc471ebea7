#pragma once

#include <QFont>
#include <QString>

#include "render/page/BlankItem.h"
#include "render/page/PageFrame.h"

class QGraphicsItem;
class QrPixmapItem;

/// An item of a blank and what stands for it on a page.
struct PageItem
{
    /// Where the item stands without the print offsets, scene units: its frame, or all of a symbol,
    /// whose size is not that of its frame.
    QRectF place() const;

    /// The item of the scene: the container of a text or a table, or the symbol.
    QGraphicsItem* graphicsItem() const;

    int number = 0; ///< from 1, in the order of the blank
    BlankItem blankItem;
    QFont font;
    QString expandedText; ///< of a text or a symbol; a table has none
    PageFrame frame;      ///< of a text or a table
    QrPixmapItem* symbol = nullptr;
    bool isFilled = false; ///< has got what it shows
};
