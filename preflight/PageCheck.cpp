#include "preflight/PageCheck.h"

#include <QFontInfo>
#include <QGraphicsScene>
#include <QGraphicsWidget>
#include <QMap>
#include <QPageLayout>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSet>
#include <QSqlQuery>
#include <QTableWidget>

#include <algorithm>

#include "blanks/BlankRecord.h"
#include "forms/FormDefinitions.h"
#include "preflight/Excess.h"
#include "preflight/FrameParts.h"
#include "preflight/TableCheck.h"
#include "preflight/TagCheck.h"
#include "preflight/TextFrameCheck.h"
#include "render/TagExpansion.h"
#include "render/page/BlankPaper.h"
#include "render/page/FrameLabel.h"
#include "render/page/QrPixmapItem.h"

namespace {

constexpr int quietZone = 4; // modules of a symbol, of a scene unit each

/// The family that the system has for a family; the same if it has it.
QString installedFamily(const QString& family)
{
    const QString installed = QFontInfo(QFont(family)).family();
    const QString plainName = family.section('[', 0, 0).trimmed(); // without the foundry
    return installed.compare(plainName, Qt::CaseInsensitive) == 0 ? family : installed;
}

bool hasText(const QJsonArray& row)
{
    return std::any_of(row.begin(), row.end(),
                       [](const QJsonValue& cell) { return !cell.toString().trimmed().isEmpty(); });
}

bool selectRow(QSqlQuery& query, const QString& statement, const QVariant& id)
{
    query.setForwardOnly(true);
    query.prepare(statement);
    query.addBindValue(id);
    return query.exec() && query.next();
}

int firstRowOf(const QJsonObject& item)
{
    return qMax(item["row_from"].toInt(1), 1);
}

} // namespace

PageCheck::PageCheck()
    : m_preview(QVariant())
    , m_recorder(std::make_unique<InkRecorder>())
{
}

PageCheck::~PageCheck() = default;

void PageCheck::setBackgroundPrinted(bool printed)
{
    m_isBackgroundPrinted = printed;
    m_preview.setBackgroundPrinted(printed);
}

bool PageCheck::setPrinter(const QString& name)
{
    if (!QPrinterInfo::availablePrinterNames().contains(name)) {
        return false;
    }
    m_printer =
        std::make_unique<QPrinter>(QPrinterInfo::printerInfo(name), QPrinter::HighResolution);
    return true;
}

bool PageCheck::check(const QVariant& document, const QVariant& blank)
{
    m_findings.clear();
    m_frames.clear();
    if (!m_preview.buildScene(m_preview.pageScene(), document, blank) || !readRows(document, blank))
    {
        return false;
    }
    if (m_unitLength <= 0) {
        Finding finding;
        finding.kind = Finding::Kind::PageWithoutArea;
        addOfBlank(nullptr, finding);
        return true;
    }
    bool hasBackground = false;
    const QVector<Item> items = itemsOnPage(hasBackground);
    checkBlank(items, hasBackground);
    const TagCheck tags(m_docValues, m_docContent);
    for (const Item& item : items) {
        m_frames << onSheet(item.frame);
        checkItem(item, tags);
    }
    checkRowsLeftOut(items);
    return true;
}

QString PageCheck::pageWords() const
{
    Finding page;
    page.document = m_document;
    page.blank = m_blank;
    return page.pageWords();
}

QRectF PageCheck::pageOnSheet() const
{
    return {QPointF(0, 0), m_pageSize * m_unitLength};
}

QRectF PageCheck::printableOnSheet() const
{
    return QRectF(QPointF(0, 0), m_sheetSize).marginsRemoved(m_margins);
}

