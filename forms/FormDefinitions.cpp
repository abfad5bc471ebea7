#include "forms/FormDefinitions.h"

#include <QJsonDocument>
#include <QSqlError>
#include <QSqlQuery>

const QMap<int, QString> fieldTypeNames = {
    {FieldType::string, "Строка"}, {FieldType::list, "Список"},   {FieldType::counter, "Счетчик"},
    {FieldType::date, "Дата"},     {FieldType::table, "Таблица"}, {FieldType::text, "Текст"}};

QMap<int, QString> docTypeNames;

const QString emptyFormFields = QStringLiteral("{\n\t\"fields\":\n\t\t[\n\t\t]\n}");
const QString emptyListItems = QStringLiteral("{\n\t\"items\":\n\t\t[\n\t\t]\n}");

namespace {

JsonColumn readColumn(const QString& statement)
{
    JsonColumn column;
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.exec(statement)) {
        column.status = JsonColumn::Status::QueryFailed;
        column.error = query.lastError().text();
        return column;
    }
    if (!query.next()) {
        return column;
    }
    bool isObject = false;
    column.object = parseJsonColumn(query.value(0), &isObject);
    column.status = isObject ? JsonColumn::Status::Ok : JsonColumn::Status::NotAnObject;
    return column;
}

bool writeColumn(const QString& statement, const QString& placeholder, const QJsonObject& object,
                 const QVariant& id, QString* error)
{
    QSqlQuery query;
    const bool prepared = query.prepare(statement);
    query.bindValue(placeholder, QJsonDocument(object).toJson());
    query.bindValue(":Id", id.toString());
    if (prepared && query.exec()) {
        return true;
    }
    if (error) {
        *error = query.lastError().text();
    }
    return false;
}

} // namespace

QJsonObject parseJsonColumn(const QVariant& value, bool* ok)
{
    const QJsonDocument document = QJsonDocument::fromJson(value.toByteArray());
    if (ok) {
        *ok = document.isObject();
    }
    return document.object();
}

JsonColumn readFormFields(const QVariant& formId)
{
    return readColumn("SELECT FIELDS FROM forms WHERE ID = " + formId.toString() + ";");
}

bool writeFormFields(const QVariant& formId, const QJsonObject& fields, QString* error)
{
    return writeColumn("UPDATE forms SET FIELDS = :Fields WHERE ID = :Id", ":Fields", fields,
                       formId, error);
}

JsonColumn readListItems(const QVariant& listId)
{
    return readColumn("SELECT LIST_ITEMS FROM lists WHERE ID = " + listId.toString() + ";");
}

bool writeListItems(const QVariant& listId, const QJsonObject& items, QString* error)
{
    return writeColumn("UPDATE lists SET LIST_ITEMS = :Items WHERE ID = :Id", ":Items", items,
                       listId, error);
}
