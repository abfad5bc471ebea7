#include "blanks/BlankWindow.h"

#include <QAbstractTextDocumentLayout>
#include <QDebug>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QHeaderView>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMessageBox>
#include <QRandomGenerator>
#include <QSqlQuery>
#include <QTextDocument>

#include <algorithm>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/StoredPath.h"
#include "app/widgets/CellTextDelegate.h"
#include "blanks/BlankRecord.h"
#include "blanks/FontFamily.h"
#include "blanks/ItemPropertiesTable.h"
#include "blanks/ResizableRectItem.h"
#include "blanks/TableLayoutDialog.h"
#include "blanks/TagTree.h"
#include "blanks/ZelvoraView.h"
#include "forms/FormDefinitions.h"
#include "render/QrPixmap.h"
#include "render/page/PageFont.h"
#include "render/page/PagePicture.h"
#include "render/page/PageUnits.h"
#include "store/JsonColumn.h"
#include "store/SqlLog.h"
#include "ui_BlankWindow.h"

namespace {

// What a QR picture's side is less than its frame's: as loaded, and after a change.
// kept: the two differ.
constexpr int qrMarginLoaded = 2;
constexpr int qrMarginChanged = 1;
constexpr int newQrSide = 96;

bool isQr(const QJsonObject& item)
{
    return item["type"].toInt() == BlankItemKind::qr;
}

QString jsonText(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QRectF geometryOf(const QGraphicsRectItem* frame)
{
    return QRectF(frame->pos(), frame->rect().size());
}

QJsonObject itemObject(const QGraphicsItem* frame)
{
    return parseJsonColumn(frame->data(BlankWindow::itemDataSlot));
}

void setItemObject(QGraphicsItem* frame, const QJsonObject& item)
{
    frame->setData(BlankWindow::itemDataSlot, jsonText(item));
}

void setSize(QFont& font, int points)
{
    if (points > 0) {
        font.setPointSize(points);
    }
}

// kept: the page of the paper's format, whatever the sizes say that the preview lays the page out
// by.
QSize pageSize(const QSqlQuery& blank)
{
    const int format = blank.value("PAPER_FORMAT").toInt();
    const bool isLandscape =
        blank.value("PAPER_ORIENTATION").toInt() == PaperOrientation::landscape;
    QSize size;
    switch (format) {
    case PaperFormat::a4:
        size = QSize(mmToPixels(210), mmToPixels(297));
        break;
    case PaperFormat::a5:
        size = QSize(mmToPixels(148), mmToPixels(210));
        break;
    default:
        size = QSize(mmToPixels(blank.value("SIZE_WIDTH").toInt()),
                     mmToPixels(blank.value("SIZE_HEIGHT").toInt()));
        break;
    }
    return isLandscape && format != PaperFormat::customMm ? size.transposed() : size;
}

int qrSide(const QSizeF& frame, int margin)
{
    return truncated(std::min(frame.width(), frame.height()) - margin);
}

// Shows the text as a QR picture with a side of that many scene units; none if it is below 1.
void showQr(QGraphicsPixmapItem* child, const QString& text, int side)
{
    // A typed size is not bounded; beyond the largest page the item is scaled, not the picture.
    constexpr int largestPicture = 2000;
    const int pixels = std::min(side, largestPicture);
    QPixmap picture;
    makeQrPixmap(text, picture);
    child->setPixmap(picture.scaled(pixels, pixels, Qt::IgnoreAspectRatio, Qt::FastTransformation));
    child->setScale(side > pixels ? static_cast<double>(side) / pixels : 1.0);
}

QGraphicsPixmapItem* newQrChild(const QString& text, int side)
{
    auto* picture = new QGraphicsPixmapItem;
    showQr(picture, text, side);
    picture->setPos(1.0, 1.0);
    return picture;
}

/// A text on the page: black on any desktop, and as large on the page as on paper, where a scene
/// unit is a pixel at 96 dots per inch, whatever the screen's resolution.
QGraphicsTextItem* makePageText(const QString& text)
{
    static QImage page(1, 1, QImage::Format_Mono);
    page.setDotsPerMeterX(PageUnits::dotsPerMetre);
    page.setDotsPerMeterY(PageUnits::dotsPerMetre);
    auto* item = new QGraphicsTextItem(text);
    item->setDefaultTextColor(Qt::black);
    item->document()->documentLayout()->setPaintDevice(&page);
    return item;
}

QGraphicsTextItem* textChild(const QGraphicsItem* frame)
{
    return qgraphicsitem_cast<QGraphicsTextItem*>(frame->childItems().first());
}

QGraphicsPixmapItem* qrChild(const QGraphicsItem* frame)
{
    return qgraphicsitem_cast<QGraphicsPixmapItem*>(frame->childItems().first());
}

void placeText(const QGraphicsRectItem* frame, QGraphicsTextItem* child, const QJsonObject& item)
{
    child->setPos(BlankWindow::alignChild(frame->rect(), child->boundingRect(),
                                          item["h_align"].toInt(), item["v_align"].toInt()));
}

int alignedOffset(double start, double frameExtent, double childExtent, int align)
{
    switch (align) {
    case HorizontalAlign::left:
        return truncated(start);
    case HorizontalAlign::right:
        return truncated(start + frameExtent - childExtent);
    case HorizontalAlign::center:
        return truncated(start + (frameExtent - childExtent) / 2.0);
    default:
        return 0;
    }
}

// The fields of a form; none, and a line in the log, if they can't be read.
QJsonArray formFields(const QString& formId)
{
    const JsonColumn form = readFormFields(formId);
    if (form.status == JsonColumn::Status::QueryFailed) {
        qDebug() << "Unable to execute select items query";
        qDebug() << form.error;
    }
    return form.object["fields"].toArray();
}

} // namespace

BlankWindow::BlankWindow(QWidget* parent)
    : QMainWindow(parent)
    , ui(std::make_unique<Ui::BlankWindow>())
    , scene(new QGraphicsScene(this))
    , view(new ZelvoraView(this))
    , resizeLimits(15.0, QSizeF(30.0, 30.0))
{
    ui->setupUi(this);
    applyBaseStyle(this);
    ui->splitter->setSizes({150, 400, 150});
    ui->splitter->setStretchFactor(1, 1);
    // Built anew for each selected frame, so that its rows are not measured.
    ui->propertiesWidget->verticalHeader()->setDefaultSectionSize(plainRowHeight);
    ui->blankTree->setColumnHidden(tagColumn, true);
    ui->blankTree->setItemDelegate(new CellTextDelegate(plainRowHeight, ui->blankTree));
    m_properties = new ItemPropertiesTable(ui->propertiesWidget, this);
    view->setScene(scene);
    ui->blankViewLayout->addWidget(view);

    connect(ui->actionAddText, &QAction::triggered, this, &BlankWindow::addTextItem);
    connect(ui->actionAddTable, &QAction::triggered, this, &BlankWindow::addTableItem);
    connect(ui->actionAddQR, &QAction::triggered, this, &BlankWindow::addQRItem);
    connect(ui->blankTree, &QTreeWidget::itemDoubleClicked, this, &BlankWindow::treeItemDblClick);
    connect(scene, &QGraphicsScene::selectionChanged, this, &BlankWindow::sceneSelectionChanged);
    connect(view, &ZelvoraView::endDrag, this, &BlankWindow::invalidateCurrentItem);
    connect(ui->propertiesWidget, &QTableWidget::cellChanged, this, &BlankWindow::itemValueChanged);
    connect(m_properties, &ItemPropertiesTable::propertyChanged, this,
            &BlankWindow::itemPropertyChanged);
    connect(m_properties, &ItemPropertiesTable::columnsRequested, this, &BlankWindow::tableEdit);
}

BlankWindow::~BlankWindow()
{
    // The scene drops its selection while it dies, when there is no table to fill any more.
    scene->disconnect(this);
}

void BlankWindow::loadBlank()
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT FONT, FONT_SIZE, BACKGROUND_IMG, PAPER_FORMAT, PAPER_ORIENTATION, "
                    "SIZE_WIDTH, SIZE_HEIGHT, CONTENT FROM blanks WHERE ID = " +
                    QString::number(blankId) + ";"))
    {
        logSqlFailure("Unable to execute select from blanks", query);
        m_isUnread = true;
        return;
    }
    if (!query.next()) {
        return;
    }
    buildPage(query);
    blankFont.setFamily(searchableFamily(query.value("FONT").toString()));
    setSize(blankFont, query.value("FONT_SIZE").toInt());
    blankFont = pageFont(blankFont);

    const QJsonArray items = parseJsonColumn(query.value("CONTENT"))["fields"].toArray();
    for (const QJsonValue& item : items) {
        addItemFromJson(item.toObject());
    }
    view->viewport()->update();
}

