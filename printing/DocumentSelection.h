#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

#include "printing/DocumentFilter.h"
#include "printing/PrintDocument.h"

class QSqlQuery;

/// The documents that a filter chooses from the open database. Templates never count.
class DocumentSelection
{
public:
    /// Why documents could not be chosen.
    struct Problem
    {
        enum class Kind
        {
            None,
            Unreadable,       ///< the documents can't be read; `detail` is the database's reason
            BadCondition,     ///< the condition makes no sense; `detail` is the database's reason
            NotOneExpression, ///< the condition is several statements
            NoSuchForm        ///< `detail` is the ID or name
        };

        Kind kind = Kind::None;
        QString detail;
    };

    /// Reads the documents: in the order of the list of IDs, each once, or else in that of their
    /// IDs. False, with no documents, if they can't be read or the filter makes no sense;
    /// problem() says why.
    bool load(const DocumentFilter& filter);

    const Problem& problem() const { return m_problem; }
    const QVector<PrintDocument>& documents() const { return m_documents; }

    /// IDs that were asked for one by one and are no documents.
    const QVector<qint64>& unknownIds() const { return m_unknownIds; }

private:
    bool loadIds(const QVector<DocumentFilter::IdRange>& ranges);
    bool loadFiltered(const DocumentFilter& filter);
    bool isCondition(const QString& text);
    bool refuseCondition(const QSqlQuery& query);
    bool formOf(const QString& idOrName, QVariant& formId);
    bool take(QSqlQuery& query, QVector<PrintDocument>& documents);
    bool failToRead(const QSqlQuery& query);
    bool fail(Problem::Kind kind, const QString& detail = QString());

    Problem m_problem;
    QVector<PrintDocument> m_documents;
    QVector<qint64> m_unknownIds;
};
