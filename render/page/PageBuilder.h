#pragma once

#include <QGraphicsScene>
#include <QPixmap>
#include <QPointer>
#include <QString>
#include <QVariant>
#include <QVector>

#include "render/page/PageItem.h"
#include "render/page/PageRows.h"

class QGraphicsPixmapItem;

/// Lays a document out on a blank: makes the items of a scene, the page, and knows what each of
/// them stands for. Preview, print, check and proof all work on what it makes.
class PageBuilder
{
public:
    /// Clears the page and lays the document out on the blank. False, with an empty page and what
    /// failed in `error` (may be null), if one of the two rows can't be read. The page must not be
    /// cleared or changed by others while the builder is asked for what is on it.
    bool build(QGraphicsScene* page, const QVariant& document, const QVariant& blankId,
               QString* error);

    /// Lays another document out on the page that was built last. As build(), and with the same
    /// page in the end, but what was made for the same blank stays and gets new texts and rows.
    bool refill(const QVariant& document, const QVariant& blankId, QString* error);

    /// Adds one item object of a blank's `CONTENT` to the page that was built last, above all
    /// others. Does nothing if that page is gone.
    void addItem(const QJsonObject& object);

    /// Undoes what printing did to the page: the items move back and the background shows.
    void restore();

    /// The page that was built last; null if it is gone.
    QGraphicsScene* page() const { return m_page; }

    /// Null if the blank has none or it can't be loaded. Owned by the page.
    QGraphicsPixmapItem* background() const { return m_page ? m_background : nullptr; }

    /// The items of the page, lowest first.
    const QVector<PageItem>& items() const { return m_items; }

    const PageDocument& document() const { return m_document; }
    const PageBlank& blank() const { return m_blank; }

private:
    void clear();
    bool readRows(const QVariant& document, const QVariant& blankId, QString* error);
    void layOut();
    QPixmap loadBackground() const;
    QJsonObject docFieldOf(const PageItem& item) const;
    bool hasAllItems() const;
    bool canRefill() const;
    void fill(PageItem& item);

    QPointer<QGraphicsScene> m_page;
    QGraphicsPixmapItem* m_background = nullptr;
    qint64 m_backgroundKey = 0; // of its pixmap
    PageDocument m_document;
    PageBlank m_blank;
    QVector<PageItem> m_items;
};
