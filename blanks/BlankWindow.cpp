#include "blanks/BlankWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDebug>
#include <QFontComboBox>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMessageBox>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSpinBox>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>
#include <limits>
#include <utility>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/WheelGuard.h"
#include "blanks/BlankRecord.h"
#include "blanks/FontFamily.h"
#include "blanks/ResizableRectItem.h"
#include "blanks/TableLayoutDialog.h"
#include "blanks/ZelvoraView.h"
#include "forms/FormDefinitions.h"
#include "render/QrPixmap.h"
#include "ui_BlankWindow.h"

namespace {

// Keys of the rows of the properties table.
namespace PropertyKey {
constexpr int text = 0;
constexpr int x = 1;
constexpr int y = 2;
constexpr int width = 3;
constexpr int height = 4;
constexpr int hAlign = 5;
constexpr int vAlign = 6;
constexpr int font = 7;
constexpr int fontSize = 8;
constexpr int zStroke = 9;
constexpr int columns = 10;
constexpr int lineSpacing = 11;
} // namespace PropertyKey

// The rows that are plain table items stand first, each in the row of its key.
constexpr int textRowCount = 5;
constexpr int valueColumn = 1;
constexpr int tagColumn = 1;

// What a QR picture's side is less than its frame's: as loaded, and after a change.
constexpr int qrMarginLoaded = 2;
constexpr int qrMarginChanged = 1;
constexpr int newQrSide = 96;
const QPointF qrPosition(1.0, 1.0);

struct Tag
{
    const char* caption;
    const char* tag;
};

const Tag organisationTags[] = {
    {"Название огранизации ВП", "#ORG_NAME_1"},
    {"Название организации ПП", "#ORG_NAME_2"},
    {"Регион (область)", "#ORG_REGION"},
    {"Населённый пункт", "#ORG_LOCALITY"},
    {"Полное имя директора", "#ORG_DIRECTOR"},
    {"Сокращенное имя директора", "#ORG_DIRECTOR_SHORT"},
};

const Tag fixedFieldTags[] = {
    {"Фамилия", "#LNAME"},          {"Имя", "#FNAME"},
    {"Отчество", "#MNAME"},         {"Дата рождения", "#BIRTH_DATE"},
    {"Дата выдачи", "#ISSUE_DATE"}, {"Дата изменения", "#EDIT_DATE"},
    {"Серия бланка", "#BLANK_SER"}, {"Номер бланка", "#BLANK_NO"},
    {"Дубликат", "#DUPLICATE"},
};

int truncated(double value)
{
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::max(lowest, std::min(value, highest)));
}

bool isQr(const QJsonObject& item)
{
    return item["type"].toInt() == BlankItemKind::qr;
}

QString jsonText(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
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

QPixmap scaledBackground(const QString& file, const QSize& size)
{
    QPixmap picture;
    if (!picture.load(appFilePath(file))) {
        return QPixmap();
    }
    return picture.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

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
    return truncated(std::min(frame.width(), frame.height())) - margin;
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

QTreeWidgetItem* addGroup(QTreeWidget* tree, const QString& caption)
{
    return new QTreeWidgetItem(tree, {caption});
}

void addLeaf(QTreeWidgetItem* group, const QString& caption, const QString& tag)
{
    auto* leaf = new QTreeWidgetItem(group, {caption});
    leaf->setData(tagColumn, Qt::UserRole, tag);
}

template <std::size_t count>
void addLeaves(QTreeWidgetItem* group, const Tag (&tags)[count])
{
    for (const Tag& tag : tags) {
        addLeaf(group, tag.caption, tag.tag);
    }
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
    ui->blankTree->setColumnHidden(tagColumn, true);
    view->setScene(scene);
    ui->blankViewLayout->addWidget(view);

    connect(ui->actionAddText, &QAction::triggered, this, &BlankWindow::addTextItem);
    connect(ui->actionAddTable, &QAction::triggered, this, &BlankWindow::addTableItem);
    connect(ui->actionAddQR, &QAction::triggered, this, &BlankWindow::addQRItem);
    connect(ui->blankTree, &QTreeWidget::itemDoubleClicked, this, &BlankWindow::treeItemDblClick);
    connect(scene, &QGraphicsScene::selectionChanged, this, &BlankWindow::sceneSelectionChanged);
    connect(view, &ZelvoraView::endDrag, this, &BlankWindow::invalidateCurrentItem);
    connect(ui->propertiesWidget, &QTableWidget::cellChanged, this, &BlankWindow::itemValueChanged);
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
        qDebug() << "Unable to execute select from blanks";
        qDebug() << query.lastError().text();
        return;
    }
    if (!query.next()) {
        return;
    }
    buildPage(query);
    blankFont.setFamily(query.value("FONT").toString());
    setSize(blankFont, query.value("FONT_SIZE").toInt());

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
    scene->addPixmap(scaledBackground(blank.value("BACKGROUND_IMG").toString(), backgroundSize));
}

void BlankWindow::loadBlankTree()
{
    ui->blankTree->clear();
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT FORM_ID FROM blanks WHERE ID = " + QString::number(blankId) + ";")) {
        qDebug() << "Unable to execute select from blanks";
        qDebug() << query.lastError().text();
        return;
    }
    const QString formId = query.next() ? query.value("FORM_ID").toString() : QString();
    addLeaves(addGroup(ui->blankTree, "Организация"), organisationTags);
    addLeaves(addGroup(ui->blankTree, "Основные поля"), fixedFieldTags);
    addFormFields(addGroup(ui->blankTree, "Дополнительные поля"), formId);
}

