#include "forms/FormsDlg.h"

#include <QDebug>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSqlQuery>
#include <QTableWidget>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/widgets/CellKeys.h"
#include "app/widgets/ClickGuard.h"
#include "app/widgets/CurrentRowGuard.h"
#include "app/widgets/RowFitPause.h"
#include "app/widgets/TableItems.h"
#include "forms/FieldEditDlg.h"
#include "forms/FormDefinitions.h"
#include "forms/FormEditDlg.h"
#include "store/SqlLog.h"
#include "ui_FormsDlg.h"

namespace {

/// Makes a row current, as far as it exists. Does nothing otherwise, so that the selection that
/// the table itself keeps after a removal stands.
void selectRow(QTableWidget* table, int row)
{
    if (row >= 0 && row < table->rowCount()) {
        table->setCurrentCell(row, 0);
    }
}

using BoundValues = QVector<QPair<QString, QVariant>>;

/// Runs a statement with its bound values; logs a failure.
bool execute(QSqlQuery& query, const QString& statement, const BoundValues& values,
             const char* failure)
{
    bool done = query.prepare(statement);
    for (const auto& value : values) {
        query.bindValue(value.first, value.second);
    }
    done = done && query.exec();
    if (!done) {
        logSqlFailure(failure, query);
    }
    return done;
}

} // namespace

FormsDlg::FormsDlg(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::FormsDlg>())
{
    ui->setupUi(this);
    applyBaseStyle(this);
    ui->formsWidget->setColumnWidth(0, 128);
    ui->fieldsWidget->setColumnWidth(0, 64);
    ui->fieldsWidget->setColumnWidth(1, 64);

    fitRows(ui->formsWidget);
    fitRows(ui->fieldsWidget);
    // Lists may be long, and all items are shown anew after each change: one line each.
    for (QTableWidget* table : {ui->listsWidget, ui->itemsWidget}) {
        table->verticalHeader()->setDefaultSectionSize(plainRowHeight);
        CellKeys::install(table);
    }
    for (QPushButton* button : {ui->fldDelBtn, ui->listItemDelBtn}) {
        ClickGuard::install(button);
    }

    for (QTableWidget* table :
         {ui->formsWidget, ui->fieldsWidget, ui->listsWidget, ui->itemsWidget}) {
        CurrentRowGuard::install(table);
    }

    connect(ui->addFrmBtn, &QPushButton::clicked, this, &FormsDlg::addForm);
    connect(ui->delFrmBtn, &QPushButton::clicked, this, &FormsDlg::deleteForm);
    connect(ui->formsWidget, &QTableWidget::doubleClicked, this, &FormsDlg::editForm);
    connect(ui->formsWidget, &QTableWidget::itemSelectionChanged, this, &FormsDlg::selChange);
    connect(ui->fldAddBtn, &QPushButton::clicked, this, &FormsDlg::addField);
    connect(ui->fldDelBtn, &QPushButton::clicked, this, &FormsDlg::deleteField);
    connect(ui->fieldsWidget, &QTableWidget::doubleClicked, this, &FormsDlg::editField);
    connect(ui->addListBtn, &QPushButton::clicked, this, &FormsDlg::addList);
    connect(ui->delListBtn, &QPushButton::clicked, this, &FormsDlg::deleteList);
    connect(ui->listsWidget, &QTableWidget::itemSelectionChanged, this, &FormsDlg::listSelChange);
    connect(ui->listsWidget, &QTableWidget::itemChanged, this, &FormsDlg::editList);
    connect(ui->listItemAddBtn, &QPushButton::clicked, this, &FormsDlg::addItem);
    connect(ui->listItemDelBtn, &QPushButton::clicked, this, &FormsDlg::deleteItem);
    connect(ui->itemsWidget, &QTableWidget::itemChanged, this, &FormsDlg::editItem);
    connect(ui->buttonAccept, &QPushButton::clicked, this, &FormsDlg::accept);
    connect(ui->buttonReject, &QPushButton::clicked, this, &FormsDlg::reject);

    fillForms();
    fillLists();
}

FormsDlg::~FormsDlg() = default;

void FormsDlg::addForm()
{
    FormEditDlg dialog(this);
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    QSqlQuery query;
    if (!execute(
            query,
            "INSERT INTO forms (FORM_NAME, FORM_FULLNAME, FIELDS) VALUES (:Type, :Name, :Fields)",
            {{":Type", dialog.formName()},
             {":Name", dialog.fullName()},
             {":Fields", emptyFormFields}},
            "error insert into forms "))
    {
        return;
    }
    const int row = ui->formsWidget->rowCount();
    ui->formsWidget->insertRow(row);
    ui->formsWidget->setItem(row, 0, makeTableItem(dialog.formName(), query.lastInsertId()));
    ui->formsWidget->setItem(row, 1, makeTableItem(dialog.fullName()));
    ui->formsWidget->scrollToBottom();
}

