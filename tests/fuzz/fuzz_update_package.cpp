// Bytes taken as an update package and applied to a small database. Whatever the bytes are, the
// update is applied as a whole or leaves the database as it was.

#include <QBuffer>
#include <QDataStream>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>

#include "fuzz/FuzzSupport.h"
#include "store/DataBaseUpdater.h"
#include "store/UpdatePackage.h"

namespace {

void fillDatabase()
{
    runSql("INSERT INTO forms (ID, FORM_NAME, FIELDS) VALUES (28, 'Удостоверение', ?)",
           {QString(R"({"fields": [{"tag": "#OLD", "name": "Прежнее", "type": 0}]})")});
    runSql("INSERT INTO lists (ID, LIST_NAME, LIST_ITEMS) VALUES (101, 'Вид документа', '{}'), "
           "(102, 'Да/Нет', '{}'), (106, 'Пол', '{}')");
    const char* const contents[] = {R"({"#OLD": {"name": "Прежнее", "type": 0, "value": "а"}})",
                                    "{ broken", "[]", "{}"};
    for (const char* content : contents) {
        runSql("INSERT INTO docs (LNAME, DOC_TYPE, TEMPLATE, CONTENT) VALUES ('Иванов', 28, 0, ?)",
               {QString(content)});
    }
}

void prepareDatabase()
{
    openFreshDatabase();
    fillDatabase();
}

void appendRows(QByteArray& dump, const QString& statement)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    require(query.exec(statement), "a table that was there can be read");
    while (query.next()) {
        const QSqlRecord record = query.record();
        for (int i = 0; i < record.count(); ++i) {
            const QVariant value = record.value(i);
            dump += value.isNull() ? "NULL" : value.typeName();
            dump += ' ' + value.toByteArray() + '\n';
        }
    }
}

/// Every object and row of the database but the version stamp, which outlives a failed update.
QByteArray dumpDatabase()
{
    QStringList tables;
    {
        QSqlQuery query("SELECT name FROM sqlite_master WHERE type = 'table' AND name <> 'zvsys'");
        while (query.next()) {
            tables << query.value(0).toString();
        }
    }
    QByteArray dump;
    appendRows(dump, "SELECT type, name, tbl_name, sql FROM sqlite_master WHERE name <> 'zvsys' "
                     "UNION ALL SELECT type, name, tbl_name, sql FROM sqlite_temp_master");
    for (QString table : tables) {
        appendRows(dump, "SELECT * FROM \"" + table.replace('"', "\"\"") + "\"");
    }
    return dump;
}

/// Statements that end the transaction themselves, reach beyond the database or run for hours are
/// the package maker's own doing.
bool isOutOfBounds(const QString& statement)
{
    static const QRegularExpression words(
        "\\b(ATTACH|BEGIN|COMMIT|DETACH|END|FORMAT|PRAGMA|PRINTF|RANDOMBLOB|RELEASE|ROLLBACK|"
        "SAVEPOINT|VACUUM|VIRTUAL|WITH|ZEROBLOB)\\b",
        QRegularExpression::CaseInsensitiveOption);
    return words.match(statement).hasMatch();
}

bool isOutOfBounds(const UpdatePackage& package)
{
    if (isOutOfBounds(parseUpdateJson(package.header)["update_version"].toString())) {
        return true;
    }
    for (const UpdatePart& part : package.parts) {
        if (isOutOfBounds(part.payload)) {
            return true;
        }
    }
    return false;
}

QByteArray written(const UpdatePackage& package)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    writeUpdatePackage(stream, package);
    return bytes;
}

void checkMessages(bool applied, const DataBaseUpdater& updater)
{
    if (applied) {
        return;
    }
    bool known = false;
    for (const char* beginning :
         {"Ошибка выполнения запроса;\nSqlError: ", "Ошибка установки версии базы данных;\n",
          "Function: crutchFrdoA. ", "Unknown function_name - ", "Unknown partType - "})
    {
        known = known || updater.lastError().startsWith(beginning);
    }
    require(known, "a failed update tells why");
}

/// The stamp of a package whose version is plain and whose parts leave the stamp alone.
void checkStamp(const UpdatePackage& package, DataBaseUpdater& updater)
{
    static const QRegularExpression plain("\\A[0-9]{1,9}(\\.[0-9]{1,9}){0,5}\\z");
    const QString version = parseUpdateJson(package.header)["update_version"].toString();
    for (const UpdatePart& part : package.parts) {
        if (part.payload.contains("zvsys", Qt::CaseInsensitive) ||
            part.payload.contains("TRIGGER", Qt::CaseInsensitive))
        {
            return;
        }
    }
    if (!plain.match(version).hasMatch()) {
        return;
    }
    const QString expected = updater.isNewerVersion("0.0.0.0", version) ? version : "0.0.0.0";
    require(sqlValue("SELECT DB_VERSION FROM zvsys").toString() == expected,
            "the stamp follows the package");
}

} // namespace

void tryInput(const QByteArray& input)
{
    static QByteArray initialDump; // of the database that stands ready for the next package
    if (initialDump.isNull()) {
        prepareDatabase();
        initialDump = dumpDatabase();
    }
    QByteArray bytes = input;
    UpdatePackage package;
    QDataStream stream(bytes);
    const bool isWhole = readUpdatePackage(stream, package);
    require(!isWhole || written(package) == bytes, "a whole package is written as it was read");
    if (isOutOfBounds(package)) {
        return;
    }

    QBuffer device(&bytes);
    DataBaseUpdater updater;
    const bool applied = updater.runUpdate(&device);
    require(!device.isOpen(), "the package is closed");
    require(QSqlDatabase::database().transaction(), "no transaction stays open");
    QSqlDatabase::database().rollback();
    checkMessages(applied, updater);
    if (applied) {
        checkStamp(package, updater);
    }

    const bool isUnchanged = dumpDatabase() == initialDump;
    require(applied || isUnchanged, "a failed update leaves the database as it was");
    if (!isUnchanged || !QSqlQuery().exec("DROP TABLE zvsys")) {
        prepareDatabase();
    }
}
