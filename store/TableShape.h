#pragma once

#include <QString>
#include <QStringList>

class QSqlDatabase;
struct TableDefinition;

/// What stands behind the name of a table.
enum class TableKind
{
    Missing, ///< nothing, or the database can't be read
    Stored,  ///< rows that stand in the file
    Computed ///< a view, a virtual table or computed columns: rows without end, values of any size
};

TableKind tableKind(const QSqlDatabase& database, const QString& table);

/// The columns of the definition that the table lacks; all if there is no table.
QStringList missingColumns(const QSqlDatabase& database, const TableDefinition& table);
