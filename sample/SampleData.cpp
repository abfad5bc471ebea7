#include "sample/SampleData.h"

#include <QFile>
#include <QJsonDocument>
#include <QSqlError>

QJsonObject sampleData(const QString& name)
{
    QFile file(":/sample/" + name + ".json");
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QJsonDocument::fromJson(file.readAll()).object();
}

bool runStatement(QSqlQuery& query, const QString& statement, const QVariantList& values,
                  QString* error)
{
    bool ok = query.prepare(statement);
    for (const QVariant& value : values) {
        query.addBindValue(value);
    }
    ok = ok && query.exec();
    if (!ok && error) {
        *error = query.lastError().text();
    }
    return ok;
}
