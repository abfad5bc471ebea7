#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QVector>

#include <functional>

/// One column of a table: its name and its declared type.
struct ColumnDefinition
{
    QString name;
    QString type;
};

/// One table of the document database. The order of the columns is the physical one, which
/// readers by position rely on.
struct TableDefinition
{
    QString name;
    QVector<ColumnDefinition> columns;

    /// The statement that makes the table if it does not exist yet.
    QString createStatement() const;
};

/// The six tables of the document database.
const QVector<TableDefinition>& schemaTables();

/// Makes the missing tables in an open database. On failure returns false and puts the driver's
/// text into `error` (may be null).
bool createSchema(const QSqlDatabase& database, QString* error = nullptr);

/// Puts the first rows into a new database that has its tables. On failure returns false and puts
/// the reason into `error` (may be null).
using DatabaseFiller = std::function<bool(QSqlDatabase& database, QString* error)>;

/// Makes a new database file with the tables and the rows that `fill` puts in (none without it).
/// Refuses to touch an existing file, and leaves none behind that is not complete. On failure
/// returns false and puts the reason into `error` (may be null). Works on a connection of its own
/// and leaves the default one alone.
bool createDatabaseFile(const QString& path, QString* error = nullptr,
                        const DatabaseFiller& fill = DatabaseFiller());