void BlankWindow::buildPage(const QSqlQuery& blank)
{
    const QSize backgroundSize(mmToPixels(blank.value("SIZE_WIDTH").toInt()),
                               mmToPixels(blank.value("SIZE_HEIGHT").toInt()));
    const QRectF page(QPointF(0.0, 0.0), pageSize(blank));
    scene->clear();
    scene->setSceneRect(page);
    scene->addRect(page, QPen(Qt::black), QBrush(Qt::white));
    const QString background =
        storedFilePath(appDirPath(), blank.value("BACKGROUND_IMG").toString());
    scene->addPixmap(loadPagePicture(background, backgroundSize));
}

void BlankWindow::loadBlankTree()
{
    ui->blankTree->clear();
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT FORM_ID FROM blanks WHERE ID = " + QString::number(blankId) + ";")) {
        logSqlFailure("Unable to execute select from blanks", query);
        return;
    }
    const QString formId = query.next() ? query.value("FORM_ID").toString() : QString();
    addOrganisationTags(ui->blankTree);
    addFixedFieldTags(ui->blankTree);
    addFormFieldTags(ui->blankTree, formFields(formId));
}

void BlankWindow::createItem(QRectF rect, const QString& value, int kind)
{
    // Ends an open editor in the properties table, which tool buttons don't take the focus from,
    // and lets the keyboard move the new item at once.
    view->setFocus();

    QGraphicsItem* child = nullptr;
    if (kind == BlankItemKind::qr) {
        child = newQrChild(value, newQrSide);
        rect.setSize(QSizeF(newQrSide + qrMarginLoaded, newQrSide + qrMarginLoaded));
    } else {
        QGraphicsTextItem* text = makePageText(value);
        if (rect.width() <= 1.0 && rect.height() <= 1.0) {
            rect.setSize(text->boundingRect().size().expandedTo(QSizeF(200.0, 50.0)));
        }
        text->setFont(blankFont);
        child = text;
    }
    QGraphicsRectItem* frame = addFrame(newItemObject(rect, value, kind), child);
    scene->clearSelection();
    frame->setSelected(true);
}

