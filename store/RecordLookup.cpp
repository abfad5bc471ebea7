#include "store/RecordLookup.h"

#include <QSqlError>
#include <QSqlQuery>

QVariantList recordsByIdOrName(const QString& table, const QString& nameColumn,
                               const QString& idOrName, QString* error)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    const bool isPrepared =
        query.prepare(QString("SELECT ID FROM %1 WHERE CAST(ID AS TEXT) = ? OR %2 = ? "
                              "ORDER BY CAST(ID AS TEXT) = ? DESC, ID")
                          .arg(table, nameColumn));
    for (int i = 0; i < 3; ++i) {
        query.addBindValue(idOrName);
    }
    QVariantList ids;
    if (isPrepared && query.exec()) {
        while (query.next()) {
            ids << query.value(0);
        }
    } else if (error) {
        *error = query.lastError().text();
    }
    // An ID is one row, whatever rows are named like it.
    return !ids.isEmpty() && ids.first().toString() == idOrName ? ids.mid(0, 1) : ids;
}
