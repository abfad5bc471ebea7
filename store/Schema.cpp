#include "store/Schema.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QUuid>

#include "app/TargetFile.h"

namespace {

// Identifiers are never used again: rows of other tables, and the JSON in them, point at them by
// number without any constraint, and a new form must not inherit the documents of a deleted one.
const char* const keyType = "INTEGER PRIMARY KEY AUTOINCREMENT";
const char* const text = "TEXT";
const char* const integer = "INTEGER";

void setError(QString* error, const QString& reason)
{
    if (error) {
        *error = reason;
    }
}

bool fillDatabase(QSqlDatabase& database, const DatabaseFiller& fill, QString* error)
{
    if (!database.open() || !database.transaction()) {
        setError(error, database.lastError().text());
        return false;
    }
    if (!createSchema(database, error) || (fill && !fill(database, error))) {
        return false;
    }
    if (!database.commit()) {
        setError(error, database.lastError().text());
        return false;
    }
    return true;
}

bool writeDatabase(const QString& path, const DatabaseFiller& fill, QString* error)
{
    const QString connection = "create-database";
    bool written = false;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", connection);
        database.setDatabaseName(path);
        written = fillDatabase(database, fill, error);
    }
    QSqlDatabase::removeDatabase(connection);
    return written;
}

} // namespace

QString TableDefinition::createStatement() const
{
    QStringList definitions;
    for (const ColumnDefinition& column : columns) {
        definitions << column.name + " " + column.type;
    }
    return "CREATE TABLE IF NOT EXISTS " + name + " (" + definitions.join(", ") + ");";
}

const QVector<TableDefinition>& schemaTables()
{
    static const QVector<TableDefinition> tables = {
        {"docs",
         {{"ID", keyType},
          {"BLANK_SER", text},
          {"BLANK_NO", text},
          {"FNAME", text},
          {"LNAME", text},
          {"MNAME", text},
          {"BIRTH_DATE", text},
          {"DOC_TYPE", integer},
          {"DOC_GROUP", text},
          {"ISSUE_DATE", text},
          {"EDIT_DATE", text},
          {"DUPLICATE", integer},
          {"TEMPLATE", integer},
          {"TEMPLATE_NAME", text},
          {"CONTENT", text}}},
        {"forms",
         {{"ID", keyType}, {"FORM_NAME", text}, {"FORM_FULLNAME", text}, {"FIELDS", text}}},
        {"lists", {{"ID", keyType}, {"LIST_NAME", text}, {"LIST_ITEMS", text}}},
        {"blanks",
         {{"ID", keyType},
          {"NAME", text},
          {"FORM_ID", integer},
          {"PAPER_FORMAT", integer},
          {"PAPER_ORIENTATION", integer},
          {"PAGES", integer},
          {"FONT", text},
          {"FONT_SIZE", integer},
          {"BACKGROUND_IMG", text},
          {"SIZE_WIDTH", integer},
          {"SIZE_HEIGHT", integer},
          {"OFFSET_X", integer},
          {"OFFSET_Y", integer},
          {"CONTENT", text}}},
        {"export",
         {{"ID", keyType},
          {"NAME", text},
          {"FIELDS", text},
          {"TYPE", integer},
          {"TEMPLATE", text},
          {"FROM_ROW", integer},
          {"TO_ROW", integer},
          {"DATE_FORMAT", text}}},
        {"zvsys", {{"DB_VERSION", text}}}};
    return tables;
}

bool createSchema(const QSqlDatabase& database, QString* error)
{
    QSqlQuery query(database);
    for (const TableDefinition& table : schemaTables()) {
        if (!query.exec(table.createStatement())) {
            setError(error, query.lastError().text());
            return false;
        }
    }
    return true;
}

bool createDatabaseFile(const QString& path, QString* error, const DatabaseFiller& fill)
{
    if (QFileInfo::exists(path) || QFileInfo(path).isSymLink()) {
        setError(error, "file exists: " + path);
        return false;
    }
    removeLeftovers(QFileInfo(path).path());
    // The file gets its name when it is complete, so that a run that is cut off leaves nothing that
    // looks like a database.
    const QString unfinished = path + "." + QUuid::createUuid().toString(QUuid::Id128) + ".new";
    if (!writeDatabase(unfinished, fill, error)) {
        QFile::remove(unfinished);
        return false;
    }
    if (!QFile::rename(unfinished, path)) {
        QFile::remove(unfinished);
        setError(error, "cannot be written: " + path);
        return false;
    }
    return true;
}
