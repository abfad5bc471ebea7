#include "exchange/ExportDlg.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDebug>
#include <QFileDialog>
#include <QFileInfo>
#include <QIntValidator>
#include <QJsonArray>
#include <QJsonObject>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QSqlQuery>

#include <xlsxdocument.h>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "app/widgets/CellKeys.h"
#include "app/widgets/ClickGuard.h"
#include "app/widgets/CurrentRowGuard.h"
#include "app/widgets/LineStart.h"
#include "app/widgets/LongItems.h"
#include "app/widgets/RowFitPause.h"
#include "app/widgets/TableItems.h"
#include "exchange/DocumentExport.h"
#include "exchange/DocumentImport.h"
#include "exchange/ExchangeTemplate.h"
#include "exchange/WorkbookFile.h"
#include "store/SqlLog.h"
#include "ui_ExportDlg.h"

namespace {

const char* const workbookFilter = "Excel Files (*.xlsx *.xls)";

// What a new template starts with.
const char* const newName = "Новый шаблон";
constexpr int newFromRow = 2;
const char* const newToRow = "99";
const char* const newDateFormat = "dd.MM.yyyy";

/// Puts a row at the end of the table.
void appendRow(QTableWidget* table, const QList<QTableWidgetItem*>& items)
{
    const int row = table->rowCount();
    table->insertRow(row);
    for (int column = 0; column < items.size(); ++column) {
        table->setItem(row, column, items[column]);
    }
}

} // namespace

ExportDlg::ExportDlg(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::ExportDlg>())
{
    ui->setupUi(this);
    applyBaseStyle(this);
    LongItems::install(ui->formCombo);
    ui->splitter->setSizes({300, 390});
    fitRows(ui->templatesWidget);
    fitRows(ui->fieldsWidget);
    ui->fromRow->setValidator(new QIntValidator(1, 999, ui->fromRow));
    ui->toRow->setValidator(new QIntValidator(1, 999, ui->toRow));
    CurrentRowGuard::install(ui->templatesWidget);
    CurrentRowGuard::install(ui->fieldsWidget);
    connectWidgets();
    LineStart::installAll(this);
    ClickGuard::install(ui->fldDelBtn);
    for (QTableWidget* table : {ui->templatesWidget, ui->fieldsWidget}) {
        CellKeys::install(table);
    }

    ui->importButton->setFocus();
    loadTemplates();
    loadForms();
}

ExportDlg::~ExportDlg()
{
    // An edit that is still open is stored while the widgets are there.
    hide();
}

void ExportDlg::setDocsQuery(const QString& query)
{
    docsQuery = query;
}

void ExportDlg::loadTemplates()
{
    ui->templatesWidget->setRowCount(0); // which empties the other widgets
    loadingFields = true;
    loadingTemplate = true;
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT * FROM export;")) {
        logSqlFailure("Unable to execute select query", query);
        return;
    }
    const RowFitPause pause(ui->templatesWidget);
    while (query.next()) {
        appendRow(ui->templatesWidget,
                  {makeTableItem(query.value("NAME").toString(), query.value("ID"))});
    }
    loadingFields = false;
    loadingTemplate = false;
}

void ExportDlg::loadForms()
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT ID, FORM_NAME FROM forms;")) {
        qDebug() << "Unable to select from forms query";
        return;
    }
    ui->formCombo->clear();
    while (query.next()) {
        ui->formCombo->addItem(query.value("FORM_NAME").toString(), query.value("ID"));
    }
    ui->formCombo->setCurrentIndex(-1);
}

void ExportDlg::loadFields(const QJsonObject& object)
{
    loadingFields = true;
    const RowFitPause pause(ui->fieldsWidget);
    const QVector<ExchangeItem> items = exchangeItems(object);
    // Rows are kept where their number stays: the keyboard may be in an editor in one of them.
    if (ui->fieldsWidget->rowCount() != items.size()) {
        ui->fieldsWidget->setRowCount(0);
        ui->fieldsWidget->setRowCount(items.size());
    }
    for (int i = 0; i < items.size(); ++i) {
        showInCell(ui->fieldsWidget, i, 0, items[i].column, i);
        showInCell(ui->fieldsWidget, i, 1, items[i].tag);
    }
    loadingFields = false;
}