void FormsDlg::deleteForm()
{
    const QTableWidgetItem* item = currentRowItem(ui->formsWidget);
    if (!item || !askYesNo("Удалить форму?", this)) {
        return;
    }
    QSqlQuery query;
    if (!execute(query, "DELETE FROM forms WHERE ID = :Id", {{":Id", item->data(Qt::UserRole)}},
                 "error delete from forms "))
    {
        return;
    }
    const int row = item->row();
    ui->formsWidget->removeRow(row);
    selectRow(ui->formsWidget, row);
}

void FormsDlg::editForm()
{
    QTableWidgetItem* type = currentRowItem(ui->formsWidget);
    if (!type) {
        return;
    }
    QTableWidgetItem* name = ui->formsWidget->item(type->row(), 1);
    FormEditDlg dialog(this);
    dialog.setFormName(type->text());
    dialog.setFullName(name->text());
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    QSqlQuery query;
    if (!execute(
            query, "UPDATE forms SET FORM_NAME = :Type , FORM_FULLNAME = :Name WHERE ID = :Id",
            {{":Type", dialog.formName()}, {":Name", dialog.fullName()}, {":Id", m_currentFormId}},
            "error update into forms "))
    {
        return;
    }
    type->setText(dialog.formName());
    name->setText(dialog.fullName());
}

void FormsDlg::selChange()
{
    const QTableWidgetItem* item = currentRowItem(ui->formsWidget);
    if (!item) {
        return;
    }
    m_currentFormId = item->data(Qt::UserRole);
    const JsonColumn form = readFormFields(m_currentFormId);
    if (form.status == JsonColumn::Status::QueryFailed) {
        qDebug() << "Unable to execute select query";
        qDebug() << form.error;
        return;
    }
    drawFields(form.object["fields"].toArray());
}

void FormsDlg::addField()
{
    FieldEditDlg dialog(this);
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    const bool added = changeFields(
        {"Unable to execute select fields query", "Not an object!", "error update forms fields"},
        [&](QJsonArray& fields) {
            fields.append(dialog.field());
            return true;
        });
    if (added) {
        selectRow(ui->fieldsWidget, ui->fieldsWidget->rowCount() - 1);
    }
}

void FormsDlg::editField()
{
    const QTableWidgetItem* item = currentRowItem(ui->fieldsWidget);
    if (!item) {
        return;
    }
    const int position = item->data(Qt::UserRole).toInt();
    const bool changed = changeFields(
        {"Unable to execute select fields query", "Not an object!", "error update forms fields"},
        [&](QJsonArray& fields) {
            FieldEditDlg dialog(this);
            dialog.setField(fields[position].toObject());
            return dialog.exec() == QDialog::Accepted &&
                   replaceElement(fields, position, dialog.field());
        });
    if (changed) {
        selectRow(ui->fieldsWidget, position);
    }
}

void FormsDlg::deleteField()
{
    const QTableWidgetItem* item = currentRowItem(ui->fieldsWidget);
    if (!item) {
        return;
    }
    const int position = item->data(Qt::UserRole).toInt();
    const bool removed = changeFields(
        {"Unable to execute select fields query", "not an object!", "error update forms fields"},
        [&](QJsonArray& fields) { return removeElement(fields, position); });
    if (removed) {
        selectRow(ui->fieldsWidget, position);
    }
}

void FormsDlg::addList()
{
    const QString name = "Новый список";
    QSqlQuery query;
    if (!execute(query, "INSERT INTO lists (LIST_NAME, LIST_ITEMS) VALUES (:Name, :Items)",
                 {{":Name", name}, {":Items", emptyListItems}}, "error insert into lists"))
    {
        return;
    }
    const int row = ui->listsWidget->rowCount();
    ui->listsWidget->insertRow(row);
    ui->listsWidget->setItem(row, 0, makeTableItem(name, query.lastInsertId()));
    ui->listsWidget->scrollToBottom();
}

void FormsDlg::deleteList()
{
    const QTableWidgetItem* item = currentRowItem(ui->listsWidget);
    if (!item || !askYesNo("Удалить список?", this)) {
        return;
    }
    QSqlQuery query;
    if (!execute(query, "DELETE FROM lists WHERE ID = :Id", {{":Id", item->data(Qt::UserRole)}},
                 "error delete from lists "))
    {
        return;
    }
    const int row = item->row();
    ui->listsWidget->removeRow(row);
    selectRow(ui->listsWidget, row);
}

void FormsDlg::editList(QTableWidgetItem* item)
{
    // Items that the program itself puts in never stand in the current row.
    if (item->row() != ui->listsWidget->currentRow()) {
        return;
    }
    QSqlQuery query;
    execute(query, "UPDATE lists SET LIST_NAME = :Name WHERE ID = :Id",
            {{":Name", item->text()}, {":Id", item->data(Qt::UserRole)}},
            "error update into forms ");
}