bool PageCheck::readRows(const QVariant& document, const QVariant& blank)
{
    QSqlQuery docRow;
    QSqlQuery blankRow;
    if (!selectRow(docRow, "SELECT * FROM docs WHERE ID = ?", document) ||
        !selectRow(blankRow, "SELECT * FROM blanks WHERE ID = ?", blank))
    {
        return false;
    }
    m_document = {document, docRow.value("LNAME").toString(), docRow.value("FNAME").toString(),
                  docRow.value("BLANK_SER").toString(), docRow.value("BLANK_NO").toString()};
    m_docValues = documentTagValues(docRow);
    m_docContent = documentTagContent(docRow);

    const BlankPaper paper = BlankPaper::ofRow(blankRow);
    m_blank = {blank, blankRow.value("NAME").toString()};
    m_fields = parseJsonColumn(blankRow.value("CONTENT"))["fields"].toArray();
    m_blankFont = blankRow.value("FONT").toString();
    m_backgroundFile = blankRow.value("BACKGROUND_IMG").toString();
    if (m_printer) {
        paper.setOn(*m_printer);
        QPageLayout layout = m_printer->pageLayout();
        layout.setUnits(QPageLayout::Millimeter);
        m_margins = layout.minimumMargins();
    }
    m_sheetSize = paper.sheetSize();
    m_pageSize = paper.pageSize();
    m_unitLength = paper.unitLength();
    m_offset = QPointF(mmToPixels(blankRow.value("OFFSET_X").toInt()),
                       mmToPixels(blankRow.value("OFFSET_Y").toInt()));
    return true;
}

QVector<PageCheck::Item> PageCheck::itemsOnPage(bool& hasBackground)
{
    QVector<QGraphicsItem*> topItems;
    const QList<QGraphicsItem*> all = m_preview.pageScene()->items(Qt::AscendingOrder);
    std::copy_if(all.begin(), all.end(), std::back_inserter(topItems),
                 [](const QGraphicsItem* item) { return !item->parentItem(); });
    // The page adds the background first, then an item for each of the blank's.
    hasBackground = topItems.size() > m_fields.size();
    const int first = topItems.size() - m_fields.size();
    QVector<Item> items;
    for (int i = 0; i < m_fields.size() && first >= 0; ++i) {
        Item item = {i + 1, m_fields[i].toObject(), QString(), QRectF(), topItems[first + i]};
        item.text = item.json["value"].toString();
        item.frame = QRectF(item.onPage->pos(), QSizeF(qMax(item.json["size_w"].toDouble(), 0.0),
                                                       qMax(item.json["size_h"].toDouble(), 0.0)));
        if (const auto* symbol = dynamic_cast<QrPixmapItem*>(item.onPage)) {
            item.frame.setSize(symbol->pixmap().size()); // the frame's own plays no part
        }
        items << item;
    }
    return items;
}

void PageCheck::checkBlank(const QVector<Item>& items, bool hasBackground)
{
    if (items.isEmpty()) {
        Finding finding;
        finding.kind = Finding::Kind::PageWithoutFrames;
        addOfBlank(nullptr, finding);
    }
    if (!m_backgroundFile.isEmpty() && !hasBackground) {
        Finding finding;
        finding.kind = Finding::Kind::BackgroundMissing;
        finding.severity =
            m_isBackgroundPrinted ? Finding::Severity::Error : Finding::Severity::Warning;
        finding.text = m_backgroundFile;
        addOfBlank(nullptr, finding);
    }
    checkFonts(items);
}

void PageCheck::checkFonts(const QVector<Item>& items)
{
    QSet<QString> known = {QString()};
    for (const Item& item : items) {
        if (item.json["type"].toInt(BlankItemKind::text) == BlankItemKind::qr) {
            continue;
        }
        const QString own = item.json["font"].toString();
        const QString family = own.isEmpty() ? m_blankFont : own;
        if (known.contains(family)) {
            continue;
        }
        known << family;
        Finding finding;
        finding.kind = Finding::Kind::FontReplaced;
        finding.severity = Finding::Severity::Warning;
        finding.tag = family;
        finding.text = installedFamily(family);
        if (finding.text != family) {
            addOfBlank(nullptr, finding);
        }
    }
}

