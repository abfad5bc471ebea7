#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QVariant>

#include <functional>

// JSON objects in columns of the database. They are always read, changed and written whole.

/// What reading a JSON column gave.
struct JsonColumn
{
    enum class Status
    {
        Ok,          ///< `object` holds the parsed object
        QueryFailed, ///< the statement failed, `error` holds the driver's text
        NotAnObject  ///< no such row, or its text is not a JSON object
    };

    Status status = Status::NotAnObject;
    QJsonObject object;
    QString error;
};

/// Parses the value of a JSON column, stored as text or as bytes, always as UTF-8. Anything that is
/// not an object gives an empty object and false in `ok` (may be null).
QJsonObject parseJsonColumn(const QVariant& value, bool* ok = nullptr);

/// Runs a statement and reads the object in the first column of its first row.
JsonColumn readJsonColumn(const QString& statement);

/// Runs a statement with the JSON text bound to the placeholder and the identifier to ":Id". On
/// failure returns false and puts the driver's text into `error` (may be null).
bool writeJsonColumn(const QString& statement, const QString& placeholder, const QByteArray& json,
                     const QVariant& id, QString* error);

/// An array inside a JSON column: its key, and how the column of a row is read and written.
struct JsonArrayColumn
{
    QString key;
    std::function<JsonColumn(const QVariant& id)> read;
    std::function<bool(const QVariant& id, const QJsonObject& object, QString* error)> write;
};

/// What changing such an array writes to the log, by what failed. The driver's text follows the
/// first and the third.
struct JsonLogLines
{
    const char* selectFailed;
    const char* notAnObject;
    const char* writeFailed;
};

/// Changes an array and returns true, or returns false to leave the stored text as it is.
using JsonArrayChange = std::function<bool(QJsonArray& array)>;

/// Reads the array of a row, lets `change` work on it and writes the row's whole object back.
/// Returns true if it was written; the object as written is then in `object`.
bool changeJsonArray(const JsonArrayColumn& column, const QVariant& id, const JsonLogLines& log,
                     const JsonArrayChange& change, QJsonObject& object);

/// Removes the element at the position; false if there is none.
bool removeElement(QJsonArray& array, int position);

/// Replaces the element at the position; false if there is none.
bool replaceElement(QJsonArray& array, int position, const QJsonValue& value);
