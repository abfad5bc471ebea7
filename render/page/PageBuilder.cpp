#include "render/page/PageBuilder.h"

#include <QGraphicsPixmapItem>

#include <algorithm>

#include "app/AppHelpers.h"
#include "app/StoredPath.h"
#include "blanks/BlankRecord.h"
#include "forms/FormDefinitions.h"
#include "render/QrPixmap.h"
#include "render/TagExpansion.h"
#include "render/page/FrameLabel.h"
#include "render/page/PagePicture.h"
#include "render/page/QrPixmapItem.h"
#include "render/page/TableFrame.h"
#include "render/page/TextFrame.h"

namespace {

/// kept: the document decides between table and text, not the kind of the item, and only where the
/// text is the tag alone.
bool isTable(const PageItem& item, const QJsonObject& docField)
{
    return item.blankItem.kind != BlankItemKind::qr && docField["type"].toInt() == FieldType::table;
}

} // namespace

bool PageBuilder::build(QGraphicsScene* page, const QVariant& document, const QVariant& blankId,
                        QString* error)
{
    m_page = page;
    clear();
    if (!readRows(document, blankId, error)) {
        return false;
    }
    layOut();
    return true;
}

bool PageBuilder::refill(const QVariant& document, const QVariant& blankId, QString* error)
{
    const QVector<QVariant> documentBefore = m_document.columns;
    const QVector<QVariant> blankBefore = m_blank.columns;
    if (!readRows(document, blankId, error)) {
        clear();
        return false;
    }
    if (m_blank.columns != blankBefore || !hasAllItems()) {
        clear();
        layOut();
        return true;
    }
    restore();
    if (m_document.columns == documentBefore) {
        return true;
    }
    if (!canRefill()) {
        clear();
        layOut();
        return true;
    }
    for (PageItem& item : m_items) {
        fill(item);
    }
    return true;
}

void PageBuilder::addItem(const QJsonObject& object)
{
    if (!m_page) {
        return;
    }
    PageItem item;
    item.number = m_items.size() + 1;
    item.blankItem = BlankItem(object);
    item.font = item.blankItem.font(m_blank.font);
    const QJsonObject docField = docFieldOf(item);
    if (item.blankItem.kind == BlankItemKind::qr) {
        // kept: at the frame's corner, in the symbol's own size, whatever the frame's.
        item.symbol = new QrPixmapItem(QPixmap());
        item.symbol->setPos(item.blankItem.geometry.topLeft());
    } else if (isTable(item, docField)) {
        item.frame = TableFrame::make(item.blankItem, item.font, docField);
    } else {
        item.frame = TextFrame::make(item.blankItem, item.font);
    }
    fill(item);
    m_page->addItem(item.graphicsItem());
    m_items.append(item);
}

void PageBuilder::restore()
{
    if (!m_page) {
        return;
    }
    for (const PageItem& item : qAsConst(m_items)) {
        item.graphicsItem()->setPos(item.blankItem.geometry.topLeft());
    }
    if (m_background) {
        m_background->setPos(0, 0);
        m_background->show();
    }
}

void PageBuilder::clear()
{
    if (m_page) {
        m_page->clear();
    }
    m_background = nullptr;
    m_items.clear();
}

bool PageBuilder::readRows(const QVariant& document, const QVariant& blankId, QString* error)
{
    std::optional<PageDocument> documentRow = PageDocument::read(document, m_document, error);
    if (!documentRow) {
        return false;
    }
    std::optional<PageBlank> blankRow = PageBlank::read(blankId, m_blank, error);
    if (!blankRow) {
        return false;
    }
    m_document = *documentRow;
    m_blank = *blankRow;
    return true;
}

void PageBuilder::layOut()
{
    if (!m_page) {
        return;
    }
    m_page->setSceneRect(QRectF(QPointF(0, 0), m_blank.paper().pageSize()));
    const QPixmap background = loadBackground();
    m_backgroundKey = background.cacheKey();
    if (!background.isNull()) {
        m_background = m_page->addPixmap(background);
    }
    for (const QJsonValue& item : qAsConst(m_blank.items)) {
        addItem(item.toObject());
    }
}

QPixmap PageBuilder::loadBackground() const
{
    if (m_blank.background.isNull()) {
        return QPixmap();
    }
    return loadPagePicture(storedFilePath(appDirPath(), m_blank.background.toString()),
                           m_blank.paper().pageSize());
}

QJsonObject PageBuilder::docFieldOf(const PageItem& item) const
{
    return m_document.content.value(item.blankItem.value).toObject();
}

bool PageBuilder::hasAllItems() const
{
    return m_page && m_items.size() == m_blank.items.size() &&
           loadBackground().cacheKey() == m_backgroundKey;
}

bool PageBuilder::canRefill() const
{
    return std::all_of(m_items.cbegin(), m_items.cend(), [this](const PageItem& item) {
        const QJsonObject docField = docFieldOf(item);
        if (!isTable(item, docField)) {
            return !item.frame.table && (item.symbol || item.frame.label->takesAnotherText());
        }
        return item.frame.table &&
               item.frame.columnWidths.size() == docField["columns"].toArray().size();
    });
}

void PageBuilder::fill(PageItem& item)
{
    if (item.frame.table) {
        TableFrame::fill(item.frame, item.blankItem, item.font, docFieldOf(item));
        item.frame.setGeometry(item.blankItem.geometry);
        return;
    }
    const QString text = expandTags(item.blankItem.value, m_document.values, m_document.content);
    if (item.isFilled && text == item.expandedText) {
        return; // all that follows from it is there
    }
    const bool wasFilled = item.isFilled;
    item.isFilled = true;
    item.expandedText = text;
    if (item.symbol) {
        QPixmap pixmap;
        makeQrPixmap(text, pixmap);
        item.symbol->setPixmap(pixmap);
        return;
    }
    const bool fitBefore = wasFilled && item.frame.label->fits();
    TextFrame::fill(item.frame, item.blankItem, text);
    if (!fitBefore || !item.frame.label->fits()) {
        item.frame.setGeometry(item.blankItem.geometry);
    }
}