void PageCheck::checkItem(const Item& item, const TagCheck& tags)
{
    if (const auto* symbol = dynamic_cast<QrPixmapItem*>(item.onPage)) {
        checkTags(item, tags);
        checkSymbol(item, *symbol, tags);
        return;
    }
    auto* container = dynamic_cast<QGraphicsWidget*>(item.onPage);
    if (!container) {
        return;
    }
    if (partsOf(container).table) {
        const TableCheck table(container, item.frame, m_unitLength, firstRowOf(item.json),
                               *m_recorder);
        for (const Finding& finding : table.findings()) {
            addOfDocument(item, finding);
        }
        checkEdges(item, table.printedInk());
        return;
    }
    checkTags(item, tags);
    checkMarkup(item, tags);
    checkBound(item, *container);
    const TextFrameCheck text(container, item.frame, m_unitLength, *m_recorder);
    for (const Finding& finding : text.findings()) {
        addOfDocument(item, finding);
    }
    checkEdges(item, text.printedInk());
}

void PageCheck::checkSymbol(const Item& item, const QrPixmapItem& symbol, const TagCheck& tags)
{
    const QString text = tags.expanded(item.text);
    const int end = text.indexOf(QChar(0));
    Finding finding;
    if (symbol.pixmap().width() <= 2 * quietZone) {
        constexpr int enough = 200; // characters of a text that is too long
        finding.kind = Finding::Kind::QrRefused;
        finding.text = text.left(end).left(enough);
        addOfDocument(item, finding);
        return;
    }
    if (end >= 0) {
        finding.kind = Finding::Kind::QrTextCut;
        finding.text = text.left(end);
        addOfDocument(item, finding);
    }
    if (m_unitLength < smallestQrModule) {
        Finding small;
        small.kind = Finding::Kind::QrModuleTooSmall;
        small.amount = m_unitLength;
        addOfBlank(&item, small);
    }
    const QMarginsF zone(quietZone, quietZone, quietZone, quietZone);
    checkEdges(item, {{}, item.frame.marginsRemoved(zone)});
}

void PageCheck::checkTags(const Item& item, const TagCheck& tags)
{
    Finding finding;
    finding.kind = Finding::Kind::TagNotExpanded;
    for (const QString& tag : tags.unexpandedTags(item.text)) {
        finding.tag = tag;
        // A lone sign may be meant.
        finding.severity = tag == "#" ? Finding::Severity::Warning : Finding::Severity::Error;
        addOfDocument(item, finding);
    }
    finding.severity = Finding::Severity::Error;
    finding.kind = Finding::Kind::DateMissing;
    for (const QString& tag : tags.emptyDates(item.text)) {
        finding.tag = tag;
        finding.text = dateToWords(QDate());
        addOfDocument(item, finding);
    }
    Finding tail;
    tail.kind = Finding::Kind::TailDropped;
    tail.severity = Finding::Severity::Warning;
    tail.tag = tags.droppedTail(item.text);
    if (!tail.tag.isEmpty()) {
        addOfBlank(&item, tail);
    }
}

void PageCheck::checkMarkup(const Item& item, const TagCheck& tags)
{
    for (const TagCheck::Value& value : tags.valuesReadAsMarkup(item.text)) {
        Finding finding;
        finding.kind = Finding::Kind::ValueReadAsMarkup;
        finding.tag = value.tag;
        finding.text = value.text;
        addOfDocument(item, finding);
    }
}

void PageCheck::checkBound(const Item& item, const QGraphicsWidget& container)
{
    const auto* label = dynamic_cast<const FrameLabel*>(partsOf(&container).label);
    if (label && !label->isWhole()) {
        Finding finding;
        finding.kind = Finding::Kind::TextNotWhole;
        addOfDocument(item, finding);
    }
}