void BlankWindow::addFormFields(QTreeWidgetItem* group, const QString& formId)
{
    const JsonColumn form = readFormFields(formId);
    if (form.status == JsonColumn::Status::QueryFailed) {
        qDebug() << "Unable to execute select items query";
        qDebug() << form.error;
        return;
    }
    const QJsonArray fields = form.object["fields"].toArray();
    for (const QJsonValue& field : fields) {
        addLeaf(group, field["name"].toString(),
                field["tag"].toString() + "," + QString::number(field["type"].toInt()));
    }
}

void BlankWindow::createItem(QRectF rect, const QString& value, int kind)
{
    // Ends an open editor in the properties table, which tool buttons don't take the focus from,
    // and lets the keyboard move the new item at once.
    view->setFocus();

    QJsonObject item{{"v_align", VerticalAlign::center}, {"h_align", HorizontalAlign::center}};
    if (kind == BlankItemKind::table) {
        item["columns_align"] = QJsonArray{HorizontalAlign::left};
        item["columns_width"] = QJsonArray{150};
        item["row_from"] = 1;
        item["row_to"] = 10;
        item["v_align"] = VerticalAlign::top;
        item["h_align"] = HorizontalAlign::left;
    }

    QGraphicsItem* child = nullptr;
    if (kind == BlankItemKind::qr) {
        auto* picture = new QGraphicsPixmapItem;
        showQr(picture, value, newQrSide);
        picture->setPos(qrPosition);
        child = picture;
        rect.setSize(QSizeF(newQrSide + qrMarginLoaded, newQrSide + qrMarginLoaded));
    } else {
        auto* text = new QGraphicsTextItem(value);
        if (rect.width() <= 1.0 && rect.height() <= 1.0) {
            rect.setSize(text->boundingRect().size().expandedTo(QSizeF(200.0, 50.0)));
        }
        text->setFont(blankFont);
        child = text;
    }

    item["type"] = kind;
    item["pos_x"] = rect.x();
    item["pos_y"] = rect.y();
    item["size_w"] = rect.width();
    item["size_h"] = rect.height();
    item["value"] = value;
    item["font"] = blankFont.family();
    item["font_size"] = blankFont.pointSize();
    item["line_spacing"] = "1";

    QGraphicsRectItem* frame =
        addFrame(QRectF(QPointF(0.0, 0.0), rect.size()), rect.topLeft(), item);
    child->setParentItem(frame);
    if (kind != BlankItemKind::qr) {
        placeText(frame, textChild(frame), item);
    }
    scene->clearSelection();
    frame->setSelected(true);
}

