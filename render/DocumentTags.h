#pragma once

#include <QJsonObject>
#include <QSqlQuery>
#include <QString>
#include <QVariant>
#include <QVector>

#include <optional>

/// Expands many texts for one stored document. Each text reads the document anew, by a statement
/// that is prepared once; what is made of the row is made anew only when the row has changed.
class DocumentTags
{
public:
    explicit DocumentTags(const QVariant& docId);

    /// expandTags() for the document. If it cannot be read, the text comes back unchanged and the
    /// driver's text goes into `error` (may be null).
    QString expand(const QString& text, QString* error);

    /// The same, but nothing if the document cannot be read.
    std::optional<QString> tryExpand(const QString& text, QString* error);

private:
    /// Takes over the query's current row; true if it differs from the one before.
    bool takeRow();

    QSqlQuery m_query;
    bool m_isPrepared;
    QVector<QVariant> m_row; ///< all columns, as read last
    QJsonObject m_values;
    QJsonObject m_content;
};
