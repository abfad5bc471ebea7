#include "tools/DatabaseCheck.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlError>
#include <QSqlQuery>

#include "app/StoredPath.h"
#include "blanks/BlankRecord.h"
#include "forms/FormDefinitions.h"
#include "store/Schema.h"
#include "tools/SettledDatabase.h"

namespace {

const char* const connectionName = "check-database";

QString rowPlace(const QString& table, const QVariant& id)
{
    return table + " ID " + id.toString();
}

// The tables that readers take by position, so that the order of the columns matters.
bool isReadByPosition(const QString& table)
{
    return table == "docs" || table == "forms";
}

// SQLite's own rules of what a declared type makes of the values put in.
bool isNumericType(const QString& declared)
{
    const QString type = declared.toUpper();
    if (type.contains("INT")) {
        return true;
    }
    const bool keepsText = type.contains("CHAR") || type.contains("CLOB") ||
                           type.contains("TEXT") || type.contains("BLOB");
    return !keepsText && !type.isEmpty();
}

} // namespace

DatabaseCheck::DatabaseCheck(const QString& path)
    : m_path(path)
{
}

bool DatabaseCheck::run()
{
    m_findings.clear();
    m_damagedTables.clear();
    if (!QFileInfo(m_path).isFile()) {
        m_error = tr("no such file: %1").arg(m_path);
        return false;
    }
    SettledDatabase settled(m_path);
    if (!settled.settle()) {
        m_error = settled.error();
        return false;
    }
    m_hasWaitingChange = settled.hasWaitingChange();
    m_database = QSqlDatabase::addDatabase("QSQLITE", connectionName);
    m_database.setDatabaseName(settled.path());
    m_database.setConnectOptions("QSQLITE_OPEN_READONLY");
    const bool readable = checkOpened();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connectionName);
    return readable;
}

bool DatabaseCheck::checkOpened()
{
    QString reason;
    if (!m_database.open()) {
        reason = m_database.lastError().text();
    } else {
        // The file is looked into at the first statement only.
        QSqlQuery probe(m_database);
        if (!probe.exec("SELECT COUNT(*) FROM sqlite_master")) {
            reason = probe.lastError().text();
        }
    }
    if (!reason.isEmpty()) {
        m_error = tr("the file cannot be read as a database: %1 (%2)").arg(m_path, reason);
        return false;
    }
    checkIntegrity();
    for (const TableDefinition& table : schemaTables()) {
        checkTable(table);
    }
    m_listIds = idsOf("lists");
    m_formIds = idsOf("forms");
    checkVersion();
    checkLists();
    checkForms();
    checkDocuments();
    checkBlanks();
    checkExchangeTemplates();
    return true;
}

void DatabaseCheck::checkIntegrity()
{
    QSqlQuery query(m_database);
    if (!query.exec("PRAGMA integrity_check")) {
        find("SQLite", query.lastError().text());
        return;
    }
    while (query.next()) {
        const QString result = query.value(0).toString();
        if (result != "ok") {
            find("SQLite", result);
        }
    }
}

void DatabaseCheck::checkTable(const TableDefinition& table)
{
    QSqlQuery query(m_database);
    query.exec("PRAGMA table_info(" + table.name + ")");
    QStringList present;
    QStringList types;
    QString key;
    while (query.next()) {
        present << query.value("name").toString();
        types << query.value("type").toString();
        if (query.value("pk").toInt() == 1) {
            key = present.last();
        }
    }
    const bool madeOnDemand = table.name == "zvsys";
    if (present.isEmpty()) {
        m_damagedTables << table.name;
        if (!madeOnDemand) {
            find(table.name, tr("the table is missing"));
        }
        return;
    }
    for (const ColumnDefinition& column : table.columns) {
        const int position = present.indexOf(column.name);
        if (position < 0) {
            m_damagedTables << table.name;
            find(table.name, tr("the column %1 is missing").arg(column.name));
            continue;
        }
        checkColumnType(table.name, column, types[position], column.name == key);
    }
    if (isReadByPosition(table.name)) {
        checkOrder(table, present);
    }
}

void DatabaseCheck::checkOrder(const TableDefinition& table, const QStringList& present)
{
    QStringList expected;
    for (const ColumnDefinition& column : table.columns) {
        expected << column.name;
    }
    if (present.mid(0, expected.size()) == expected || m_damagedTables.contains(table.name)) {
        return;
    }
    find(table.name, tr("the columns are out of order: %1; expected: %2")
                         .arg(present.join(", "), expected.join(", ")));
}

void DatabaseCheck::checkColumnType(const QString& table, const ColumnDefinition& column,
                                    const QString& type, bool isKey)
{
    const QString place = table + "." + column.name;
    if (column.type.contains("PRIMARY KEY")) {
        if (!isKey || type.toUpper() != "INTEGER") {
            find(place, tr("this is no integer primary key"));
        }
        return;
    }
    if (isNumericType(column.type) != isNumericType(type)) {
        find(place, tr("the type is %1 instead of %2").arg(type, column.type));
    }
}

