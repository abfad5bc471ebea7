#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

#include "printing/PrintDocument.h"
#include "tools/PrintOptions.h"

class QSqlQuery;

/// The documents that a command line chooses from the open database. Templates never count.
class DocumentSelection
{
public:
    /// Reads the documents: in the order of the list of IDs, each once, or else in that of their
    /// IDs. False, with no documents, if they can't be read or the filter makes no sense; error()
    /// says why.
    bool load(const PrintOptions::Selection& selection);

    QString error() const { return m_error; }
    const QVector<PrintDocument>& documents() const { return m_documents; }

    /// IDs that were asked for one by one and are no documents.
    const QVector<qint64>& unknownIds() const { return m_unknownIds; }

private:
    bool loadIds(const QVector<PrintOptions::IdRange>& ranges);
    bool loadFiltered(const PrintOptions::Selection& selection);
    bool isCondition(const QString& text);
    bool refuseCondition(const QSqlQuery& query);
    bool formOf(const QString& idOrName, QVariant& formId);
    bool take(QSqlQuery& query, QVector<PrintDocument>& documents);
    bool failToRead(const QSqlQuery& query);
    bool fail(const QString& reason);

    QString m_error;
    QVector<PrintDocument> m_documents;
    QVector<qint64> m_unknownIds;
};
