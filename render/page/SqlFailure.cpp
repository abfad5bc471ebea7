#include "render/page/SqlFailure.h"

#include <QDebug>
#include <QSqlError>
#include <QSqlQuery>

void tellSqlFailure(const QString& table, const QSqlQuery& query, QString* error)
{
    const QString text = "SQL Error (" + table + "): " + query.lastError().text();
    qDebug() << text;
    if (error) {
        *error = text;
    }
}
