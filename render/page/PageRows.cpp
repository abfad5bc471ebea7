#include "render/page/PageRows.h"

#include <QSqlQuery>
#include <QSqlRecord>

#include "blanks/FontFamily.h"
#include "render/TagExpansion.h"
#include "render/page/SqlFailure.h"
#include "store/JsonColumn.h"

namespace {

/// Runs a statement that has to yield a row of `table`.
bool selectRow(QSqlQuery& query, const QString& statement, const QString& table, QString* error)
{
    query.setForwardOnly(true);
    const bool found = query.exec(statement) && query.next();
    if (!found) {
        tellSqlFailure(table, query, error);
    }
    return found;
}

QVector<QVariant> columnsOf(const QSqlQuery& row)
{
    const int count = row.record().count();
    QVector<QVariant> columns;
    columns.reserve(count);
    for (int i = 0; i < count; ++i) {
        columns.append(row.value(i));
    }
    return columns;
}

} // namespace

std::optional<PageDocument> PageDocument::read(const QVariant& id, const PageDocument& known,
                                               QString* error)
{
    QSqlQuery query;
    if (!selectRow(query, "SELECT * FROM docs WHERE ID = " + id.toString() + ";", "docs", error)) {
        return std::nullopt;
    }
    const QVector<QVariant> columns = columnsOf(query);
    if (id == known.id && columns == known.columns) {
        return known;
    }
    return PageDocument{columns, id, documentTagValues(query), documentTagContent(query)};
}

std::optional<PageBlank> PageBlank::read(const QVariant& id, const PageBlank& known, QString* error)
{
    QSqlQuery query;
    if (!selectRow(query, "SELECT * FROM blanks WHERE ID = " + id.toString(), "blanks", error)) {
        return std::nullopt;
    }
    PageBlank row;
    row.columns = columnsOf(query);
    if (id == known.id && row.columns == known.columns) {
        return known;
    }
    row.id = id;
    row.name = query.value("NAME").toString();
    row.orientation = query.value("PAPER_ORIENTATION").toInt();
    row.format = query.value("PAPER_FORMAT").toInt();
    row.size = QSizeF(query.value("SIZE_WIDTH").toInt(), query.value("SIZE_HEIGHT").toInt());
    row.storedSize = BlankPaper::storedSize(query);
    row.storedFormat = query.value("PAPER_FORMAT").toString();
    row.offset = QPoint(query.value("OFFSET_X").toInt(), query.value("OFFSET_Y").toInt());
    row.fontFamily = query.value("FONT").toString();
    row.font = QFont(searchableFamily(row.fontFamily));
    const int fontSize = query.value("FONT_SIZE").toInt();
    if (fontSize > 0) {
        row.font.setPointSize(fontSize);
    }
    row.background = query.value("BACKGROUND_IMG");
    row.items = parseJsonColumn(query.value("CONTENT"))["fields"].toArray();
    return row;
}
