#include "documents/DocumentContent.h"

#include <QComboBox>
#include <QDate>
#include <QDebug>
#include <QJsonArray>
#include <QSpinBox>
#include <QSqlQuery>
#include <QTableWidget>

#include <limits>

#include "app/AppStyle.h"
#include "app/widgets/RowFitPause.h"
#include "app/widgets/WheelGuard.h"
#include "documents/CellDateEdit.h"
#include "documents/CellListEdit.h"
#include "documents/TableMemoDialog.h"
#include "documents/TextMemoDialog.h"
#include "documents/ZelvoraTableButton.h"
#include "documents/ZelvoraTextButton.h"
#include "forms/FormDefinitions.h"
#include "store/JsonColumn.h"

namespace {

constexpr int captionColumn = 0;
constexpr int valueColumn = 1;
constexpr int captionWidth = 224; // pixels
constexpr int rowHeight = 34;     // pixels; an editor of the base style is 30 high

const char* const borderless = "border: none";
const char* const editCaption = "Изменить";

// First column of the first row; invalid if there is no row.
QVariant firstValue(QSqlQuery& query)
{
    return query.first() ? query.value(0) : QVariant();
}

// False if the statement fails; a list that is gone gives no items.
bool readItems(int listId, QStringList* items)
{
    QSqlQuery query;
    if (!query.exec("SELECT LIST_ITEMS FROM lists WHERE ID = " + QString::number(listId) + " ;")) {
        qDebug() << "Unable to select from lists query";
        qDebug() << query.lastQuery();
        return false;
    }
    *items = listItemStrings(firstValue(query));
    return true;
}

// The editors are children of the viewport from the start: a widget that changes its parent gets
// its style a second time.
void addListEditor(QTableWidget* table, int row, const QJsonObject& entry)
{
    const int listId = entry["list"].toInt();
    const QString value = entry["value"].toString();
    QStringList items;
    if (!readItems(listId, &items)) {
        auto* item = new QTableWidgetItem(value);
        item->setFlags(item->flags() & ~Qt::ItemIsEditable);
        table->setItem(row, valueColumn, item);
        return;
    }
    auto* combo = new CellListEdit(table->viewport());
    combo->setStyleSheet(borderless);
    combo->insertItems(0, items);
    // While the combo is not editable, only a text among the items becomes current.
    combo->setCurrentIndex(-1);
    combo->setCurrentText(value);
    combo->allowTyping();
    WheelGuard::install(combo);

    auto* item = new QTableWidgetItem;
    item->setData(Qt::UserRole, listId);
    table->setItem(row, valueColumn, item);
    table->setCellWidget(row, valueColumn, combo);
}

void addCounterEditor(QTableWidget* table, int row, const QJsonObject& entry)
{
    auto* spin = new QSpinBox(table->viewport());
    spin->setStyleSheet(borderless);
    spin->setRange(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    spin->setValue(entry["value"].toInt());
    WheelGuard::install(spin);
    table->setCellWidget(row, valueColumn, spin);
}

void addDateEditor(QTableWidget* table, int row, const QJsonObject& entry)
{
    const QString format = entry["format"].toString();
    auto* edit = new CellDateEdit(table->viewport());
    edit->setStyleSheet(borderless);
    edit->setDisplayFormat(format);
    edit->setDate(QDate::fromString(entry["value"].toString(), format));
    WheelGuard::install(edit);
    table->setCellWidget(row, valueColumn, edit);
}

void addTableButton(QTableWidget* table, int row, const QJsonObject& entry,
                    const ValueButtonSlots& buttonSlots)
{
    auto* button = new ZelvoraTableButton(table->viewport());
    button->setText(editCaption);
    button->columns = entry["columns"].toArray();
    button->value = entry["value"].toArray();
    buttonSlots.connectTable(button);
    table->setCellWidget(row, valueColumn, button);
}

void addTextButton(QTableWidget* table, int row, const QJsonObject& entry,
                   const ValueButtonSlots& buttonSlots)
{
    auto* button = new ZelvoraTextButton(table->viewport());
    button->setText(editCaption);
    button->setValue(entry["value"].toString());
    buttonSlots.connectText(button);
    table->setCellWidget(row, valueColumn, button);
}

void addEditor(QTableWidget* table, int row, const QJsonObject& entry,
               const ValueButtonSlots& buttonSlots)
{
    switch (entry["type"].toInt()) {
    case FieldType::list:
        addListEditor(table, row, entry);
        break;
    case FieldType::counter:
        addCounterEditor(table, row, entry);
        break;
    case FieldType::date:
        addDateEditor(table, row, entry);
        break;
    case FieldType::table:
        addTableButton(table, row, entry, buttonSlots);
        break;
    case FieldType::text:
        addTextButton(table, row, entry, buttonSlots);
        break;
    default:
        table->setItem(row, valueColumn, new QTableWidgetItem(entry["value"].toString()));
        break;
    }
}

void addCaption(QTableWidget* table, int row, const QString& tag, const QJsonObject& entry)
{
    auto* item = new QTableWidgetItem(entry["name"].toString());
    item->setData(Qt::UserRole, tag);
    item->setFlags(item->flags() & ~Qt::ItemIsEditable);
    table->setItem(row, captionColumn, item);
}

void readList(QJsonObject* entry, const QTableWidgetItem* item, const QComboBox* combo)
{
    (*entry)["list"] = item->data(Qt::UserRole).toInt();
    (*entry)["value"] = combo->currentText();
}

void readDate(QJsonObject* entry, const QDateEdit* edit)
{
    (*entry)["format"] = edit->displayFormat();
    (*entry)["value"] = edit->date().toString(edit->displayFormat());
}

// Takes the value of one row into its entry. Without the editor of its type an entry keeps what it
// has: that of a list which could not be read has none.
void readEditor(QJsonObject* entry, const QTableWidgetItem* item, const QWidget* editor)
{
    switch ((*entry)["type"].toInt()) {
    case FieldType::list:
        if (const auto* combo = qobject_cast<const QComboBox*>(editor)) {
            readList(entry, item, combo);
        }
        break;
    case FieldType::counter:
        if (const auto* spin = qobject_cast<const QSpinBox*>(editor)) {
            (*entry)["value"] = spin->value();
        }
        break;
    case FieldType::date:
        if (const auto* edit = qobject_cast<const QDateEdit*>(editor)) {
            readDate(entry, edit);
        }
        break;
    case FieldType::table:
        if (const auto* button = qobject_cast<const ZelvoraTableButton*>(editor)) {
            (*entry)["value"] = button->value;
        }
        break;
    case FieldType::text:
        if (const auto* button = qobject_cast<const ZelvoraTextButton*>(editor)) {
            (*entry)["value"] = button->value();
        }
        break;
    default:
        if (item && !editor) {
            (*entry)["value"] = item->text();
        }
        break;
    }
}

} // namespace

QStringList listItemStrings(const QVariant& listItems)
{
    QStringList strings;
    const QJsonArray items = parseJsonColumn(listItems)["items"].toArray();
    for (const QJsonValue& item : items) {
        strings << item.toString();
    }
    return strings;
}

void fillDocTypes(QComboBox* combo)
{
    for (auto type = docTypeNames.cbegin(); type != docTypeNames.cend(); ++type) {
        combo->addItem(type.value(), type.key());
    }
}

QJsonObject contentEntry(const QJsonObject& field)
{
    QJsonObject entry;
    const int type = field["type"].toInt();
    entry["name"] = field["name"];
    entry["type"] = type;
    switch (type) {
    case FieldType::list:
        entry["list"] = field["list"];
        break;
    case FieldType::date:
        entry["format"] = field["format"];
        entry["value"] = QDate::currentDate().toString(field["format"].toString());
        break;
    case FieldType::table:
        entry["columns"] = field["content"];
        break;
    default:
        entry["value"] = QString();
        break;
    }
    return entry;
}

bool buildContent(const QVariant& formId, QJsonObject* content)
{
    QSqlQuery query;
    if (!query.exec("SELECT FIELDS, FORM_NAME FROM forms WHERE ID = " + formId.toString() + " ;")) {
        qDebug() << "Unable to select from forms query";
        qDebug() << query.lastQuery();
        return false;
    }
    bool isObject = false;
    const QJsonObject form = parseJsonColumn(firstValue(query), &isObject);
    if (!isObject) {
        qDebug() << "Not an object!";
        return false;
    }
    QJsonObject fresh;
    const QJsonArray fields = form["fields"].toArray();
    for (const QJsonValue& value : fields) {
        const QJsonObject field = value.toObject();
        // kept: by the tag, so that the fields of a document stand in the order of their tags.
        fresh[field["tag"].toString()] = contentEntry(field);
    }
    *content = fresh;
    return true;
}

void setUpContentTable(QTableWidget* table)
{
    table->setColumnWidth(captionColumn, captionWidth);
    fitRows(table, rowHeight);
}

void loadContentTable(QTableWidget* table, const QJsonObject& content,
                      const ValueButtonSlots& buttonSlots)
{
    const RowFitPause pause(table);
    table->setRowCount(0);
    table->setRowCount(content.size());
    int row = 0;
    for (auto it = content.begin(); it != content.end(); ++it, ++row) {
        const QJsonObject entry = it.value().toObject();
        addCaption(table, row, it.key(), entry);
        addEditor(table, row, entry, buttonSlots);
    }
}

void saveContentTable(QJsonObject* content, const QTableWidget* table)
{
    for (int row = 0; row < table->rowCount(); ++row) {
        const QString tag = table->item(row, captionColumn)->data(Qt::UserRole).toString();
        const auto found = content->find(tag);
        if (found == content->end()) {
            continue;
        }
        QJsonObject entry = found.value().toObject();
        readEditor(&entry, table->item(row, valueColumn), table->cellWidget(row, valueColumn));
        found.value() = entry;
    }
}

void runTextEditor(QObject* button, QWidget* parent, bool readOnly)
{
    if (!button) {
        return;
    }
    TextMemoDialog dialog(parent);
    dialog.setText(button->property("text").toString());
    dialog.setReadOnly(readOnly);
    if (dialog.exec() == QDialog::Accepted) {
        button->setProperty("text", dialog.text());
    }
}

void runTableEditor(ZelvoraTableButton* button, QWidget* parent, bool readOnly)
{
    if (!button) {
        return;
    }
    const QJsonArray columns = button->columns;
    const QJsonArray rows = button->value;
    TableMemoDialog dialog(parent);
    dialog.setData(columns, rows);
    dialog.setReadOnly(readOnly);
    if (dialog.exec() == QDialog::Accepted && !readOnly) {
        button->value = dialog.tableValue();
    }
}