void BlankWindow::addItemFromJson(const QJsonObject& item)
{
    const QString value = item["value"].toString();
    if (isQr(item)) {
        const QSizeF size(item["size_w"].toDouble(), item["size_h"].toDouble());
        addFrame(item, newQrChild(value, qrSide(size, qrMarginLoaded)));
        return;
    }
    QGraphicsTextItem* text = makePageText(value);
    text->setFont(itemFont(item));
    addFrame(item, text);
}

QJsonObject BlankWindow::newItemObject(const QRectF& rect, const QString& value, int kind) const
{
    QJsonObject item{{"type", kind},
                     {"pos_x", rect.x()},
                     {"pos_y", rect.y()},
                     {"size_w", rect.width()},
                     {"size_h", rect.height()},
                     {"value", value},
                     {"font", blankFont.family()},
                     {"font_size", blankFont.pointSize()},
                     {"line_spacing", "1"},
                     {"h_align", HorizontalAlign::center},
                     {"v_align", VerticalAlign::center}};
    if (kind == BlankItemKind::table) {
        item["h_align"] = HorizontalAlign::left;
        item["v_align"] = VerticalAlign::top;
        item["columns_align"] = QJsonArray{HorizontalAlign::left};
        item["columns_width"] = QJsonArray{150};
        item["row_from"] = 1;
        item["row_to"] = 10;
    }
    return item;
}

