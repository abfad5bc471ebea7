#include "forms/FormDefinitions.h"

#include <QJsonDocument>

const QMap<int, QString> fieldTypeNames = {
    {FieldType::string, "Строка"}, {FieldType::list, "Список"},   {FieldType::counter, "Счетчик"},
    {FieldType::date, "Дата"},     {FieldType::table, "Таблица"}, {FieldType::text, "Текст"}};

QMap<int, QString> docTypeNames;

const QString emptyFormFields = QStringLiteral("{\n\t\"fields\":\n\t\t[\n\t\t]\n}");
const QString emptyListItems = QStringLiteral("{\n\t\"items\":\n\t\t[\n\t\t]\n}");

JsonColumn readFormFields(const QVariant& formId)
{
    return readJsonColumn("SELECT FIELDS FROM forms WHERE ID = " + formId.toString() + ";");
}

bool writeFormFields(const QVariant& formId, const QJsonObject& fields, QString* error)
{
    return writeJsonColumn("UPDATE forms SET FIELDS = :Fields WHERE ID = :Id", ":Fields",
                           QJsonDocument(fields).toJson(), formId, error);
}

JsonColumn readListItems(const QVariant& listId)
{
    return readJsonColumn("SELECT LIST_ITEMS FROM lists WHERE ID = " + listId.toString() + ";");
}

bool writeListItems(const QVariant& listId, const QJsonObject& items, QString* error)
{
    return writeJsonColumn("UPDATE lists SET LIST_ITEMS = :Items WHERE ID = :Id", ":Items",
                           QJsonDocument(items).toJson(), listId, error);
}
