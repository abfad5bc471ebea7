// Bytes taken as the mapping of an exchange template: the dialog that edits it, an export through
// it and an import of what was exported.

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlQuery>
#include <QTableWidget>

#include <memory>

#include <xlsxdocument.h>

#include "exchange/DocumentExport.h"
#include "exchange/DocumentImport.h"
#include "exchange/ExchangeTemplate.h"
#include "exchange/ExportDlg.h"
#include "fuzz/FuzzSupport.h"

namespace {

constexpr int firstRow = 2;
constexpr int formId = 1;

const char* const formFields =
    R"({"fields": [{"tag": "#HOURS", "name": "Часы", "type": 2},)"
    R"({"tag": "#DAY", "name": "День", "type": 3, "format": "dd.MM.yyyy"},)"
    R"({"tag": "#KIND", "name": "Вид", "type": 1, "list": 1}]})";

/// Two documents to export, and the dialog over the template that every input is stored in.
struct Fixture
{
    Fixture()
    {
        openFreshDatabase();
        insertFormAndList();
        for (const char* name : {"Иванова", "О'Нил"}) {
            runSql("INSERT INTO docs (LNAME, FNAME, BIRTH_DATE, DOC_TYPE, DUPLICATE, TEMPLATE, "
                   "CONTENT) VALUES (?, 'Анна', '2001-03-09', 1, 0, 0, "
                   "'{\"#HOURS\": {\"type\": 2, \"value\": 144}}')",
                   {QString(name)});
        }
        runSql("INSERT INTO export (ID, NAME, FIELDS, TYPE, TEMPLATE, FROM_ROW, TO_ROW, "
               "DATE_FORMAT) VALUES (1, 'Шаблон', '', 0, '', 2, 99, 'dd.MM.yyyy')");
        dialog = std::make_unique<ExportDlg>();
        fields = dialog->findChild<QTableWidget*>("fieldsWidget");
        auto* templates = dialog->findChild<QTableWidget*>("templatesWidget");
        require(fields && templates && templates->rowCount() == 1, "the dialog shows the template");
        templates->setCurrentCell(0, 0);
    }

    std::unique_ptr<ExportDlg> dialog;
    QTableWidget* fields = nullptr;
};

void checkDialog(Fixture& fixture, const QVector<ExchangeItem>& items)
{
    fixture.dialog->selChange();
    require(fixture.fields->rowCount() == items.size(), "each line of the mapping has a row");
    for (int row = 0; row < items.size(); ++row) {
        require(fixture.fields->item(row, 0)->text() == items[row].column &&
                    fixture.fields->item(row, 1)->text() == items[row].tag,
                "a line is shown as it is stored");
    }
}

void checkExchange(const QVector<ExchangeItem>& items)
{
    QXlsx::Document workbook;
    QSqlQuery documents;
    require(documents.exec("SELECT * FROM docs WHERE TEMPLATE = 0"), "the documents can be read");
    DocumentExport(workbook, items, "dd.MM.yyyy").writeDocuments(documents, firstRow);
    DocumentImport importer(workbook, items, QJsonDocument::fromJson(formFields).object(), formId,
                            "dd.MM.yyyy");
    for (int row = firstRow; row < firstRow + 3; ++row) {
        const QString empty = importer.readRow(row);
        require(!items.isEmpty() || empty.isEmpty(),
                "nothing is missed where nothing is asked for");
        require(importer.insertStatement().startsWith("INSERT INTO docs "),
                "each row gives a statement");
    }
}

} // namespace

void tryInput(const QByteArray& input)
{
    static auto* fixture = new Fixture;
    runSql("UPDATE export SET FIELDS = ? WHERE ID = 1", {input});
    const QVector<ExchangeItem> items = exchangeItems(QJsonDocument::fromJson(input).object());
    checkDialog(*fixture, items);
    checkExchange(items);
    require(sqlValue("SELECT FIELDS FROM export WHERE ID = 1").toByteArray() == input,
            "showing a mapping leaves it alone");
}