// Puts a frame with its child at the item's place on the page.
QGraphicsRectItem* BlankWindow::addFrame(const QJsonObject& item, QGraphicsItem* child)
{
    const QRectF rect(0.0, 0.0, item["size_w"].toDouble(), item["size_h"].toDouble());
    auto* frame = new ResizableRectItem(rect, &resizeLimits);
    setItemObject(frame, item);
    frame->setPos(item["pos_x"].toDouble(), item["pos_y"].toDouble());
    frame->setFlag(QGraphicsItem::ItemIsSelectable);
    frame->setFlag(QGraphicsItem::ItemIsFocusable);
    frame->setFlag(QGraphicsItem::ItemIsMovable);
    scene->addItem(frame);
    child->setParentItem(frame);
    if (!isQr(item)) {
        placeText(frame, textChild(frame), item);
    }
    return frame;
}

bool BlankWindow::saveBlank()
{
    if (m_isUnread) {
        // The page is empty because the stored one could not be read, and must not replace it.
        QMessageBox::about(this, "Ошибка", "Ошибка сохранения бланка: SQL Error");
        return false;
    }
    QJsonArray fields;
    // kept: topmost first, though items are added in the order of the array: each save turns it
    // round.
    const QList<QGraphicsItem*> items = scene->items(Qt::DescendingOrder);
    for (QGraphicsItem* item : items) {
        QJsonObject object;
        if (collectItem(item, object)) {
            fields.append(object);
        }
    }
    const QJsonObject content{{"fields", fields}};

    QSqlQuery query;
    const bool isPrepared = query.prepare(
        "UPDATE blanks SET CONTENT = :CONTENT WHERE ID = " + QString::number(blankId) + ";");
    query.bindValue(":CONTENT", QJsonDocument(content).toJson(QJsonDocument::Compact));
    if (isPrepared && query.exec()) {
        return true;
    }
    logSqlError(query);
    // kept: Cyrillic throughout, unlike the message of BlankDlg.
    QMessageBox::about(this, "Ошибка", "Ошибка сохранения бланка: SQL Error");
    return false;
}

bool BlankWindow::collectItem(QGraphicsItem* item, QJsonObject& out) const
{
    const auto* frame = qgraphicsitem_cast<QGraphicsRectItem*>(item);
    if (!frame || frame->childItems().isEmpty()) {
        return false;
    }
    out = itemObject(frame);
    out["pos_x"] = frame->x();
    out["pos_y"] = frame->y();
    out["size_w"] = frame->rect().width();
    out["size_h"] = frame->rect().height();
    return true;
}

QPoint BlankWindow::alignChild(const QRectF& frame, const QRectF& child, int hAlign, int vAlign)
{
    return QPoint(alignedOffset(frame.left(), frame.width(), child.width(), hAlign),
                  alignedOffset(frame.top(), frame.height(), child.height(), vAlign));
}

void BlankWindow::addTextItem()
{
    createItem(newItemRect(), "#LNAME", BlankItemKind::text);
}

void BlankWindow::addQRItem()
{
    createItem(newItemRect(), "#LNAME #FNAME #MNAME", BlankItemKind::qr);
}

void BlankWindow::addTableItem()
{
    createItem(newItemRect(), "#TABLE", BlankItemKind::table);
}

void BlankWindow::treeItemDblClick(QTreeWidgetItem* leaf)
{
    const QVariant tag = leaf->data(tagColumn, Qt::UserRole);
    if (!tag.isValid()) {
        return;
    }
    const QStringList parts = tag.toString().split(',');
    const bool isTable = parts.size() > 1 && parts[1].toInt() == FieldType::table;
    createItem(newItemRect(), parts[0], isTable ? BlankItemKind::table : BlankItemKind::text);
}

void BlankWindow::sceneSelectionChanged()
{
    m_properties->clear();
    const QGraphicsRectItem* frame = selectedFrame();
    if (!frame) {
        return;
    }
    valueGuard = false;
    m_properties->show(itemObject(frame), geometryOf(frame));
    valueGuard = true;
}

void BlankWindow::on_buttonAccept_clicked()
{
    // kept: the window closes after a failed save too, once the user was told.
    saveBlank();
    close();
}

