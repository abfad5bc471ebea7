#include "batch/BlankOffsets.h"

#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>

#include "app/AppHelpers.h"
#include "blanks/BlankRecord.h"
#include "render/page/PageRows.h"

namespace {

const char* const connectionName = "print-offsets";

/// The blank's row is the current one afterwards, if there is one.
bool select(QSqlQuery& query, const QVariant& id)
{
    query.setForwardOnly(true);
    query.prepare("SELECT * FROM blanks WHERE ID = ?");
    query.addBindValue(id);
    return query.exec();
}

bool areSame(const QSqlRecord& a, const QSqlRecord& b)
{
    bool same = a.count() == b.count();
    for (int i = 0; same && i < a.count(); ++i) {
        same = a.fieldName(i) == b.fieldName(i) && a.isNull(i) == b.isNull(i) &&
               a.value(i) == b.value(i);
    }
    return same;
}

BlankOffsets::Result fail(QSqlDatabase& database, const QSqlError& reason, QString* error)
{
    if (error) {
        *error = reason.text().simplified();
    }
    database.rollback();
    return BlankOffsets::Result::Failed;
}

/// Within one transaction, so that nobody changes the blank between the look and the write.
BlankOffsets::Result replace(QSqlDatabase& database, const QSqlRecord& row, const QPoint& offsets,
                             QString* error)
{
    QSqlQuery query(database);
    if (!query.exec("BEGIN IMMEDIATE") || !select(query, row.value("ID"))) {
        return fail(database, query.lastError(), error);
    }
    const bool isSame = query.next() && areSame(query.record(), row);
    query.finish();
    if (!isSame) {
        query.exec("ROLLBACK");
        return BlankOffsets::Result::Changed;
    }
    query.prepare("UPDATE blanks SET OFFSET_X = ?, OFFSET_Y = ? WHERE ID = ?");
    query.addBindValue(offsets.x());
    query.addBindValue(offsets.y());
    query.addBindValue(row.value("ID"));
    if (!query.exec() || !query.exec("COMMIT")) {
        return fail(database, query.lastError(), error);
    }
    return BlankOffsets::Result::Written;
}

} // namespace

BlankOffsets::BlankOffsets(const QSqlRecord& row, const BlankPaper& paper)
    : m_row(row)
    , m_paper(paper)
{
}

std::optional<BlankOffsets> BlankOffsets::read(const QVariant& id, QString* error)
{
    QSqlQuery query;
    if (select(query, id) && query.next()) {
        const std::optional<PageBlank> page = PageBlank::read(id, PageBlank(), error);
        return page ? std::make_optional(BlankOffsets(query.record(), page->paper()))
                    : std::nullopt;
    }
    if (error) {
        *error = query.lastError().isValid() ? query.lastError().text().simplified()
                                             : QString("такого бланка больше нет");
    }
    return std::nullopt;
}

QString BlankOffsets::name() const
{
    return shownBlankName(m_row.value("NAME").toString(), m_row.value("ID"));
}

QPoint BlankOffsets::offsets() const
{
    return {m_row.value("OFFSET_X").toInt(), m_row.value("OFFSET_Y").toInt()};
}

BlankOffsets::Result BlankOffsets::write(const QPoint& offsets, QString* error) const
{
    const QString path = appFilePath("docs.db");
    Result result = Result::Failed;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", connectionName);
        database.setDatabaseName(path);
        database.setConnectOptions("QSQLITE_BUSY_TIMEOUT=1000");
        if (!QFileInfo::exists(path)) { // which opening would make
            if (error) {
                *error = "файла базы данных нет";
            }
        } else if (!database.open()) {
            fail(database, database.lastError(), error);
        } else {
            result = replace(database, m_row, offsets, error);
        }
    }
    QSqlDatabase::removeDatabase(connectionName);
    return result;
}
