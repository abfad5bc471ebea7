#include "preflight/PageCheck.h"

#include <QFontInfo>
#include <QMap>
#include <QPageLayout>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSet>
#include <QTableWidget>

#include <algorithm>

#include "app/AppHelpers.h"
#include "blanks/BlankRecord.h"
#include "blanks/FontFamily.h"
#include "preflight/Excess.h"
#include "preflight/TableCheck.h"
#include "preflight/TagCheck.h"
#include "preflight/TextFrameCheck.h"
#include "render/QrPixmap.h"
#include "render/TagExpansion.h"
#include "render/page/FrameLabel.h"
#include "render/page/PagePicture.h"
#include "render/page/QrPixmapItem.h"

namespace {

/// The family that the system has for a family; the same if it has it.
QString installedFamily(const QString& family)
{
    const QString installed = QFontInfo(QFont(searchableFamily(family))).family();
    const QString plainName = family.section('[', 0, 0).trimmed(); // without the foundry
    return installed.compare(plainName, Qt::CaseInsensitive) == 0 ? family : installed;
}

/// As BlankPaper::storedSize() gives whole numbers of millimetres.
QString sizeText(const QSizeF& size)
{
    return QString::number(size.width()) + QString::fromUtf8(" × ") +
           QString::number(size.height());
}

bool hasText(const QJsonArray& row)
{
    return std::any_of(row.begin(), row.end(),
                       [](const QJsonValue& cell) { return !cell.toString().trimmed().isEmpty(); });
}

} // namespace

PageCheck::PageCheck(std::shared_ptr<PageSet> pages)
    : m_pages(pages ? std::move(pages) : std::make_shared<PageSet>())
    , m_recorder(std::make_unique<InkRecorder>())
{
}

PageCheck::~PageCheck() = default;

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
    m_page = nullptr;
    const PageBuilder* page = m_pages->build(document, blank);
    if (page) {
        check(*page);
    }
    return page != nullptr;
}

void PageCheck::check(const PageBuilder& page)
{
    m_findings.clear();
    m_frames.clear();
    m_page = &page;
    takeRows(page);
    if (m_unitLength <= 0) {
        Finding finding;
        finding.kind = Finding::Kind::PageWithoutArea;
        const QSizeF size = page.blank().size;
        // What is nothing but a size of 0 says so in plain words.
        const bool isPlainZero =
            page.blank().storedSize == sizeText(size) && size.width() >= 0 && size.height() >= 0;
        finding.text = isPlainZero ? QString() : page.blank().storedSize;
        addOfBlank(nullptr, finding);
        return;
    }
    checkBlank(page);
    const TagCheck tags(m_docValues, m_docContent);
    for (const PageItem& item : page.items()) {
        m_frames << onSheet(item.place());
        checkItem(item, tags);
    }
    checkRowsLeftOut(page.items());
}

QRectF PageCheck::pageOnSheet() const
{
    return {QPointF(0, 0), m_pageSize * m_unitLength};
}

QRectF PageCheck::printableOnSheet() const
{
    return QRectF(QPointF(0, 0), m_sheetSize).marginsRemoved(m_margins);
}

void PageCheck::takeRows(const PageBuilder& page)
{
    m_docValues = page.document().values;
    m_docContent = page.document().content;
    const auto column = [this](const char* tag) {
        return m_docValues.value(QLatin1String(tag)).toString();
    };
    m_document = {page.document().id, column("#LNAME"), column("#FNAME"), column("#BLANK_SER"),
                  column("#BLANK_NO")};

    const PageBlank& blank = page.blank();
    const BlankPaper paper = blank.paper();
    m_blank = {blank.id, blank.name};
    m_blankFont = blank.fontFamily;
    if (m_printer) {
        paper.setOn(*m_printer);
        QPageLayout layout = m_printer->pageLayout();
        layout.setUnits(QPageLayout::Millimeter);
        m_margins = layout.minimumMargins();
    }
    m_sheetSize = paper.sheetSize();
    m_pageSize = paper.pageSize();
    m_unitLength = paper.unitLength();
    m_offset = QPointF(mmToPixels(blank.offset.x()), mmToPixels(blank.offset.y()));
}

void PageCheck::checkBlank(const PageBuilder& page)
{
    if (page.items().isEmpty()) {
        Finding finding;
        finding.kind = Finding::Kind::PageWithoutFrames;
        addOfBlank(nullptr, finding);
    }
    checkPaper(page.blank());
    checkBackground(page);
    checkFonts(page.items());
}

void PageCheck::checkPaper(const PageBlank& blank)
{
    if (!blank.paper().isKnown()) {
        Finding finding;
        finding.kind = Finding::Kind::PaperUnknown;
        finding.text = blank.storedFormat;
        addOfBlank(nullptr, finding);
    }
    if (isLargerThanPaper(blank.paper().pageSize())) {
        Finding finding;
        finding.kind = Finding::Kind::PageTooLarge;
        finding.text = blank.storedSize;
        addOfBlank(nullptr, finding);
    }
}

void PageCheck::checkBackground(const PageBuilder& page)
{
    Finding finding;
    finding.text = page.blank().background.toString();
    if (finding.text.isEmpty() || isLargerThanPaper(page.blank().paper().pageSize())) {
        return; // none, or more is wrong than the picture
    }
    if (!page.background()) {
        finding.kind = Finding::Kind::BackgroundMissing;
        finding.severity =
            m_isBackgroundPrinted ? Finding::Severity::Error : Finding::Severity::Warning;
        addOfBlank(nullptr, finding);
    } else if (!liesBelow(appFilePath(finding.text), appDirPath())) {
        finding.kind = Finding::Kind::BackgroundOutside;
        finding.severity = Finding::Severity::Warning;
        addOfBlank(nullptr, finding);
    }
}

