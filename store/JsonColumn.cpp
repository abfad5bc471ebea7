#include "store/JsonColumn.h"

#include <QDebug>
#include <QJsonDocument>
#include <QSqlError>
#include <QSqlQuery>

namespace {

/// True if the column was read; else logs why not.
bool checkRead(const JsonColumn& column, const JsonLogLines& log)
{
    switch (column.status) {
    case JsonColumn::Status::Ok:
        return true;
    case JsonColumn::Status::QueryFailed:
        qDebug() << log.selectFailed;
        qDebug() << column.error;
        return false;
    case JsonColumn::Status::NotAnObject:
        break;
    }
    qDebug() << log.notAnObject;
    return false;
}

bool hasElement(const QJsonArray& array, int position)
{
    return position >= 0 && position < array.size();
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

JsonColumn readJsonColumn(const QString& statement)
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

bool writeJsonColumn(const QString& statement, const QString& placeholder, const QByteArray& json,
                     const QVariant& id, QString* error)
{
    QSqlQuery query;
    const bool isPrepared = query.prepare(statement);
    query.bindValue(placeholder, json);
    query.bindValue(":Id", id.toString());
    if (isPrepared && query.exec()) {
        return true;
    }
    if (error) {
        *error = query.lastError().text();
    }
    return false;
}

bool changeJsonArray(const JsonArrayColumn& column, const QVariant& id, const JsonLogLines& log,
                     const JsonArrayChange& change, QJsonObject& object)
{
    JsonColumn row = column.read(id);
    if (!checkRead(row, log)) {
        return false;
    }
    QJsonArray array = row.object.value(column.key).toArray();
    if (!change(array)) {
        return false;
    }
    row.object[column.key] = array;
    QString error;
    if (!column.write(id, row.object, &error)) {
        qDebug() << log.writeFailed;
        qDebug() << error;
        return false;
    }
    object = row.object;
    return true;
}

bool removeElement(QJsonArray& array, int position)
{
    if (!hasElement(array, position)) {
        return false;
    }
    array.removeAt(position);
    return true;
}

bool replaceElement(QJsonArray& array, int position, const QJsonValue& value)
{
    if (!hasElement(array, position)) {
        return false;
    }
    array.replace(position, value);
    return true;
}
