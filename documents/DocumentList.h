#pragma once

#include <QString>
#include <QVariant>

#include <array>

class DocumentFields;
class QSqlQuery;
class QTableWidget;

// The rows of the document list: a table of four columns whose first one carries the document's
// identifier in Qt::UserRole.

/// What the list shows of a document.
struct DocumentListRow
{
    QVariant id;
    std::array<QString, 4> cells; ///< person, class, document type, date of issue as stored
};

/// The row of a document that a dialog holds.
DocumentListRow documentListRow(const QVariant& id, const DocumentFields& fields);

/// Puts the four cells of a document into a row of the table, which must not be sorting: a cell set
/// into the sort column of a sorted table would take its row elsewhere.
void setDocumentListRow(QTableWidget* table, int row, const DocumentListRow& document);

/// Fills the empty table with the result of a query over all columns of `docs`, in the result's
/// order or, if the table is sorted, in the header's. Costs about n log n.
void fillDocumentList(QTableWidget* table, QSqlQuery& documents);