void PageCheck::checkFonts(const QVector<PageItem>& items)
{
    QSet<QString> known = {QString()};
    for (const PageItem& item : items) {
        if (item.symbol) {
            continue;
        }
        const QString own = item.blankItem.json["font"].toString();
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

void PageCheck::checkItem(const PageItem& item, const TagCheck& tags)
{
    if (item.symbol) {
        checkTags(item, tags);
        checkSymbol(item, tags);
        return;
    }
    if (item.frame.table) {
        const TableCheck table(item, m_unitLength, *m_recorder);
        for (const Finding& finding : table.findings()) {
            addOfDocument(item, finding);
        }
        checkEdges(item, table.printedInk());
        return;
    }
    checkTags(item, tags);
    checkMarkup(item, tags);
    checkBound(item);
    const TextFrameCheck text(item, m_unitLength, *m_recorder);
    for (const Finding& finding : text.findings()) {
        addOfDocument(item, finding);
    }
    checkEdges(item, text.printedInk());
}

void PageCheck::checkSymbol(const PageItem& item, const TagCheck& tags)
{
    const QString text = tags.expanded(item.blankItem.value);
    const int end = text.indexOf(QChar(0));
    Finding finding;
    if (item.symbol->pixmap().width() <= 2 * qrQuietZone) {
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
    const QMarginsF zone(qrQuietZone, qrQuietZone, qrQuietZone, qrQuietZone);
    checkEdges(item, {{}, item.place().marginsRemoved(zone)});
}

void PageCheck::checkTags(const PageItem& item, const TagCheck& tags)
{
    Finding finding;
    finding.kind = Finding::Kind::TagNotExpanded;
    for (const QString& tag : tags.unexpandedTags(item.blankItem.value)) {
        finding.tag = tag;
        // A lone sign may be meant.
        finding.severity = tag == "#" ? Finding::Severity::Warning : Finding::Severity::Error;
        addOfDocument(item, finding);
    }
    finding.severity = Finding::Severity::Error;
    finding.kind = Finding::Kind::DateMissing;
    for (const QString& tag : tags.emptyDates(item.blankItem.value)) {
        finding.tag = tag;
        finding.text = dateToWords(QDate());
        addOfDocument(item, finding);
    }
    checkEmptyTags(item, tags);
    Finding tail;
    tail.kind = Finding::Kind::TailDropped;
    tail.severity = Finding::Severity::Warning;
    tail.tag = tags.droppedTail(item.blankItem.value);
    if (!tail.tag.isEmpty()) {
        addOfBlank(&item, tail);
    }
}

void PageCheck::checkEmptyTags(const PageItem& item, const TagCheck& tags)
{
    if (item.symbol && item.expandedText.isEmpty()) {
        return; // it is refused, which says more
    }
    for (const QString& tag : tags.emptyTags(item.blankItem.value)) {
        Finding finding;
        finding.kind = Finding::Kind::TagEmpty;
        finding.severity = Finding::Severity::Warning;
        finding.tag = tag;
        // The organisation is the same for every document.
        if (tag.startsWith(QLatin1String("#ORG_")) && !m_docContent.contains(tag)) {
            addOfBlank(&item, finding);
        } else {
            addOfDocument(item, finding);
        }
    }
}

void PageCheck::checkMarkup(const PageItem& item, const TagCheck& tags)
{
    for (const TagCheck::Value& value : tags.valuesReadAsMarkup(item.blankItem.value)) {
        Finding finding;
        finding.kind = Finding::Kind::ValueReadAsMarkup;
        finding.tag = value.tag;
        finding.text = value.text;
        addOfDocument(item, finding);
    }
}

void PageCheck::checkBound(const PageItem& item)
{
    if (!item.frame.label->isWhole()) {
        Finding finding;
        finding.kind = Finding::Kind::TextNotWhole;
        addOfDocument(item, finding);
    }
}

void PageCheck::checkEdges(const PageItem& item, const PrintedInk& printed)
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

void PageCheck::checkEdge(const PageItem& item, const QRectF& ink, Finding::Kind kind,
                          const QRectF& area)
{
    const double tolerance = smallestInk / m_unitLength;
    for (const Excess& excess : excessesOf(item.place() | ink, area, tolerance)) {
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

bool PageCheck::isKnown(const PageItem& item, Finding::Side side) const
{
    return std::any_of(m_findings.cbegin(), m_findings.cend(), [&](const Finding& finding) {
        return finding.item == item.number && finding.side == side &&
               finding.kind == Finding::Kind::OutsidePage;
    });
}

void PageCheck::checkRowsLeftOut(const QVector<PageItem>& items)
{
    QMap<QString, QSet<int>> printedRows; // by the tag of the table
    QMap<QString, const PageItem*> lastItems;
    for (const PageItem& item : items) {
        const QTableWidget* table = item.frame.table;
        if (!table) {
            continue;
        }
        lastItems[item.blankItem.value] = &item;
        for (int row = 0; row < table->rowCount(); ++row) {
            printedRows[item.blankItem.value] << item.blankItem.firstRow + row;
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

void PageCheck::addOfDocument(const PageItem& item, Finding finding)
{
    finding.document = m_document;
    addOfBlank(&item, finding);
}

void PageCheck::addOfBlank(const PageItem* item, Finding finding)
{
    finding.blank = m_blank;
    if (item) {
        finding.item = item->number;
        finding.itemText = item->blankItem.value;
        finding.place = onSheet(item->place());
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
