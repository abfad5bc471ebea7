#include "DocumentFixture.h"

#include <QJsonDocument>

#include "forms/FormDefinitions.h"

namespace {

QJsonObject joined(QJsonObject object, const QJsonObject& more)
{
    for (auto it = more.begin(); it != more.end(); ++it) {
        object[it.key()] = it.value();
    }
    return object;
}

QString textOf(const QJsonObject& object)
{
    return QJsonDocument(object).toJson();
}

} // namespace

QJsonObject formField(const QString& tag, const QString& name, int type, const QJsonObject& more)
{
    return joined({{"tag", tag}, {"name", name}, {"type", type}}, more);
}

QJsonObject tableColumn(const QString& name, const QString& typeId, const QJsonObject& more)
{
    return joined({{"name", name}, {"typeID", typeId}}, more);
}

QJsonArray oneRow(const QJsonArray& cells)
{
    QJsonArray rows;
    rows.append(cells);
    return rows;
}

int addForm(TempApplication& app, const QString& name, const QJsonArray& fields)
{
    const int id = app.exec("INSERT INTO forms (FORM_NAME, FORM_FULLNAME, FIELDS) VALUES (?, ?, ?)",
                            {name, name, textOf({{"fields", fields}})})
                       .toInt();
    docTypeNames[id] = name;
    return id;
}

int addList(TempApplication& app, const QStringList& items)
{
    const QString text = textOf({{"items", QJsonArray::fromStringList(items)}});
    return app.exec("INSERT INTO lists (LIST_NAME, LIST_ITEMS) VALUES ('list', ?)", {text}).toInt();
}

int rowOfTag(const QTableWidget* table, const QString& tag)
{
    for (int row = 0; row < table->rowCount(); ++row) {
        if (table->item(row, 0)->data(Qt::UserRole).toString() == tag) {
            return row;
        }
    }
    return -1;
}
