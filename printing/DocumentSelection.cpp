#include "printing/DocumentSelection.h"

#include <QSet>
#include <QSqlError>
#include <QSqlQuery>

#include "store/RecordLookup.h"
#include "store/StoredDate.h"

namespace {

const QString columns =
    "ID, LNAME, FNAME, MNAME, DOC_GROUP, DOC_TYPE, ISSUE_DATE, BLANK_SER, BLANK_NO";

PrintDocument documentOf(const QSqlQuery& row)
{
    PrintDocument document;
    document.id = row.value(0);
    document.surname = row.value(1).toString();
    document.name = row.value(2).toString();
    document.patronymic = row.value(3).toString();
    document.group = row.value(4).toString();
    document.formId = row.value(5);
    document.issueDate = row.value(6).toString();
    document.blankSeries = row.value(7).toString();
    document.blankNumber = row.value(8).toString();
    return document;
}

} // namespace

bool DocumentSelection::load(const DocumentFilter& filter)
{
    m_problem = Problem();
    m_documents.clear();
    m_unknownIds.clear();
    // Nothing that a condition may call is to change the documents.
    QSqlQuery().exec("PRAGMA query_only = ON");
    return filter.ids.isEmpty() ? loadFiltered(filter) : loadIds(filter.ids);
}

bool DocumentSelection::loadIds(const QVector<DocumentFilter::IdRange>& ranges)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.prepare("SELECT " + columns +
                       " FROM docs "
                       "WHERE TEMPLATE = 0 AND ID BETWEEN ? AND ? ORDER BY ID"))
    {
        return failToRead(query);
    }
    QVector<PrintDocument> documents;
    QVector<qint64> unknownIds;
    QSet<qint64> seen;
    for (const DocumentFilter::IdRange& range : ranges) {
        query.addBindValue(range.first);
        query.addBindValue(range.last);
        QVector<PrintDocument> found;
        if (!take(query, found)) {
            return false;
        }
        if (found.isEmpty() && range.first == range.last) {
            unknownIds.append(range.first);
        }
        for (const PrintDocument& document : qAsConst(found)) {
            const qint64 id = document.id.toLongLong();
            if (!seen.contains(id)) {
                seen.insert(id);
                documents.append(document);
            }
        }
    }
    m_documents = documents;
    m_unknownIds = unknownIds;
    return true;
}

bool DocumentSelection::loadFiltered(const DocumentFilter& filter)
{
    QString statement = "SELECT " + columns + " FROM docs WHERE TEMPLATE = 0";
    QVariantList values;
    const auto addTerm = [&](bool wanted, const char* term, const QVariant& value) {
        if (wanted) {
            statement += QLatin1String(term);
            values << value;
        }
    };
    addTerm(!filter.surname.isEmpty(), " AND LNAME LIKE ?", "%" + filter.surname + "%");
    addTerm(!filter.group.isEmpty(), " AND DOC_GROUP LIKE ?", "%" + filter.group + "%");
    if (!filter.type.isEmpty()) {
        QVariant formId;
        if (!formOf(filter.type, formId)) {
            return false;
        }
        addTerm(true, " AND DOC_TYPE = ?", formId);
    }
    addTerm(filter.from.isValid(), " AND ISSUE_DATE >= ?", filter.from.toString(storedDateFormat));
    addTerm(filter.to.isValid(), " AND ISSUE_DATE <= ?", filter.to.toString(storedDateFormat));
    if (!filter.condition.isEmpty()) {
        if (!isCondition(filter.condition)) {
            return false;
        }
        statement += " AND (" + filter.condition + "\n)";
    }
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.prepare(statement + " ORDER BY ID")) {
        return filter.condition.isEmpty() ? failToRead(query) : refuseCondition(query);
    }
    for (const QVariant& value : qAsConst(values)) {
        query.addBindValue(value);
    }
    return take(query, m_documents);
}

// The text goes into a larger statement between parentheses. What SQLite takes there but not by
// itself closes them ("1) OR (1"), and would let templates through; what it takes by itself but not
// there, as a further clause or statement, fails with the larger one.
bool DocumentSelection::isCondition(const QString& text)
{
    QSqlQuery query;
    return query.prepare("SELECT ID FROM docs WHERE " + text) || refuseCondition(query);
}

bool DocumentSelection::refuseCondition(const QSqlQuery& query)
{
    // To the driver alone several statements are an error; the database has no words for it.
    static const QString misuse = "21";
    const QSqlError error = query.lastError();
    return error.nativeErrorCode() == misuse
               ? fail(Problem::Kind::NotOneExpression)
               : fail(Problem::Kind::BadCondition, error.databaseText());
}

bool DocumentSelection::formOf(const QString& idOrName, QVariant& formId)
{
    const QVariantList forms = recordsByIdOrName("forms", "FORM_NAME", idOrName, nullptr);
    if (!forms.isEmpty()) {
        formId = forms.first();
        return true;
    }
    // Documents may have outlived their form.
    bool isNumber = false;
    formId = idOrName.toInt(&isNumber);
    return isNumber || fail(Problem::Kind::NoSuchForm, idOrName);
}

bool DocumentSelection::take(QSqlQuery& query, QVector<PrintDocument>& documents)
{
    QVector<PrintDocument> found;
    if (query.exec()) {
        while (query.next()) {
            found.append(documentOf(query));
        }
    }
    if (query.lastError().isValid()) {
        return failToRead(query);
    }
    documents = found;
    return true;
}

bool DocumentSelection::failToRead(const QSqlQuery& query)
{
    const QSqlError error = query.lastError();
    return fail(Problem::Kind::Unreadable,
                error.databaseText().isEmpty() ? error.driverText() : error.databaseText());
}

bool DocumentSelection::fail(Problem::Kind kind, const QString& detail)
{
    m_problem = {kind, detail};
    return false;
}
