#pragma once

#include <QHash>
#include <QString>
#include <QVariant>
#include <QVector>

#include "exchange/ExchangeTemplate.h"
#include "render/RowTags.h"

class DocumentTags;
class QSqlQuery;

namespace QXlsx {
class Document;
}

/// Writes documents into a workbook's current sheet, one row per document and one cell per line of
/// the mapping.
class DocumentExport
{
public:
    /// The dates are written in the notation `dateFormat` of QDate::toString. The workbook must
    /// outlive the export.
    DocumentExport(QXlsx::Document& workbook, const QVector<ExchangeItem>& items,
                   const QString& dateFormat);

    /// Writes every row of a query over `docs`, in its order, from the sheet row on. Documents
    /// whose rows are not whole are read a second time, once for each cell with a tag to expand.
    void writeDocuments(QSqlQuery& documents, int firstRow);

private:
    /// Where the value of a line comes from.
    enum class Source
    {
        Duplicate,
        Date,
        DocumentName,
        Expansion
    };

    struct Column
    {
        ExchangeItem item;
        Source source;
        int fieldIndex; ///< column of the query for Duplicate, Date and DocumentName
    };

    static Source sourceOf(const QString& tag);
    void bindColumns(const QSqlQuery& documents);
    void writeRow(const QSqlQuery& document, int row);
    QString text(const Column& column, const QSqlQuery& document, DocumentTags* tags) const;
    const QVariant& cellValue(const QString& text);

    QXlsx::Document& m_workbook;
    QVector<ExchangeItem> m_items;
    QString m_dateFormat;
    QVector<Column> m_columns;
    int m_idIndex = -1;
    bool m_expandsTags = false; ///< any column has Source::Expansion
    RowTags m_rowTags;
    QHash<QString, QVariant> m_cellValues; ///< by text: most texts come again in the next rows
};