void PageCheck::checkEdges(const Item& item, const PrintedInk& printed)
{
    const QRectF page = fromSheet(pageOnSheet());
    const QRectF printable = fromSheet(printableOnSheet());
    // Margins that meet leave nothing that is printable, and turn its rectangle inside out.
    const bool isInside = printable.isValid() && (page & printable).contains(printed.roughBounds());
    const QRectF ink = isInside ? QRectF() : printed.bounds();
    checkEdge(item, ink, Finding::Kind::OutsidePage, page);
    if (!m_margins.isNull()) {
        checkEdge(item, ink & page, Finding::Kind::OutsidePrintable, printable);
    }
}

void PageCheck::checkEdge(const Item& item, const QRectF& ink, Finding::Kind kind,
                          const QRectF& area)
{
    const double tolerance = smallestInk / m_unitLength;
    for (const Excess& excess : excessesOf(item.frame | ink, area, tolerance)) {
        const bool isSideways =
            excess.side == Finding::Side::Left || excess.side == Finding::Side::Right;
        const double lost =
            qMin(excessOn(excess.side, ink, area), isSideways ? ink.width() : ink.height());
        Finding finding;
        finding.kind = kind;
        finding.side = excess.side;
        finding.amount = excess.length * m_unitLength;
        if (lost > tolerance) {
            finding.lostInk = lost * m_unitLength;
            addOfDocument(item, finding);
        } else if (!isKnown(item, excess.side)) {
            finding.severity = Finding::Severity::Warning;
            addOfBlank(&item, finding);
        }
    }
}

bool PageCheck::isKnown(const Item& item, Finding::Side side) const
{
    return std::any_of(m_findings.cbegin(), m_findings.cend(), [&](const Finding& finding) {
        return finding.item == item.number && finding.side == side &&
               finding.kind == Finding::Kind::OutsidePage;
    });
}

void PageCheck::checkRowsLeftOut(const QVector<Item>& items)
{
    QMap<QString, QSet<int>> printedRows; // by the tag of the table
    QMap<QString, const Item*> lastItems;
    for (const Item& item : items) {
        const QTableWidget* table = partsOf(item.onPage).table;
        if (!table) {
            continue;
        }
        lastItems[item.text] = &item;
        for (int row = 0; row < table->rowCount(); ++row) {
            printedRows[item.text] << firstRowOf(item.json) + row;
        }
    }
    for (auto it = lastItems.cbegin(); it != lastItems.cend(); ++it) {
        const QJsonArray rows = m_docContent[it.key()].toObject()["value"].toArray();
        Finding finding;
        finding.kind = Finding::Kind::TableRowsLeftOut;
        finding.severity = Finding::Severity::Warning;
        for (int row = 1; row <= rows.size(); ++row) {
            if (!printedRows[it.key()].contains(row) && hasText(rows[row - 1].toArray())) {
                finding.rows << row;
            }
        }
        if (!finding.rows.isEmpty()) {
            addOfDocument(*it.value(), finding);
        }
    }
}

void PageCheck::addOfDocument(const Item& item, Finding finding)
{
    finding.document = m_document;
    addOfBlank(&item, finding);
}

void PageCheck::addOfBlank(const Item* item, Finding finding)
{
    finding.blank = m_blank;
    if (item) {
        finding.item = item->number;
        finding.itemText = item->text;
        finding.place = onSheet(item->frame);
    }
    m_findings << finding;
}

QRectF PageCheck::onSheet(const QRectF& onPage) const
{
    const QRectF moved = onPage.translated(-m_offset);
    return {moved.topLeft() * m_unitLength, moved.size() * m_unitLength};
}

QRectF PageCheck::fromSheet(const QRectF& onSheet) const
{
    return QRectF(onSheet.topLeft() / m_unitLength, onSheet.size() / m_unitLength)
        .translated(m_offset);
}