void ExportDlg::addTemplate()
{
    QSqlQuery query;
    query.prepare("INSERT INTO export (NAME, FIELDS, TYPE, TEMPLATE, FROM_ROW, TO_ROW, "
                  "DATE_FORMAT) VALUES (:Name, :Fields, :Type, :Template, :From, :To, "
                  ":DateFormat)");
    query.bindValue(":Name", newName);
    query.bindValue(":Fields", emptyExchangeFields);
    query.bindValue(":Type", 0);
    query.bindValue(":Template", QString(""));
    query.bindValue(":From", newFromRow);
    query.bindValue(":To", newToRow);
    query.bindValue(":DateFormat", newDateFormat);
    if (!query.exec()) {
        logSqlFailure("error insert into export", query);
        return;
    }
    QTableWidgetItem* item = makeTableItem(newName, query.lastInsertId());
    appendRow(ui->templatesWidget, {item});
    showTemplate("", QString::number(newFromRow), newToRow, newDateFormat);
    ui->templatesWidget->setCurrentItem(item);
}

void ExportDlg::deleteTemplate()
{
    const QTableWidgetItem* item = currentRowItem(ui->templatesWidget);
    if (!item || !askYesNo("Удалить шаблон?", this)) {
        return;
    }
    QSqlQuery query;
    query.prepare("DELETE FROM export WHERE ID = :Id");
    query.bindValue(":Id", item->data(Qt::UserRole));
    if (!query.exec()) {
        logSqlFailure("error delete from export ", query);
        return;
    }
    const QVariant deletedId = item->data(Qt::UserRole);
    const int row = item->row();
    // No neighbour but the next one is shown, not even on the way.
    ui->templatesWidget->setCurrentIndex(QModelIndex());
    ui->templatesWidget->removeRow(row);
    ui->templatesWidget->setCurrentCell(row, 0);
    if (!currentRowItem(ui->templatesWidget)) {
        currentTemplateId = deletedId; // kept: nothing is found under it any more
    }
}

void ExportDlg::editTemplate()
{
    const QTableWidgetItem* item = currentRowItem(ui->templatesWidget);
    if (loadingTemplate || !item) {
        return;
    }
    QSqlQuery query;
    query.prepare("UPDATE export SET NAME = :Name, TEMPLATE = :Template, FROM_ROW = :From, "
                  "TO_ROW = :To, DATE_FORMAT = :DateFormat WHERE ID = :Id");
    query.bindValue(":Name", item->text());
    query.bindValue(":Template", ui->tmpPathEdit->text());
    query.bindValue(":From", ui->fromRow->text().toInt());
    query.bindValue(":To", ui->toRow->text().toInt());
    query.bindValue(":DateFormat", ui->dateFormat->text());
    query.bindValue(":Id", item->data(Qt::UserRole));
    if (!query.exec()) {
        logSqlFailureWithQuery("error update into export", query);
    }
}

void ExportDlg::addField()
{
    changeItems(
        {"Unable to execute select export query", "Not an object!", "error update template fields"},
        QJsonDocument::Compact, [](QJsonArray& items) {
            items.append(QJsonObject{{"col", "колонка excel"}, {"tag", "#TAG"}});
            return true;
        });
}

void ExportDlg::deleteField()
{
    const QTableWidgetItem* item = currentRowItem(ui->fieldsWidget);
    if (!item) {
        return;
    }
    const int row = item->row();
    const int index = item->data(Qt::UserRole).toInt();
    const bool changed = changeItems(
        {"Unable to execute select fields query", "not an object!", "error update fields items"},
        QJsonDocument::Indented,
        [index](QJsonArray& items) { return removeElement(items, index); });
    if (changed) {
        ui->fieldsWidget->setCurrentCell(row, 0);
    }
}

void ExportDlg::editField()
{
    const int row = ui->fieldsWidget->currentRow();
    if (row < 0 || loadingFields) {
        return;
    }
    const int column = ui->fieldsWidget->currentColumn();
    const QTableWidgetItem* columnItem = ui->fieldsWidget->item(row, 0);
    const QTableWidgetItem* tagItem = ui->fieldsWidget->item(row, 1);
    const int index = columnItem->data(Qt::UserRole).toInt();
    const QJsonObject edited{{"col", columnItem->text()}, {"tag", tagItem->text()}};
    const bool changed = changeItems(
        {"Unable to execute select export query", "Not an object!", "error update fields lists"},
        QJsonDocument::Compact,
        [index, &edited](QJsonArray& items) { return replaceElement(items, index, edited); });
    if (changed) {
        // The refill dropped it: the next key goes on from the cell that was edited.
        ui->fieldsWidget->setCurrentCell(row, column);
    }
}

