#include "render/PrinPreviewDialog.h"

#include <QDebug>
#include <QFontMetrics>
#include <QGraphicsLinearLayout>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QHeaderView>
#include <QJsonArray>
#include <QMessageBox>
#include <QPageLayout>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QScrollBar>
#include <QSqlError>
#include <QSqlQuery>
#include <QTableWidget>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "blanks/BlankRecord.h"
#include "blanks/GraphicsZItem.h"
#include "forms/FormDefinitions.h"
#include "render/QrPixmap.h"
#include "render/TagExpansion.h"
#include "render/page/BlankPaper.h"
#include "render/page/FrameLabel.h"
#include "render/page/MarkupBound.h"
#include "render/page/PagePicture.h"
#include "render/page/PageStyle.h"
#include "render/page/PageWidget.h"
#include "render/page/QrPixmapItem.h"
#include "render/vector/VectorProxyWidget.h"
#include "store/JsonColumn.h"
#include "ui_PrinPreviewDialog.h"

namespace {

/// A frame of the page: a container without a widget whose layout stacks the frame's widgets.
struct Frame
{
    QGraphicsProxyWidget* container;
    QGraphicsLinearLayout* layout;
};

Frame makeFrame()
{
    auto* container = new VectorProxyWidget;
    container->setStyle(PageStyle::shared());
    auto* layout = new QGraphicsLinearLayout(Qt::Vertical);
    layout->setSpacing(1.0);
    container->setLayout(layout);
    return {container, layout};
}

/// Black ink, whatever the desktop's colours are: a page is paper.
void setPaperColors(QWidget* widget)
{
    QPalette palette = widget->palette();
    if (palette.color(QPalette::WindowText) == Qt::black &&
        palette.color(QPalette::Text) == Qt::black) {
        return;
    }
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::Text, Qt::black);
    widget->setPalette(palette);
}

void addWidget(const Frame& frame, QWidget* widget)
{
    setPaperColors(widget);
    auto* proxy = new VectorProxyWidget;
    proxy->setWidget(widget);
    frame.layout->insertItem(-1, proxy);
}

/// The frame's free rest goes to the stroke.
void addStroke(const Frame& frame, QGraphicsLayoutItem* stroke)
{
    frame.layout->insertItem(-1, stroke);
    frame.layout->setStretchFactor(stroke, 100);
}

/// A coordinate or length of an item in scene units, kept within what widgets can be.
double lengthOf(const QJsonObject& item, const char* key)
{
    return qBound(-double(QWIDGETSIZE_MAX), item[QLatin1String(key)].toDouble(0),
                  double(QWIDGETSIZE_MAX));
}

QRectF geometryOf(const QJsonObject& item)
{
    return {lengthOf(item, "pos_x"), lengthOf(item, "pos_y"), lengthOf(item, "size_w"),
            lengthOf(item, "size_h")};
}

/// What the layout of an item's frame leaves for its content, in scene units.
QSizeF roomOf(const Frame& frame, const QJsonObject& item)
{
    qreal left = 0;
    qreal top = 0;
    qreal right = 0;
    qreal bottom = 0;
    frame.layout->getContentsMargins(&left, &top, &right, &bottom);
    return geometryOf(item).adjusted(left, top, -right, -bottom).size();
}

/// The line spacing factor of an item. Single precision throughout: only so is "1,15" 115 per cent.
float lineSpacingOf(const QJsonObject& item)
{
    constexpr float smallest = 0.1F;
    constexpr float largest = 1000.0F;
    const float spacing = item["line_spacing"].toString().replace(',', '.').toFloat();
    return spacing >= smallest ? qMin(spacing, largest) : 1.0F;
}

bool hasStroke(const QJsonObject& item)
{
    return item["f_cut"].toInt(0) == 1;
}

Qt::Alignment alignmentOf(const QJsonObject& item)
{
    Qt::Alignment horizontal = Qt::AlignHCenter;
    switch (item["h_align"].toInt(HorizontalAlign::center)) {
    case HorizontalAlign::left:
        horizontal = Qt::AlignLeft;
        break;
    case HorizontalAlign::right:
        horizontal = Qt::AlignRight;
        break;
    default:
        break;
    }
    switch (hasStroke(item) ? VerticalAlign::top : item["v_align"].toInt(VerticalAlign::center)) {
    case VerticalAlign::top:
        return horizontal | Qt::AlignTop;
    case VerticalAlign::bottom:
        return horizontal | Qt::AlignBottom;
    default:
        return horizontal | Qt::AlignVCenter;
    }
}

