#include "support/PrintFixture.h"

#include <QJsonDocument>
#include <QRectF>
#include <QStringList>
#include <QVector>

#include "forms/FormDefinitions.h"

QVariant PrintFixture::addDocument(const QJsonObject& content, const QVariantMap& columns)
{
    QVariantMap all = {{"BLANK_SER", "АБ"},
                       {"BLANK_NO", "000123"},
                       {"FNAME", "Иван"},
                       {"LNAME", "Иванов"},
                       {"MNAME", "Петрович"},
                       {"BIRTH_DATE", "2003-05-05"},
                       {"DOC_TYPE", 1},
                       {"DOC_GROUP", "9А"},
                       {"ISSUE_DATE", "2021-06-25"},
                       {"EDIT_DATE", "2021-06-25"},
                       {"DUPLICATE", 0},
                       {"TEMPLATE", 0},
                       {"TEMPLATE_NAME", ""},
                       {"CONTENT", jsonText(content)}};
    for (auto it = columns.begin(); it != columns.end(); ++it) {
        all[it.key()] = it.value();
    }
    return insert("docs", all);
}

QVariant PrintFixture::addBlank(const QJsonArray& items, const QVariantMap& columns)
{
    QVariantMap all = {{"NAME", "Бланк"},
                       {"FORM_ID", 1},
                       {"PAPER_FORMAT", 42},
                       {"PAPER_ORIENTATION", 0},
                       {"PAGES", 1},
                       {"FONT", "Liberation Serif"},
                       {"FONT_SIZE", 12},
                       {"BACKGROUND_IMG", QVariant()},
                       {"SIZE_WIDTH", 297},
                       {"SIZE_HEIGHT", 210},
                       {"OFFSET_X", 0},
                       {"OFFSET_Y", 0},
                       {"CONTENT", jsonText({{"fields", items}}).toUtf8()}};
    for (auto it = columns.begin(); it != columns.end(); ++it) {
        all[it.key()] = it.value();
    }
    return insert("blanks", all);
}

QVariant PrintFixture::insert(const QString& table, const QVariantMap& columns)
{
    const QStringList names = columns.keys();
    QStringList marks;
    for (int i = 0; i < names.size(); ++i) {
        marks << "?";
    }
    return exec("INSERT INTO " + table + " (" + names.join(", ") + ") VALUES (" + marks.join(", ") +
                    ")",
                columns.values());
}

QJsonObject blankItem(int type, const QString& value, const QRectF& frame, const QJsonObject& more)
{
    QJsonObject item = {
        {"type", type},       {"value", value},          {"pos_x", frame.x()},
        {"pos_y", frame.y()}, {"size_w", frame.width()}, {"size_h", frame.height()}};
    for (auto it = more.begin(); it != more.end(); ++it) {
        item[it.key()] = it.value();
    }
    return item;
}

QJsonObject valueEntry(int type, const QJsonValue& value)
{
    return {{"name", "Поле"}, {"type", type}, {"value", value}};
}

QJsonObject tableEntry(const QVector<QStringList>& rows)
{
    QJsonArray cells;
    for (const QStringList& row : rows) {
        cells.append(QJsonArray::fromStringList(row));
    }
    QJsonArray columns;
    for (int i = 0; i < rows.value(0).size(); ++i) {
        columns.append(QJsonObject{{"name", QString("Столбец %1").arg(i + 1)}, {"type", 0}});
    }
    return {
        {"name", "Таблица"}, {"type", FieldType::table}, {"columns", columns}, {"value", cells}};
}

QString jsonText(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}
