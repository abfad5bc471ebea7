#include "printing/DocumentSelection.h"

#include <QSet>
#include <QSqlError>
#include <QSqlQuery>

#include "tools/UserLanguage.h"

bool DocumentSelection::load(const PrintOptions::Selection& selection)
{
    m_error.clear();
    m_documents.clear();
    m_unknownIds.clear();
    // Nothing that a condition may call is to change the documents.
    QSqlQuery().exec("PRAGMA query_only = ON");
    return selection.ids.isEmpty() ? loadFiltered(selection) : loadIds(selection.ids);
}

bool DocumentSelection::loadIds(const QVector<PrintOptions::IdRange>& ranges)
{
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.prepare("SELECT ID, LNAME, FNAME FROM docs "
                       "WHERE TEMPLATE = 0 AND ID BETWEEN ? AND ? ORDER BY ID"))
    {
        return failToRead(query);
    }
    QVector<PrintDocument> documents;
    QVector<qint64> unknownIds;
    QSet<qint64> seen;
    for (const PrintOptions::IdRange& range : ranges) {
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

bool DocumentSelection::loadFiltered(const PrintOptions::Selection& selection)
{
    QString statement = "SELECT ID, LNAME, FNAME FROM docs WHERE TEMPLATE = 0";
    QVariantList values;
    const auto addTerm = [&](bool wanted, const char* term, const QVariant& value) {
        if (wanted) {
            statement += QLatin1String(term);
            values << value;
        }
    };
    addTerm(!selection.surname.isEmpty(), " AND LNAME LIKE ?", "%" + selection.surname + "%");
    addTerm(!selection.group.isEmpty(), " AND DOC_GROUP LIKE ?", "%" + selection.group + "%");
    if (!selection.type.isEmpty()) {
        QVariant formId;
        if (!formOf(selection.type, formId)) {
            return false;
        }
        addTerm(true, " AND DOC_TYPE = ?", formId);
    }
    addTerm(selection.from.isValid(), " AND ISSUE_DATE >= ?",
            selection.from.toString("yyyy-MM-dd"));
    addTerm(selection.to.isValid(), " AND ISSUE_DATE <= ?", selection.to.toString("yyyy-MM-dd"));
    if (!selection.condition.isEmpty()) {
        if (!isCondition(selection.condition)) {
            return false;
        }
        statement += " AND (" + selection.condition + "\n)";
    }
    QSqlQuery query;
    query.setForwardOnly(true);
    if (!query.prepare(statement + " ORDER BY ID")) {
        return selection.condition.isEmpty() ? failToRead(query) : refuseCondition(query);
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
    const QString reason = error.nativeErrorCode() == misuse
                               ? inUserLanguage("это не одно выражение", "it is no one expression")
                               : error.databaseText();
    return fail(inUserLanguage("условие не понято: ", "the condition is not understood: ") +
                reason);
}

bool DocumentSelection::formOf(const QString& idOrName, QVariant& formId)
{
    QSqlQuery query;
    query.prepare("SELECT ID FROM forms WHERE CAST(ID AS TEXT) = ? OR FORM_NAME = ? "
                  "ORDER BY CAST(ID AS TEXT) = ? DESC, ID");
    for (int i = 0; i < 3; ++i) {
        query.addBindValue(idOrName);
    }
    if (query.exec() && query.next()) {
        formId = query.value(0);
        return true;
    }
    // Documents may have outlived their form.
    bool isNumber = false;
    formId = idOrName.toInt(&isNumber);
    return isNumber || fail(inUserLanguage("нет формы ", "there is no form ") + idOrName);
}

bool DocumentSelection::take(QSqlQuery& query, QVector<PrintDocument>& documents)
{
    QVector<PrintDocument> found;
    if (query.exec()) {
        while (query.next()) {
            found.append({query.value(0), query.value(1).toString(), query.value(2).toString()});
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
    const QString reason =
        error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    return fail(inUserLanguage("не удалось прочитать документы: ", "can't read the documents: ") +
                reason);
}

bool DocumentSelection::fail(const QString& reason)
{
    m_error = reason;
    return false;
}
