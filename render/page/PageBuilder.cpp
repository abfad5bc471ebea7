#include "render/page/PageBuilder.h"

#include <QGraphicsPixmapItem>

#include "app/AppHelpers.h"
#include "blanks/BlankRecord.h"
#include "forms/FormDefinitions.h"
#include "render/QrPixmap.h"
#include "render/TagExpansion.h"
#include "render/page/PageBackground.h"
#include "render/page/QrPixmapItem.h"
#include "render/page/TableFrame.h"
#include "render/page/TextFrame.h"

bool PageBuilder::build(QGraphicsScene* page, const QVariant& document, const QVariant& blankId,
                        QString* error)
{
    page->clear();
    m_page = page;
    m_background = nullptr;
    m_items.clear();
    const std::optional<PageDocument> documentRow = PageDocument::read(document, error);
    if (!documentRow) {
        return false;
    }
    const std::optional<PageBlank> blankRow = PageBlank::read(blankId, error);
    if (!blankRow) {
        return false;
    }
    m_document = *documentRow;
    m_blank = *blankRow;
    page->setSceneRect(QRectF(QPointF(0, 0), m_blank.paper().pageSize()));
    addBackground();
    for (const QJsonValue& item : qAsConst(m_blank.items)) {
        addItem(item.toObject());
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
    // The document decides between table and text, not the kind of the item.
    const QJsonObject docField = m_document.content.value(item.blankItem.value).toObject();
    const bool isSymbol = item.blankItem.kind == BlankItemKind::qr;
    if (isSymbol || docField["type"].toInt() != FieldType::table) {
        item.expandedText = expandTags(item.blankItem.value, m_document.values, m_document.content);
    }
    if (isSymbol) {
        item.symbol = makeSymbol(item);
    } else {
        item.frame = makeFrame(item, docField);
    }
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

void PageBuilder::addBackground()
{
    if (m_blank.background.isNull()) {
        return;
    }
    const QPixmap pixmap =
        loadPageBackground(appFilePath(m_blank.background.toString()), m_blank.paper().pageSize());
    if (!pixmap.isNull()) {
        m_background = m_page->addPixmap(pixmap);
    }
}

QrPixmapItem* PageBuilder::makeSymbol(const PageItem& item)
{
    QPixmap pixmap;
    makeQrPixmap(item.expandedText, pixmap);
    auto* symbol = new QrPixmapItem(pixmap);
    symbol->setPos(item.blankItem.geometry.topLeft());
    return symbol;
}

PageFrame PageBuilder::makeFrame(const PageItem& item, const QJsonObject& docField)
{
    const bool isTable = docField["type"].toInt() == FieldType::table;
    PageFrame frame = isTable ? TableFrame::make(item.blankItem, item.font, docField)
                              : TextFrame::make(item.blankItem, item.font);
    if (isTable) {
        TableFrame::fill(frame, item.blankItem, item.font, docField);
    } else {
        TextFrame::fill(frame, item.blankItem, item.expandedText);
    }
    frame.container->setGeometry(item.blankItem.geometry);
    return frame;
}