void ExportDlg::selChange()
{
    const QTableWidgetItem* item = currentRowItem(ui->templatesWidget);
    if (!item) {
        showNoTemplate();
        return;
    }
    currentTemplateId = item->data(Qt::UserRole);
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec("SELECT FIELDS, TEMPLATE, FROM_ROW, TO_ROW, DATE_FORMAT FROM  export "
                    "WHERE ID = " +
                    currentTemplateId.toString() + ";"))
    {
        logSqlFailure("Unable to execute select query", query);
        loadingTemplate =
            true; // what the widgets show is not of this template: no edit may store it
        return;
    }
    query.next();
    showTemplate(query.value("TEMPLATE").toString(), query.value("FROM_ROW").toString(),
                 query.value("TO_ROW").toString(), query.value("DATE_FORMAT").toString());
    ui->fieldsWidget->setRowCount(0); // no row of the former template stays current
    loadFields(parseJsonColumn(query.value("FIELDS")));
}

void ExportDlg::tmpFileClicked()
{
    ui->tmpPathEdit->setText(QFileDialog::getOpenFileName(
        this, "Таблица-шаблон(для экспорта)", appFilePath("templates"), workbookFilter));
    editTemplate();
}

void ExportDlg::exportClicked()
{
    const QTableWidgetItem* item = currentRowItem(ui->templatesWidget);
    if (!item) {
        return;
    }
    currentTemplateId = item->data(Qt::UserRole);
    QSqlQuery templateQuery;
    if (!templateQuery.exec("SELECT FIELDS, TEMPLATE, FROM_ROW, TO_ROW, DATE_FORMAT, NAME "
                            "FROM  export WHERE ID = " +
                            currentTemplateId.toString() + ";"))
    {
        logSqlFailure("Unable to select export query", templateQuery);
        return;
    }
    QSqlQuery documents;
    documents.setForwardOnly(true);
    if (!documents.exec(docsQuery.isEmpty() ? "SELECT * FROM docs WHERE docs.TEMPLATE = 0;"
                                            : docsQuery))
    {
        logSqlFailureWithQuery("Unable to select from docs query", documents);
        return;
    }
    exportDocuments(templateQuery, documents);
}

void ExportDlg::importClicked()
{
    const QTableWidgetItem* item = currentRowItem(ui->templatesWidget);
    ImportRequest request{ui->fromRow->text().toInt(), ui->toRow->text().toInt(),
                          ui->formCombo->currentData().toInt(), ui->dateFormat->text(), QString()};
    if (!item || request.firstRow > request.lastRow || request.formId < 1) {
        return;
    }
    currentTemplateId = item->data(Qt::UserRole);
    QSqlQuery form;
    if (!form.exec("SELECT FIELDS, FORM_NAME FROM forms WHERE ID = " +
                   QString::number(request.formId) + ";"))
    {
        qDebug() << "Unable to select from forms query";
        return;
    }
    QSqlQuery templateQuery;
    if (!templateQuery.exec("SELECT FIELDS, FROM_ROW, TO_ROW, DATE_FORMAT FROM  export "
                            "WHERE ID = " +
                            currentTemplateId.toString() + ";"))
    {
        logSqlFailure("Unable to select export query", templateQuery);
        return;
    }
    request.file = QFileDialog::getOpenFileName(this, "Укажите шаблон для импорта",
                                                appFilePath("imports/"), workbookFilter);
    if (!request.file.isEmpty()) {
        importRows(form, templateQuery, request);
    }
}

void ExportDlg::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && !qobject_cast<QPushButton*>(focusWidget())) {
        // It ends an entry. Taken for a press of the default button it would start an import.
        return;
    }
    QDialog::keyPressEvent(event);
}

void ExportDlg::connectWidgets()
{
    connect(ui->addTmpBtn, &QPushButton::clicked, this, &ExportDlg::addTemplate);
    connect(ui->delTmpBtn, &QPushButton::clicked, this, &ExportDlg::deleteTemplate);
    connect(ui->templatesWidget, &QTableWidget::itemChanged, this, &ExportDlg::editTemplate);
    connect(ui->fromRow, &QLineEdit::editingFinished, this, &ExportDlg::editTemplate);
    connect(ui->toRow, &QLineEdit::editingFinished, this, &ExportDlg::editTemplate);
    connect(ui->tmpPathEdit, &QLineEdit::editingFinished, this, &ExportDlg::editTemplate);
    connect(ui->fldAddBtn, &QPushButton::clicked, this, &ExportDlg::addField);
    connect(ui->fldDelBtn, &QPushButton::clicked, this, &ExportDlg::deleteField);
    connect(ui->fieldsWidget, &QTableWidget::itemChanged, this, &ExportDlg::editField);
    connect(ui->templatesWidget, &QTableWidget::itemSelectionChanged, this, &ExportDlg::selChange);
    connect(ui->tmpFileBtn, &QPushButton::clicked, this, &ExportDlg::tmpFileClicked);
    connect(ui->exportButton, &QPushButton::clicked, this, &ExportDlg::exportClicked);
    connect(ui->importButton, &QPushButton::clicked, this, &ExportDlg::importClicked);
}

