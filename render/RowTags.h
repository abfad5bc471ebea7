#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

class QSqlQuery;

/// Expands texts for the documents of a query over `docs`, each from the row that the query is
/// standing on: nothing is read a second time.
class RowTags
{
public:
    RowTags() = default;

    /// Looks at the columns of an executed query.
    explicit RowTags(const QSqlQuery& documents);

    /// True if the query's rows hold what a statement over the document's `ID` would give: every
    /// column of the table `docs`, in its order and without others. Else nothing is to be asked
    /// of the object but this.
    bool isWhole() const { return m_isWhole; }

    /// Takes over the query's current row.
    void takeRow(const QSqlQuery& document);

    /// expandTags() for the row taken over last.
    QString expand(const QString& text) const;

private:
    bool m_isWhole = false;
    QStringList m_tags; ///< of each column; empty for `CONTENT`
    int m_contentIndex = -1;
    QJsonObject m_values;
    QJsonObject m_content;
};
