#include "exchange/ExchangeTemplate.h"

#include <QJsonArray>
#include <QJsonObject>

const QString emptyExchangeFields = QStringLiteral("{\n\t\"items\":\n\t\t[\n\t\t]\n}");

QString ExchangeItem::cellName(int row) const
{
    return column + QString::number(row);
}

QVector<ExchangeItem> exchangeItems(const QJsonObject& fields)
{
    QVector<ExchangeItem> items;
    const QJsonArray array = fields["items"].toArray();
    items.reserve(array.size());
    for (const QJsonValue& value : array) {
        const QJsonObject item = value.toObject();
        items.append({item["col"].toString(), item["tag"].toString()});
    }
    return items;
}

JsonColumn readExchangeFields(const QVariant& templateId)
{
    return readJsonColumn("SELECT FIELDS FROM export WHERE ID = " + templateId.toString() + ";");
}

bool writeExchangeFields(const QVariant& templateId, const QJsonObject& fields,
                         QJsonDocument::JsonFormat format, QString* error)
{
    return writeJsonColumn("UPDATE export SET FIELDS = :Items WHERE ID = :Id", ":Items",
                           QJsonDocument(fields).toJson(format), templateId, error);
}