QFont fontOf(const QJsonObject& item, const QFont& blankFont)
{
    constexpr int sizeOfBlank = 6; // sizes up to this one mean the blank's own
    QFont font = blankFont;
    const QString family = item["font"].toString();
    if (!family.isEmpty()) {
        font.setFamily(family);
    }
    const int pointSize = item["font_size"].toInt(0);
    if (pointSize > sizeOfBlank) {
        font.setPointSize(pointSize);
    }
    return font;
}

/// A table that measures as on a screen of 96 dots per inch in all its parts, also those that are
/// never seen: the header gives the columns their widths, the scroll bars the table its least size.
QTableWidget* makeTable(const QFont& font)
{
    auto* table = new PageWidget<QTableWidget>;
    auto* header = new PageWidget<QHeaderView>(Qt::Horizontal);
    auto* horizontalBar = new PageWidget<QScrollBar>(Qt::Horizontal);
    auto* verticalBar = new PageWidget<QScrollBar>(Qt::Vertical);
    header->setStyle(PageStyle::shared());
    table->setHorizontalHeader(header);
    table->setHorizontalScrollBar(horizontalBar);
    table->setVerticalScrollBar(verticalBar);
    table->setGridStyle(Qt::NoPen);
    table->setShowGrid(false);
    table->setSelectionMode(QAbstractItemView::NoSelection);
    header->hide();
    header->setStretchLastSection(true);
    table->verticalHeader()->hide();
    table->setStyleSheet("background: transparent; border: 0px;");
    table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setFocusPolicy(Qt::NoFocus); // or Tab would mark a cell, and the mark be printed
    // Last, since the style sheet sets fonts: only a font that is given has the page's resolution.
    for (QWidget* part : QVector<QWidget*>{table, header, horizontalBar, verticalBar}) {
        part->setFont(font);
    }
    return table;
}

constexpr int smallestSection = 5; // scene units, of a column or a row of a table

void setColumnWidths(QTableWidget* table, const QJsonArray& widths)
{
    QHeaderView* header = table->horizontalHeader();
    for (int i = 0; i < widths.size() && i <= table->columnCount(); ++i) {
        const int width = widths[i].toInt();
        if (width < smallestSection) {
            continue;
        }
        header->setMinimumSectionSize(qMin(width, header->minimumSectionSize()));
        table->setColumnWidth(i, width);
    }
}

void setRowDefaults(QTableWidget* table, const QJsonObject& item, const QFont& font)
{
    const auto height = static_cast<float>(QFontMetrics(font).height());
    table->verticalHeader()->setMinimumSectionSize(smallestSection);
    table->verticalHeader()->setDefaultSectionSize(static_cast<int>(height * lineSpacingOf(item)));
}

/// Fills one row and makes it as high as its highest cell; it never shrinks.
void fillRow(QTableWidget* table, int row, const QJsonArray& cells, const QFont& font)
{
    constexpr int highestCell = 500;
    const QFontMetrics metrics(font);
    for (int column = 0; column < table->columnCount(); ++column) {
        const QString text = boundedPlainText(cells[column].toString());
        auto* cell = new QTableWidgetItem(text);
        cell->setFont(font);
        table->setItem(row, column, cell);
        const QRect room(0, 0, table->columnWidth(column), highestCell);
        const int height = metrics.boundingRect(room, Qt::TextWordWrap, text).height();
        if (height > table->rowHeight(row)) {
            table->setRowHeight(row, height);
        }
    }
}

void fillRows(QTableWidget* table, const QJsonArray& rows, const QJsonObject& item,
              const QFont& font)
{
    const int from = qMax(item["row_from"].toInt(1), 1);
    const int to = qBound(0, item["row_to"].toInt(rows.size()), rows.size());
    if (from > to) {
        table->setRowCount(0);
        return;
    }
    table->setRowCount(to - from + 1);
    for (int i = from - 1; i < to; ++i) {
        fillRow(table, i - (from - 1), rows[i].toArray(), font);
    }
}

int heightOfRows(const QTableWidget* table)
{
    int height = 0;
    for (int row = 0; row < table->rowCount(); ++row) {
        height += table->rowHeight(row);
    }
    return height;
}

/// Where a scene comes to lie on a page, in the printer's dots. The rest of the page stays blank:
/// the toolkit alone would let an item reach beyond the scene's edge there.
QRectF placeOnPaper(const QSizeF& scene, const QSize& page)
{
    return {QPointF(0, 0), scene.scaled(page, Qt::KeepAspectRatio)};
}

} // namespace

PrinPreviewDialog::PrinPreviewDialog(const QVariant& document, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::PrinPreviewDialog>())
    , docId(document)
{
    ui->setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    applyBaseStyle(this);
}

PrinPreviewDialog::~PrinPreviewDialog()
{
    if (scene) {
        scene->deleteLater();
    }
}

