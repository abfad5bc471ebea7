#include "store/SqlLog.h"

#include <QDebug>
#include <QSqlError>
#include <QSqlQuery>

void logSqlFailure(const char* what, const QSqlQuery& query)
{
    qDebug() << what;
    qDebug() << query.lastError().text();
}

void logSqlFailureWithQuery(const char* what, const QSqlQuery& query)
{
    logSqlFailure(what, query);
    qDebug() << query.lastQuery();
}

void logSqlError(const QSqlQuery& query)
{
    qDebug().noquote() << "sqlError: " + query.lastError().text();
}
