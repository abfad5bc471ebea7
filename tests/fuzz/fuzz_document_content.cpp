// Bytes taken as the content of a document: the pane of the main window, the table of the document
// dialogs with the editor of table values, and its tags.

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTableWidget>

#include <memory>

#include "documents/DocumentContent.h"
#include "documents/MainWindow.h"
#include "documents/TableMemoDialog.h"
#include "forms/FormDefinitions.h"
#include "fuzz/FuzzSupport.h"
#include "render/TagExpansion.h"

namespace {

constexpr int docId = 1;
constexpr int fixedRows = 4; // of the pane, before the entries

/// The document that every input is stored in, and the windows that show it.
struct Fixture
{
    Fixture()
    {
        openFreshDatabase();
        insertFormAndList();
        runSql("INSERT INTO docs (ID, FNAME, LNAME, DOC_TYPE, TEMPLATE, CONTENT) "
               "VALUES (1, 'Анна', 'Иванова', 1, 0, '')");
        window = std::make_unique<MainWindow>();
        pane = window->findChild<QTableWidget*>("contentWidget");
        require(pane && window->currentDocId() == docId, "the window shows the document");
        contentTable.setColumnCount(2);
        setUpContentTable(&contentTable);
    }

    std::unique_ptr<MainWindow> window;
    QTableWidget* pane = nullptr;
    QTableWidget contentTable;
};

void ignoreButton(QPushButton*) {}

/// A table is the last entry that the pane shows.
int shownEntries(const QJsonObject& content)
{
    int shown = 0;
    for (auto it = content.begin(); it != content.end(); ++it) {
        ++shown;
        if (it.value().toObject()["type"].toInt() == FieldType::table) {
            break;
        }
    }
    return shown;
}

QJsonObject loadedAndSaved(QTableWidget* table, const QJsonObject& content)
{
    loadContentTable(table, content, {ignoreButton, ignoreButton});
    require(table->rowCount() == content.size(), "each entry has a row");
    QJsonObject saved = content;
    saveContentTable(&saved, table);
    return saved;
}

void checkEntry(const QJsonObject& before, const QJsonObject& after, const QJsonObject& again)
{
    const QStringList edited = {"value", "format", "list"};
    for (auto it = before.begin(); it != before.end(); ++it) {
        require(edited.contains(it.key()) || after[it.key()] == it.value(),
                "saving changes nothing but the value");
    }
    const int type = before["type"].toInt();
    if (type != FieldType::date) { // years of two digits may move by a century
        require(again == after, "saving twice is saving once");
    }
    if (type == FieldType::text || type == FieldType::string) {
        require(after["value"].toString() == before["value"].toString(), "a text is kept");
    }
    if (type == FieldType::table) {
        require(after["value"].toArray() == before["value"].toArray(), "a table is kept");
    }
}

void checkTableEditor(const QJsonObject& entry)
{
    const QJsonArray columns = entry["columns"].toArray();
    const QJsonArray rows = entry["value"].toArray();
    TableMemoDialog dialog;
    require(dialog.setData(columns, rows) == !columns.isEmpty(), "a table has columns");
    const QJsonArray value = dialog.tableValue();
    if (columns.isEmpty()) {
        return;
    }
    require(value.size() == rows.size(), "the table's editor keeps each row");
    for (const QJsonValue& row : value) {
        require(row.toArray().size() == columns.size(), "a row has a cell for each column");
    }
}

void checkEntries(QTableWidget* table, const QJsonObject& content)
{
    const QJsonObject saved = loadedAndSaved(table, content);
    const QJsonObject again = loadedAndSaved(table, saved);
    require(saved.keys() == content.keys(), "saving neither adds nor drops an entry");
    bool isTableTried = false; // a window of its own: once is enough
    for (auto it = content.begin(); it != content.end(); ++it) {
        const QJsonObject entry = it.value().toObject();
        checkEntry(entry, saved[it.key()].toObject(), again[it.key()].toObject());
        if (!isTableTried && entry["type"].toInt() == FieldType::table) {
            checkTableEditor(entry);
            isTableTried = true;
        }
    }
}

void checkTags(const QJsonObject& content)
{
    const QString text = content.keys().join(' ') + " #LNAME #CONTENT #ISSUE_DATE.";
    QString error;
    const QString expanded = expandTagsForDoc(text, docId, &error);
    require(error.isEmpty() && !expanded.contains('^'), "the tags of a document are expanded");
}

} // namespace

void tryInput(const QByteArray& input)
{
    static auto* fixture = new Fixture;
    runSql("UPDATE docs SET CONTENT = ? WHERE ID = 1", {input});
    const QJsonObject content = QJsonDocument::fromJson(input).object();

    fixture->window->selChange();
    require(fixture->pane->rowCount() == fixedRows + shownEntries(content),
            "the pane shows each entry up to a table");
    checkEntries(&fixture->contentTable, content);
    checkTags(content);
    require(sqlValue("SELECT CONTENT FROM docs WHERE ID = 1").toByteArray() == input,
            "showing a document leaves it alone");
}