void BlankWindow::addItemFromJson(const QJsonObject& item)
{
    const QRectF rect(0.0, 0.0, item["size_w"].toDouble(), item["size_h"].toDouble());
    QGraphicsRectItem* frame =
        addFrame(rect, QPointF(item["pos_x"].toDouble(), item["pos_y"].toDouble()), item);
    const QString value = item["value"].toString();
    if (isQr(item)) {
        auto* picture = new QGraphicsPixmapItem(frame);
        showQr(picture, value, qrSide(rect.size(), qrMarginLoaded));
        picture->setPos(qrPosition);
        return;
    }
    auto* text = new QGraphicsTextItem(value, frame);
    text->setFont(itemFont(item));
    placeText(frame, text, item);
}

QGraphicsRectItem* BlankWindow::addFrame(const QRectF& rect, const QPointF& position,
                                         const QJsonObject& item)
{
    auto* frame = new ResizableRectItem(rect, &resizeLimits);
    setItemObject(frame, item);
    frame->setPos(position);
    frame->setFlag(QGraphicsItem::ItemIsSelectable);
    frame->setFlag(QGraphicsItem::ItemIsFocusable);
    frame->setFlag(QGraphicsItem::ItemIsMovable);
    scene->addItem(frame);
    return frame;
}

bool BlankWindow::saveBlank()
{
    QJsonArray fields;
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
    qDebug().noquote() << "sqlError: " + query.lastError().text();
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
    ui->propertiesWidget->setRowCount(0);
    const QGraphicsRectItem* frame = selectedFrame();
    if (!frame) {
        return;
    }
    valueGuard = false;
    buildPropertyRows(frame, itemObject(frame));
    valueGuard = true;
}