void DatabaseCheck::checkVersion()
{
    QSqlQuery query(m_database);
    if (!select(query, "zvsys", "DB_VERSION")) {
        return;
    }
    int rows = 0;
    while (query.next()) {
        rows++;
    }
    if (rows > 1) {
        find("zvsys", tr("%n rows where one is expected", nullptr, rows));
    }
}

void DatabaseCheck::checkLists()
{
    QSqlQuery query(m_database);
    if (!select(query, "lists", "ID, LIST_ITEMS")) {
        return;
    }
    while (query.next()) {
        const QString place = rowPlace("lists", query.value(0)) + ", LIST_ITEMS";
        const QJsonArray items = arrayIn(query.value(1), "items", place);
        for (int i = 0; i < items.size(); i++) {
            if (!items[i].isString()) {
                find(QString("%1, items[%2]").arg(place).arg(i), tr("this is no string"));
            }
        }
    }
}

void DatabaseCheck::checkForms()
{
    QSqlQuery query(m_database);
    if (!select(query, "forms", "ID, FIELDS")) {
        return;
    }
    while (query.next()) {
        const QString place = rowPlace("forms", query.value(0)) + ", FIELDS";
        const QJsonArray fields = arrayIn(query.value(1), "fields", place);
        for (int i = 0; i < fields.size(); i++) {
            checkField(fields[i], QString("%1, fields[%2]").arg(place).arg(i));
        }
    }
}

void DatabaseCheck::checkDocuments()
{
    QSqlQuery query(m_database);
    if (!select(query, "docs", "ID, DOC_TYPE, CONTENT")) {
        return;
    }
    while (query.next()) {
        const QString row = rowPlace("docs", query.value(0));
        checkFormReference(query.value(1), row, "DOC_TYPE");
        const QJsonObject content = objectIn(query.value(2), row + ", CONTENT");
        for (auto entry = content.begin(); entry != content.end(); ++entry) {
            checkEntry(entry.value(), row + ", CONTENT, " + entry.key());
        }
    }
}

void DatabaseCheck::checkBlanks()
{
    QSqlQuery query(m_database);
    if (!select(query, "blanks",
                "ID, FORM_ID, BACKGROUND_IMG, CONTENT, SIZE_WIDTH, SIZE_HEIGHT, PAPER_FORMAT"))
    {
        return;
    }
    while (query.next()) {
        const QString row = rowPlace("blanks", query.value(0));
        checkFormReference(query.value(1), row, "FORM_ID");
        checkBlankSize(query.value(4), row + ", SIZE_WIDTH");
        checkBlankSize(query.value(5), row + ", SIZE_HEIGHT");
        checkPaperFormat(query.value(6), row + ", PAPER_FORMAT");
        const QString background = query.value(2).toString();
        if (!background.isEmpty()) {
            checkFile(storedFilePath(QFileInfo(m_path).path(), background), row, "BACKGROUND_IMG");
        }
        if (query.value(3).isNull()) {
            continue; // never opened in the editor
        }
        const QString place = row + ", CONTENT";
        const QJsonObject page = objectIn(query.value(3), place);
        if (!page.contains("fields")) {
            continue; // an empty page
        }
        const QJsonArray items = arrayIn(query.value(3), "fields", place);
        for (int i = 0; i < items.size(); i++) {
            if (!items[i].isObject()) {
                find(QString("%1, fields[%2]").arg(place).arg(i), tr("this is no object"));
            }
        }
    }
}

void DatabaseCheck::checkBlankSize(const QVariant& millimetres, const QString& place)
{
    constexpr int largest = 500; // that can be entered
    bool isNumber = false;
    const double size = millimetres.toDouble(&isNumber);
    // None was ever entered, which reads as 0.
    if (millimetres.isNull() || (isNumber && size >= 0 && size <= largest)) {
        return;
    }
    const QString text = millimetres.toString();
    find(place, tr("no size from 0 to 500 mm: %1").arg(text));
}

void DatabaseCheck::checkPaperFormat(const QVariant& code, const QString& place)
{
    // A blank of another one prints on whatever paper the printer has.
    const bool isKnown =
        QVector<int>{PaperFormat::a4, PaperFormat::a5, PaperFormat::customMm}.contains(
            code.toInt());
    if (!code.isNull() && !isKnown) {
        find(place, tr("there is no paper format with the code %1").arg(code.toString()));
    }
}

void DatabaseCheck::checkExchangeTemplates()
{
    QSqlQuery query(m_database);
    if (!select(query, "export", "ID, TEMPLATE, FIELDS")) {
        return;
    }
    while (query.next()) {
        const QString row = rowPlace("export", query.value(0));
        const QString workbook = query.value(1).toString();
        if (!workbook.isEmpty()) {
            checkFile(workbook, row, "TEMPLATE");
        }
        const QString place = row + ", FIELDS";
        const QJsonArray items = arrayIn(query.value(2), "items", place);
        for (int i = 0; i < items.size(); i++) {
            if (!items[i]["col"].isString() || !items[i]["tag"].isString()) {
                find(QString("%1, items[%2]").arg(place).arg(i),
                     tr("the strings col and tag are missing"));
            }
        }
    }
}