void ExportDlg::showTemplate(const QString& workbook, const QString& from, const QString& to,
                             const QString& dates)
{
    loadingTemplate = true;
    ui->tmpPathEdit->setText(workbook);
    ui->fromRow->setText(from);
    ui->toRow->setText(to);
    ui->dateFormat->setText(dates);
    loadingTemplate = false;
}

void ExportDlg::showNoTemplate()
{
    currentTemplateId = -1;
    showTemplate(QString(), QString(), QString(), QString());
    loadFields(QJsonObject());
}

bool ExportDlg::changeItems(const JsonLogLines& log, QJsonDocument::JsonFormat format,
                            const JsonArrayChange& change)
{
    const auto write = [format](const QVariant& id, const QJsonObject& fields, QString* error) {
        return writeExchangeFields(id, fields, format, error);
    };
    QJsonObject fields;
    if (!changeJsonArray({"items", readExchangeFields, write}, currentTemplateId, log, change,
                         fields)) {
        return false;
    }
    loadFields(fields);
    return true;
}

void ExportDlg::exportDocuments(QSqlQuery& templateQuery, QSqlQuery& documents)
{
    setCursor(Qt::BusyCursor);
    QCoreApplication::processEvents();
    templateQuery.next();
    const auto workbook = openTemplate(templateQuery.value("TEMPLATE").toString());
    selectCurrentSheetOnly(*workbook);
    DocumentExport exporter(*workbook,
                            exchangeItems(parseJsonColumn(templateQuery.value("FIELDS"))),
                            templateQuery.value("DATE_FORMAT").toString());
    exporter.writeDocuments(documents, templateQuery.value("FROM_ROW").toInt());
    setCursor(Qt::ArrowCursor);

    const QString path = askExportFile(templateQuery.value("NAME").toString());
    if (path.isEmpty()) {
        return;
    }
    // kept: the result is not looked at; the message comes in any case.
    saveWorkbook(*workbook, path);
    QMessageBox::information(this, "Экспорт данных",
                             "Документ\n" + path + "\nУспешно экспортирован", QMessageBox::Ok);
    accept();
}

/// A missing workbook gives an empty one without a word. One that is there and can't be read is
/// told: its headings would be missed only on the desk of whom the file is sent to.
std::unique_ptr<QXlsx::Document> ExportDlg::openTemplate(const QString& path)
{
    QString error;
    auto workbook = openWorkbook(path, this, &error);
    if (!error.isEmpty() && QFileInfo(path).isFile()) {
        qDebug() << "Unable to read the workbook" << path << error;
        QMessageBox::critical(this, "Ошибка",
                              "Не удалось прочитать таблицу-шаблон\n" + path +
                                  "\nДокументы будут записаны в пустую таблицу.");
    }
    return workbook;
}

QString ExportDlg::askExportFile(const QString& templateName)
{
    const QString proposed =
        appFilePath("exports/" + templateName + "_" +
                    QDateTime::currentDateTime().toString("dd-MM-yy hh-mm") + ".xlsx");
    return QFileDialog::getSaveFileName(this, "Сохранить как", proposed, workbookFilter);
}

void ExportDlg::importRows(QSqlQuery& form, QSqlQuery& templateQuery, const ImportRequest& request)
{
    setCursor(Qt::BusyCursor);
    QCoreApplication::processEvents();
    QString error;
    const auto workbook = openWorkbook(request.file, this, &error);
    if (!error.isEmpty()) {
        qDebug() << "Unable to read the workbook" << request.file << error;
    }
    form.next();
    templateQuery.next();
    DocumentImport importer(
        *workbook, exchangeItems(parseJsonColumn(templateQuery.value("FIELDS"))),
        parseJsonColumn(form.value("FIELDS")), request.formId, request.dateFormat);
    for (int row = request.firstRow; row <= request.lastRow; ++row) {
        const QString emptyCell = importer.readRow(row);
        if (!emptyCell.isEmpty()) {
            QMessageBox::information(this, "Внимание!",
                                     plainMessage("Ошибка чтения: ячейка " + emptyCell),
                                     QMessageBox::Ok);
        }
        QSqlQuery insert;
        if (!insert.exec(importer.insertStatement())) {
            logSqlFailureWithQuery("error insert into docs ", insert);
            break;
        }
    }
    setCursor(Qt::ArrowCursor);
    accept();
}