void FormsDlg::listSelChange()
{
    const QTableWidgetItem* item = currentRowItem(ui->listsWidget);
    if (!item) {
        return;
    }
    m_currentListId = item->data(Qt::UserRole);
    const JsonColumn list = readListItems(m_currentListId);
    if (list.status == JsonColumn::Status::QueryFailed) {
        qDebug() << "Unable to execute select query";
        qDebug() << list.error;
        return;
    }
    ui->itemsWidget->setRowCount(0); // no row of the former list stays current
    drawItems(list.object["items"].toArray());
}

void FormsDlg::addItem()
{
    const bool added = changeItems(
        {"Unable to execute select items query", "Not an object!", "error update lists fields"},
        [](QJsonArray& items) {
            items.append("Новый элемент");
            return true;
        });
    if (added) {
        selectRow(ui->itemsWidget, ui->itemsWidget->rowCount() - 1);
    }
}

void FormsDlg::editItem(QTableWidgetItem* item)
{
    // What the program itself changes is never the current row.
    if (item->row() != ui->itemsWidget->currentRow()) {
        return;
    }
    const int position = item->data(Qt::UserRole).toInt();
    const QString text = item->text();
    const bool changed = changeItems(
        {"Unable to execute select lists query", "Not an object!", "error update forms lists"},
        [&](QJsonArray& items) { return replaceElement(items, position, text); });
    if (changed) {
        selectRow(ui->itemsWidget, position);
    }
}

void FormsDlg::deleteItem()
{
    const QTableWidgetItem* item = currentRowItem(ui->itemsWidget);
    if (!item) {
        return;
    }
    const int position = item->data(Qt::UserRole).toInt();
    const bool removed = changeItems(
        {"Unable to execute select fields query", "not an object!", "error update list items"},
        [&](QJsonArray& items) { return removeElement(items, position); });
    if (removed) {
        selectRow(ui->itemsWidget, position);
    }
}

void FormsDlg::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && qobject_cast<QTableWidget*>(focusWidget())) {
        // It may be pressed once more after an entry. Taken for a press of the default button it
        // would close the window.
        return;
    }
    QDialog::keyPressEvent(event);
}

void FormsDlg::fillForms()
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!execute(query, "SELECT * FROM forms;", {}, "Unable to execute select query")) {
        return;
    }
    const RowFitPause pause(ui->formsWidget);
    while (query.next()) {
        const int row = ui->formsWidget->rowCount();
        ui->formsWidget->insertRow(row);
        ui->formsWidget->setItem(row, 0, makeTableItem(query.value(1).toString(), query.value(0)));
        ui->formsWidget->setItem(row, 1, makeTableItem(query.value(2).toString()));
    }
}

void FormsDlg::fillLists()
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!execute(query, "SELECT * FROM lists;", {}, "Unable to execute select query")) {
        return;
    }
    while (query.next()) {
        const int row = ui->listsWidget->rowCount();
        ui->listsWidget->insertRow(row);
        ui->listsWidget->setItem(
            row, 0, makeTableItem(query.value("LIST_NAME").toString(), query.value("ID")));
    }
}

bool FormsDlg::changeFields(const JsonLogLines& log, const JsonArrayChange& change)
{
    QJsonObject form;
    if (!changeJsonArray({"fields", readFormFields, writeFormFields}, m_currentFormId, log, change,
                         form))
    {
        return false;
    }
    drawFields(form["fields"].toArray());
    return true;
}

bool FormsDlg::changeItems(const JsonLogLines& log, const JsonArrayChange& change)
{
    QJsonObject list;
    if (!changeJsonArray({"items", readListItems, writeListItems}, m_currentListId, log, change,
                         list)) {
        return false;
    }
    drawItems(list["items"].toArray());
    return true;
}

void FormsDlg::drawFields(const QJsonArray& fields)
{
    QTableWidget* table = ui->fieldsWidget;
    const RowFitPause pause(table);
    table->setRowCount(0);
    table->setRowCount(fields.size());
    for (int row = 0; row < fields.size(); ++row) {
        const QJsonObject field = fields[row].toObject();
        const int type = field["type"].toInt();
        table->setItem(row, 0, makeTableItem(field["tag"].toString(), row));
        table->setItem(row, 1, makeTableItem(field["name"].toString()));
        table->setItem(row, 2, makeTableItem(fieldTypeNames.value(type), type));
    }
}

void FormsDlg::drawItems(const QJsonArray& items)
{
    QTableWidget* table = ui->itemsWidget;
    // Rows are kept where their number stays: the keyboard may be in an editor in one of them.
    if (table->rowCount() != items.size()) {
        table->setRowCount(0);
        table->setRowCount(items.size());
    }
    for (int row = 0; row < items.size(); ++row) {
        showInCell(table, row, 0, items[row].toString(), row);
    }
}