void BlankWindow::on_buttonReject_clicked()
{
    close();
}

void BlankWindow::itemPropertyChanged()
{
    QGraphicsRectItem* frame = selectedFrame();
    if (!frame) {
        return;
    }
    QJsonObject item = itemObject(frame);
    m_properties->readProperties(item);
    if (!isQr(item)) {
        QGraphicsTextItem* text = textChild(frame);
        text->setPlainText(item["value"].toString());
        text->setFont(itemFont(item));
        placeText(frame, text, item);
    }
    setItemObject(frame, item);
}

void BlankWindow::itemValueChanged(int row, int column)
{
    if (!valueGuard || !ItemPropertiesTable::isTypedCell(row, column)) {
        return;
    }
    QGraphicsRectItem* frame = selectedFrame();
    if (!frame) {
        return;
    }
    QJsonObject item = itemObject(frame);
    m_properties->readTypedCells(item);
    setItemObject(frame, item);

    frame->setPos(item["pos_x"].toInt(), item["pos_y"].toInt());
    frame->setRect(0.0, 0.0, item["size_w"].toInt(), item["size_h"].toInt());
    if (!isQr(item)) {
        textChild(frame)->setPlainText(item["value"].toString());
    }
    refreshChild(frame, item);
}

void BlankWindow::invalidateCurrentItem()
{
    QGraphicsRectItem* frame = selectedFrame();
    if (!frame) {
        return;
    }
    valueGuard = false;
    m_properties->showGeometry(geometryOf(frame));
    valueGuard = true;
    refreshChild(frame, itemObject(frame));
}

void BlankWindow::tableEdit()
{
    QGraphicsRectItem* frame = selectedFrame();
    if (!frame) {
        return;
    }
    const QJsonObject item = itemObject(frame);
    if (item["type"].toInt() != BlankItemKind::table) {
        return;
    }
    TableLayoutDialog dialog;
    dialog.setColumns(item["columns_width"].toArray(), item["columns_align"].toArray());
    if (item.contains("row_from")) {
        dialog.setRowFrom(item["row_from"].toInt());
    }
    if (item.contains("row_to")) {
        dialog.setRowTo(item["row_to"].toInt());
    }
    const bool isAccepted = dialog.exec() == QDialog::Accepted;

    // After a cancel the dialog holds what it was given, so that nothing changes; a key that the
    // item lacks means something else than the dialog's start value and must stay absent then.
    const QJsonObject layout{{"columns_width", dialog.columnsWidth()},
                             {"columns_align", dialog.columnsAlign()},
                             {"row_from", dialog.rowFrom()},
                             {"row_to", dialog.rowTo()}};
    QJsonObject changed = item;
    for (auto value = layout.begin(); value != layout.end(); ++value) {
        if (isAccepted || item.contains(value.key())) {
            changed[value.key()] = value.value();
        }
    }
    setItemObject(frame, changed);
}

QGraphicsRectItem* BlankWindow::selectedFrame() const
{
    const QList<QGraphicsItem*> selected = scene->selectedItems();
    if (selected.isEmpty() || selected.first()->childItems().isEmpty()) {
        return nullptr;
    }
    return qgraphicsitem_cast<QGraphicsRectItem*>(selected.first());
}

QRectF BlankWindow::newItemRect() const
{
    auto* random = QRandomGenerator::global();
    const int x = 10 + random->bounded(50);
    const int y = 10 + random->bounded(50);
    return QRectF(view->mapToScene(x, y), QSizeF());
}

QFont BlankWindow::itemFont(const QJsonObject& item) const
{
    QFont font = blankFont;
    const QString family = item["font"].toString();
    if (!family.isEmpty()) {
        font.setFamily(searchableFamily(family));
    }
    setSize(font, item["font_size"].toInt());
    return font;
}

// Follows a change of the frame or of the item's value.
void BlankWindow::refreshChild(QGraphicsRectItem* frame, const QJsonObject& item)
{
    if (!isQr(item)) {
        placeText(frame, textChild(frame), item);
        return;
    }
    showQr(qrChild(frame), item["value"].toString(), qrSide(frame->rect().size(), qrMarginChanged));
    view->viewport()->update();
}