PrinPreviewDialog::BlankList PrinPreviewDialog::loadBlanksForDoc(const QVariant& document)
{
    lastError.clear();
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT DOC_TYPE FROM docs WHERE ID = " + document.toString() + ";") ||
        !query.next())
    {
        fail("docs", query.lastError().text());
        return {};
    }
    return loadBlanksForForm(query.value("DOC_TYPE"));
}

PrinPreviewDialog::BlankList PrinPreviewDialog::loadBlanksForForm(const QVariant& formId)
{
    lastError.clear();
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT ID, NAME FROM blanks WHERE FORM_ID = " + formId.toString())) {
        fail("blanks", query.lastError().text());
        return {};
    }
    BlankList blanks;
    while (query.next()) {
        blanks.append({query.value("NAME").toString(), query.value("ID")});
    }
    return blanks;
}

QGraphicsScene* PrinPreviewDialog::pageScene()
{
    if (!scene) {
        scene = new QGraphicsScene;
        ui->documentView->setScene(scene);
        ui->documentView->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    }
    return scene;
}

bool PrinPreviewDialog::buildScene(QGraphicsScene* page, const QVariant& document,
                                   const QVariant& blankId)
{
    lastError.clear();
    page->clear();
    backgroundItem = nullptr;
    builtPage = page;

    QSqlQuery docQuery;
    docQuery.setForwardOnly(true);
    if (!docQuery.exec("SELECT * FROM docs WHERE ID = " + document.toString() + ";") ||
        !docQuery.next())
    {
        return fail("docs", docQuery.lastError().text());
    }
    QSqlQuery blankQuery;
    blankQuery.setForwardOnly(true);
    if (!blankQuery.exec("SELECT * FROM blanks WHERE ID = " + blankId.toString()) ||
        !blankQuery.next()) {
        return fail("blanks", blankQuery.lastError().text());
    }

    const int width = blankQuery.value("SIZE_WIDTH").toInt();
    const int height = blankQuery.value("SIZE_HEIGHT").toInt();
    const QSize pageSize(mmToPixels(width), mmToPixels(height));
    blankPageSize = QSizeF(width, height);
    page->setSceneRect(QRectF(QPointF(0, 0), pageSize));
    offsetX = blankQuery.value("OFFSET_X").toInt();
    offsetY = blankQuery.value("OFFSET_Y").toInt();
    ui->documentView->resetTransform();
    addBackground(blankQuery.value("BACKGROUND_IMG"), pageSize);

    blankFont = QFont(blankQuery.value("FONT").toString());
    const int fontSize = blankQuery.value("FONT_SIZE").toInt();
    if (fontSize > 0) {
        blankFont.setPointSize(fontSize);
    }
    paperFormat = blankQuery.value("PAPER_FORMAT").toInt();
    paperOrientation = blankQuery.value("PAPER_ORIENTATION").toInt();

    docValues = documentTagValues(docQuery);
    docContent = documentTagContent(docQuery);
    const QJsonArray items = parseJsonColumn(blankQuery.value("CONTENT"))["fields"].toArray();
    for (const QJsonValue& item : items) {
        createBlankFieldItem(item.toObject());
    }
    return true;
}

void PrinPreviewDialog::createBlankFieldItem(const QJsonObject& item)
{
    if (!builtPage) {
        return;
    }
    const QString value = item["value"].toString();
    if (item["type"].toInt(BlankItemKind::text) == BlankItemKind::qr) {
        QPixmap pixmap;
        makeQrPixmap(expandTags(value, docValues, docContent), pixmap);
        auto* symbol = new QrPixmapItem(pixmap);
        symbol->setPos(geometryOf(item).topLeft());
        builtPage->addItem(symbol);
        return;
    }
    // The document decides between table and text, not the kind of the item.
    const QFont font = fontOf(item, blankFont);
    const QJsonObject docField = docContent.value(value).toObject();
    const bool isTable = docField["type"].toInt() == FieldType::table;
    QGraphicsProxyWidget* frame =
        isTable ? createBlankFieldTableItem(docField, item, font)
                : createBlankFieldTextItem(expandTags(value, docValues, docContent), item, font);
    frame->setGeometry(geometryOf(item));
    builtPage->addItem(frame);
}

QGraphicsProxyWidget* PrinPreviewDialog::createBlankFieldTableItem(const QJsonObject& docField,
                                                                   const QJsonObject& item,
                                                                   const QFont& font)
{
    const Frame frame = makeFrame();
    QTableWidget* table = makeTable(font);
    addWidget(frame, table);

    const QJsonArray columns = docField["columns"].toArray();
    if (columns.isEmpty()) {
        qDebug() << "createBlankFieldTableItem error: Table is empty";
        return frame.container;
    }
    const QFont cellFont(font, table); // in the page's resolution
    table->setColumnCount(columns.size());
    setColumnWidths(table, item["columns_width"].toArray());
    setRowDefaults(table, item, cellFont);
    fillRows(table, docField["value"].toArray(), item, cellFont);
    if (hasStroke(item)) {
        table->setFixedHeight(heightOfRows(table));
        addStroke(frame, createZItem());
    }
    return frame.container;
}