void BlankWindow::on_buttonAccept_clicked()
{
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
    for (int row = 0; row < ui->propertiesWidget->rowCount(); ++row) {
        readProperty(row, item);
    }
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
    if (row >= textRowCount || column != valueColumn || !valueGuard) {
        return;
    }
    QGraphicsRectItem* frame = selectedFrame();
    if (!frame) {
        return;
    }
    QJsonObject item = itemObject(frame);
    item["value"] = propertyText(PropertyKey::text);
    item["pos_x"] = propertyText(PropertyKey::x).toInt();
    item["pos_y"] = propertyText(PropertyKey::y).toInt();
    item["size_w"] = propertyText(PropertyKey::width).toInt();
    item["size_h"] = propertyText(PropertyKey::height).toInt();
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
    const QRectF rect = frame->rect();
    const std::pair<int, double> values[] = {{PropertyKey::x, frame->x()},
                                             {PropertyKey::y, frame->y()},
                                             {PropertyKey::width, rect.width()},
                                             {PropertyKey::height, rect.height()}};
    valueGuard = false;
    for (const auto& [row, value] : values) {
        ui->propertiesWidget->item(row, valueColumn)->setText(QString::number(truncated(value)));
    }
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
        font.setFamily(family);
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

void BlankWindow::buildPropertyRows(const QGraphicsRectItem* frame, const QJsonObject& item)
{
    const QRectF rect = frame->rect();
    addTextRow("Текст", PropertyKey::text, item["value"].toString());
    addTextRow("X", PropertyKey::x, QString::number(truncated(frame->x())));
    addTextRow("Y", PropertyKey::y, QString::number(truncated(frame->y())));
    addTextRow("Ширина", PropertyKey::width, QString::number(truncated(rect.width())));
    addTextRow("Высота", PropertyKey::height, QString::number(truncated(rect.height())));
    addAlignRow("Выравнивание X", PropertyKey::hAlign, {"Слева", "Справа", "По центру"},
                item["h_align"].toInt());
    addAlignRow("Выравнивание Y", PropertyKey::vAlign, {"Сверху", "Снизу", "По центру"},
                item["v_align"].toInt());
    addFontRow(item["font"].toString());
    addFontSizeRow(item["font_size"].toInt());
    addLineSpacingRow(item["line_spacing"].toString("1,0"));
    addZStrokeRow(item["f_cut"].toInt() != 0);
    if (item["type"].toInt() == BlankItemKind::table) {
        addColumnsRow();
    }
}

void BlankWindow::addPropertyRow(const QString& caption, int key)
{
    const int row = ui->propertiesWidget->rowCount();
    ui->propertiesWidget->insertRow(row);
    auto* captionItem = new QTableWidgetItem(caption);
    captionItem->setFlags(captionItem->flags() & ~Qt::ItemIsEditable);
    captionItem->setData(Qt::UserRole, key);
    ui->propertiesWidget->setItem(row, 0, captionItem);
}

void BlankWindow::addTextRow(const QString& caption, int key, const QString& text)
{
    addPropertyRow(caption, key);
    ui->propertiesWidget->setItem(ui->propertiesWidget->rowCount() - 1, valueColumn,
                                  new QTableWidgetItem(text));
}

void BlankWindow::addEditorRow(const QString& caption, int key, QWidget* editor)
{
    addPropertyRow(caption, key);
    editor->setStyleSheet("border: none");
    WheelGuard::install(editor);
    ui->propertiesWidget->setCellWidget(ui->propertiesWidget->rowCount() - 1, valueColumn, editor);
}

void BlankWindow::addAlignRow(const QString& caption, int key, const QStringList& entries,
                              int align)
{
    auto* combo = new QComboBox;
    combo->addItems(entries);
    combo->setCurrentIndex(align);
    connectCombo(combo);
    addEditorRow(caption, key, combo);
}

void BlankWindow::addFontRow(const QString& family)
{
    auto* combo = new QFontComboBox;
    showFontFamily(combo, family);
    connectCombo(combo);
    addEditorRow("Шрифт", PropertyKey::font, combo);
}

void BlankWindow::addFontSizeRow(int pointSize)
{
    constexpr int largestSize = 999;
    auto* spin = new QSpinBox;
    spin->setRange(0, largestSize);
    spin->setValue(pointSize);
    connect(spin, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &BlankWindow::itemPropertyChanged);
    addEditorRow("Размер шрифта", PropertyKey::fontSize, spin);
}

void BlankWindow::addLineSpacingRow(const QString& spacing)
{
    auto* combo = new QComboBox;
    combo->addItems({"1,0", "1,15", "1,5", "2,0"});
    combo->setCurrentText(spacing);
    connectCombo(combo);
    addEditorRow("Межстрочный интервал", PropertyKey::lineSpacing, combo);
}

void BlankWindow::addZStrokeRow(bool isCut)
{
    auto* check = new QCheckBox;
    check->setChecked(isCut);
    connect(check, &QCheckBox::stateChanged, this, &BlankWindow::itemPropertyChanged);
    addEditorRow("Росчерк", PropertyKey::zStroke, check);
}

void BlankWindow::addColumnsRow()
{
    auto* button = new QPushButton("Изменить");
    connect(button, &QPushButton::clicked, this, &BlankWindow::tableEdit);
    addEditorRow("Столбцы", PropertyKey::columns, button);
}

void BlankWindow::connectCombo(QComboBox* combo)
{
    connect(combo, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &BlankWindow::itemPropertyChanged);
}

QString BlankWindow::propertyText(int row) const
{
    return ui->propertiesWidget->item(row, valueColumn)->text();
}

// Copies what a row of the properties table shows into the item object. Position and size have
// their own slot, and a QR item's text goes with them.
void BlankWindow::readProperty(int row, QJsonObject& item) const
{
    QWidget* editor = ui->propertiesWidget->cellWidget(row, valueColumn);
    const auto* combo = qobject_cast<QComboBox*>(editor);
    switch (ui->propertiesWidget->item(row, 0)->data(Qt::UserRole).toInt()) {
    case PropertyKey::text:
        if (!isQr(item)) {
            item["value"] = propertyText(row);
        }
        break;
    case PropertyKey::hAlign:
        item["h_align"] = combo->currentIndex();
        break;
    case PropertyKey::vAlign:
        item["v_align"] = combo->currentIndex();
        break;
    case PropertyKey::font:
        item["font"] = combo->currentText();
        break;
    case PropertyKey::fontSize:
        item["font_size"] = qobject_cast<QSpinBox*>(editor)->value();
        break;
    case PropertyKey::zStroke:
        item["f_cut"] = qobject_cast<QCheckBox*>(editor)->isChecked() ? 1 : 0;
        break;
    case PropertyKey::lineSpacing:
        item["line_spacing"] = combo->currentText();
        break;
    default:
        break;
    }
}
