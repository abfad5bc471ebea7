#include "sample/StandardContent.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "sample/SampleData.h"

namespace {

// What update packages compare their parts against.
const char* const standardVersion = "1.0.0.0";

using ListIds = QHash<QString, int>;

bool insertLists(QSqlDatabase& database, ListIds& ids, QString* error)
{
    QSqlQuery query(database);
    const QJsonArray lists = sampleData("lists")["lists"].toArray();
    for (const QJsonValue& list : lists) {
        const QString name = list["name"].toString();
        const QJsonObject items = {{"items", list["items"]}};
        if (!runStatement(query, "INSERT INTO lists (LIST_NAME, LIST_ITEMS) VALUES (?, ?)",
                          {name, QJsonDocument(items).toJson()}, error))
        {
            return false;
        }
        ids.insert(name, query.lastInsertId().toInt());
    }
    return true;
}

// The data name a list; a stored field refers to it by number, a stored column by a number as text.
QJsonObject resolvedField(QJsonObject field, const ListIds& ids)
{
    if (field.contains("list")) {
        field["list"] = ids.value(field["list"].toString());
    }
    if (!field.contains("content")) {
        return field;
    }
    QJsonArray columns;
    const QJsonArray named = field["content"].toArray();
    for (const QJsonValue& value : named) {
        QJsonObject column = value.toObject();
        if (column.contains("listID")) {
            column["listID"] = QString::number(ids.value(column["listID"].toString()));
        }
        columns.append(column);
    }
    field["content"] = columns;
    return field;
}

QJsonObject resolvedFields(const QJsonArray& named, const ListIds& ids)
{
    QJsonArray fields;
    for (const QJsonValue& field : named) {
        fields.append(resolvedField(field.toObject(), ids));
    }
    return {{"fields", fields}};
}

bool insertForms(QSqlDatabase& database, const ListIds& ids, QString* error)
{
    QSqlQuery query(database);
    const QJsonArray forms = sampleData("forms")["forms"].toArray();
    for (const QJsonValue& form : forms) {
        const QJsonObject fields = resolvedFields(form["fields"].toArray(), ids);
        if (!runStatement(
                query,
                "INSERT INTO forms (ID, FORM_NAME, FORM_FULLNAME, FIELDS) VALUES (?, ?, ?, ?)",
                {form["id"].toInt(), form["name"].toString(), form["fullName"].toString(),
                 QJsonDocument(fields).toJson()},
                error))
        {
            return false;
        }
    }
    return true;
}

} // namespace

bool insertStandardContent(QSqlDatabase& database, QString* error)
{
    ListIds ids;
    QSqlQuery query(database);
    return insertLists(database, ids, error) && insertForms(database, ids, error) &&
           runStatement(query, "INSERT INTO zvsys (DB_VERSION) VALUES (?)", {standardVersion},
                        error);
}