QGraphicsProxyWidget* PrinPreviewDialog::createBlankFieldTextItem(const QString& text,
                                                                  const QJsonObject& item,
                                                                  const QFont& font)
{
    const Frame frame = makeFrame();
    const float lineSpacing = lineSpacingOf(item);
    auto* label = new FrameLabel(text);
    if (!hasStroke(item)) {
        label->setRoom(roomOf(frame, item), font, lineSpacing);
    }
    addWidget(frame, label);
    label->setFont(font);

    const int lineHeight = static_cast<int>(lineSpacing * 100.0F);
    const QString markup =
        "<p style=\"line-height: " + QString::number(lineHeight) + "%;\">" + text + "</p>";
    label->setWordWrap(true);
    label->setStyleSheet("background: transparent; border: 0;");
    label->setAlignment(alignmentOf(item));
    // Last: each of the settings above would go through the text's layout again.
    label->setText(QString(markup).replace('\n', "<br>"));
    if (hasStroke(item)) {
        label->setFixedWidth(qMax(static_cast<int>(lengthOf(item, "size_w")), 0));
        label->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
        addStroke(frame, createZItem());
    }
    return frame.container;
}

QGraphicsLayoutItem* PrinPreviewDialog::createZItem()
{
    auto* proxy = new VectorProxyWidget;
    proxy->setWidget(new GraphicsZItem);
    return proxy;
}

void PrinPreviewDialog::setBackgroundPrinted(bool printed)
{
    ui->checkPrintBG->setChecked(printed);
}

bool PrinPreviewDialog::printTo(QPrinter& printer)
{
    if (!scene) {
        return false;
    }
    QPainter painter;
    printPage(printer, painter);
    accept();
    return true;
}

bool PrinPreviewDialog::printPage(QPrinter& printer, QPainter& painter)
{
    if (!scene) {
        return false;
    }
    BlankPaper(paperOrientation, paperFormat, blankPageSize).setOn(printer);
    if (backgroundItem && !ui->checkPrintBG->isChecked()) {
        backgroundItem->hide();
    }
    printer.setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter);
    printer.setFullPage(true);
    shiftByOffsets();
    const bool ready = painter.isActive() ? printer.newPage() : painter.begin(&printer);
    if (ready) {
        painter.save();
        painter.setClipRect(placeOnPaper(scene->sceneRect().size(), painter.viewport().size()));
        scene->render(&painter, QRectF(), QRectF(), Qt::KeepAspectRatio);
        painter.restore();
    }
    return ready;
}

int PrinPreviewDialog::exec()
{
    const BlankList blanks = loadBlanksForDoc(docId);
    if (blanks.isEmpty()) {
        QMessageBox::about(this, "Ошибка", "Для документа нет доступных бланков");
        return 0;
    }
    for (const auto& [name, id] : blanks) {
        ui->comboBoxBlank->addItem(name, id);
    }
    QGraphicsScene* page = pageScene();
    setModal(true);
    show();
    buildScene(page, docId, ui->comboBoxBlank->currentData());
    return QDialog::exec();
}

void PrinPreviewDialog::on_buttonPrint_clicked()
{
    ui->buttonPrint->setEnabled(false);
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted) {
        printTo(printer);
    }
    ui->buttonPrint->setEnabled(true);
}

void PrinPreviewDialog::on_buttonReject_clicked()
{
    reject();
}

void PrinPreviewDialog::on_comboBoxBlank_currentIndexChanged(int)
{
    if (scene) {
        buildScene(scene, docId, ui->comboBoxBlank->currentData());
    }
}

bool PrinPreviewDialog::fail(const QString& what, const QString& driverText)
{
    lastError = "SQL Error (" + what + "): " + driverText;
    qDebug() << lastError;
    return false;
}

void PrinPreviewDialog::addBackground(const QVariant& image, const QSize& pageSize)
{
    if (image.isNull()) {
        return;
    }
    const QPixmap pixmap = loadPagePicture(appFilePath(image.toString()), pageSize);
    if (!pixmap.isNull()) {
        backgroundItem = builtPage->addPixmap(pixmap);
    }
}

void PrinPreviewDialog::shiftByOffsets()
{
    const QPointF offset(mmToPixels(offsetX), mmToPixels(offsetY));
    const QList<QGraphicsItem*> items = scene->items(Qt::DescendingOrder);
    for (QGraphicsItem* item : items) {
        if (!item->parentItem()) {
            item->setPos(item->pos() - offset);
        }
    }
}
