#include "render/RowTags.h"

#include <QSqlDatabase>
#include <QSqlIndex>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include "render/TagExpansion.h"

namespace {

bool haveSameNames(const QSqlRecord& left, const QSqlRecord& right)
{
    if (left.count() != right.count()) {
        return false;
    }
    for (int i = 0; i < left.count(); ++i) {
        if (left.fieldName(i) != right.fieldName(i)) {
            return false;
        }
    }
    return true;
}

/// A view may compute its values anew with every statement, and without a key an `ID` may stand for
/// several rows.
bool isKey(const QSqlIndex& key)
{
    return key.count() == 1 && key.fieldName(0) == QLatin1String("ID");
}

} // namespace

RowTags::RowTags(const QSqlQuery& documents)
{
    const QSqlDatabase database = QSqlDatabase::database();
    const QSqlRecord record = documents.record();
    m_isWhole =
        haveSameNames(record, database.record("docs")) && isKey(database.primaryIndex("docs"));
    m_contentIndex = record.indexOf("CONTENT");
    for (int i = 0; i < record.count(); ++i) {
        m_tags.append(documentColumnTag(record.fieldName(i)));
    }
}

void RowTags::takeRow(const QSqlQuery& document)
{
    for (int i = 0; i < m_tags.size(); ++i) {
        if (!m_tags[i].isEmpty()) {
            m_values.insert(m_tags[i], document.value(i).toString());
        }
    }
    m_content = documentTagContent(document.value(m_contentIndex));
}

QString RowTags::expand(const QString& text) const
{
    return expandTags(text, m_values, m_content);
}
