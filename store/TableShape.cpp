#include "store/TableShape.h"

#include <QSqlQuery>
#include <QVariant>

#include "store/Schema.h"

TableKind tableKind(const QSqlDatabase& database, const QString& table)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    // Neither a view nor a virtual table has a page of its own.
    query.prepare("SELECT m.type = 'table' AND m.rootpage > 0 AND NOT EXISTS "
                  "(SELECT 1 FROM pragma_table_xinfo(m.name) WHERE hidden <> 0) "
                  "FROM sqlite_master AS m "
                  "WHERE m.type IN ('table', 'view') AND m.name = ? COLLATE NOCASE");
    query.addBindValue(table);
    if (!query.exec() || !query.next()) {
        return TableKind::Missing;
    }
    return query.value(0).toBool() ? TableKind::Stored : TableKind::Computed;
}

QStringList missingColumns(const QSqlDatabase& database, const TableDefinition& table)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    query.exec("PRAGMA table_info(" + table.name + ")");
    QStringList present;
    while (query.next()) {
        present << query.value("name").toString();
    }
    QStringList missing;
    for (const ColumnDefinition& column : table.columns) {
        if (!present.contains(column.name)) {
            missing << column.name;
        }
    }
    return missing;
}