void DatabaseCheck::checkField(const QJsonValue& value, const QString& place)
{
    if (!value.isObject()) {
        find(place, tr("this is no object"));
        return;
    }
    const QJsonObject field = value.toObject();
    if (field["tag"].toString().isEmpty()) {
        find(place, tr("there is no tag"));
    }
    const QString named = place + " " + field["tag"].toString();
    checkTypeAndList(field, named);
    if (field["type"].toInt() == FieldType::table) {
        checkTableColumns(field["content"], "content", named);
    }
}

void DatabaseCheck::checkEntry(const QJsonValue& value, const QString& place)
{
    if (!value.isObject()) {
        find(place, tr("this is no object"));
        return;
    }
    const QJsonObject entry = value.toObject();
    checkTypeAndList(entry, place);
    // An imported document has no columns.
    if (entry["type"].toInt() == FieldType::table && entry.contains("columns")) {
        checkTableColumns(entry["columns"], "columns", place);
    }
}

void DatabaseCheck::checkTypeAndList(const QJsonObject& object, const QString& place)
{
    const QJsonValue type = object["type"];
    if (!type.isUndefined() && !(type.isDouble() && fieldTypeNames.contains(type.toInt(-1)))) {
        const QString text = type.toVariant().toString();
        find(place, tr("unknown type: %1").arg(text));
        return;
    }
    const int list = object["list"].toInt();
    if (type.toInt() == FieldType::list && !m_listIds.contains(list)) {
        const QString id = QString::number(list);
        find(place, tr("there is no list with the ID %1").arg(id));
    }
}

void DatabaseCheck::checkTableColumns(const QJsonValue& value, const QString& key,
                                      const QString& place)
{
    if (!value.isArray()) {
        find(place, tr("%1 is no array").arg(key));
        return;
    }
    const QJsonArray columns = value.toArray();
    for (int i = 0; i < columns.size(); i++) {
        checkTableColumn(columns[i].toObject(), QString("%1, %2[%3]").arg(place, key).arg(i));
    }
}

void DatabaseCheck::checkTableColumn(const QJsonObject& column, const QString& place)
{
    static const QStringList columnTypes = {"0", "1", "2", "3"};
    const QJsonValue type = column["typeID"];
    // A number, unlike its text, reads as 0 whatever it is.
    if (!type.isString() || !columnTypes.contains(type.toString())) {
        const QString text = type.toVariant().toString();
        find(place, tr("unknown typeID: %1").arg(text));
        return;
    }
    const QJsonValue list = column["listID"];
    const bool usesList = type.toString().toInt() == FieldType::list && !list.isUndefined();
    if (usesList && !m_listIds.contains(list.toString().toInt())) {
        const QString id = list.toVariant().toString();
        find(place, tr("there is no list with the ID %1").arg(id));
    }
}

void DatabaseCheck::checkFormReference(const QVariant& form, const QString& row,
                                       const QString& column)
{
    if (m_formIds.contains(form.toInt())) {
        return;
    }
    const QString id = form.isNull() ? "NULL" : form.toString();
    find(row + ", " + column, tr("there is no form with the ID %1").arg(id));
}

void DatabaseCheck::checkFile(const QString& path, const QString& row, const QString& column)
{
    // Only the application's own file has its neighbours beside it; an archive has not.
    if (QFileInfo(m_path).fileName() != "docs.db" || QFileInfo(path).isFile()) {
        return;
    }
    find(row + ", " + column, tr("there is no file %1").arg(path));
}

bool DatabaseCheck::select(QSqlQuery& query, const QString& table, const QString& columns)
{
    query.setForwardOnly(true);
    if (query.exec("SELECT " + columns + " FROM " + table)) {
        return true;
    }
    if (!m_damagedTables.contains(table)) {
        find(table, query.lastError().text());
    }
    return false;
}

QSet<int> DatabaseCheck::idsOf(const QString& table)
{
    QSet<int> ids;
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    query.exec("SELECT ID FROM " + table);
    while (query.next()) {
        ids << query.value(0).toInt();
    }
    return ids;
}

QJsonObject DatabaseCheck::objectIn(const QVariant& value, const QString& place)
{
    QJsonParseError error = {0, QJsonParseError::NoError};
    const QJsonDocument document = QJsonDocument::fromJson(value.toByteArray(), &error);
    if (value.isNull()) {
        find(place, tr("it is NULL"));
    } else if (error.error != QJsonParseError::NoError) {
        const QString reason = QString("%1 (%2)").arg(error.errorString()).arg(error.offset);
        find(place, tr("this is no JSON: %1").arg(reason));
    } else if (!document.isObject()) {
        find(place, tr("this is no JSON object"));
    }
    return document.object();
}

QJsonArray DatabaseCheck::arrayIn(const QVariant& value, const QString& key, const QString& place)
{
    const int before = m_findings.size();
    const QJsonObject object = objectIn(value, place);
    if (m_findings.size() == before && !object[key].isArray()) {
        find(place, tr("the array %1 is missing").arg(key));
    }
    return object[key].toArray();
}

void DatabaseCheck::find(const QString& place, const QString& fault)
{
    m_findings << place + ": " + fault;
}
