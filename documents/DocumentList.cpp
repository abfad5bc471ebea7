#include "documents/DocumentList.h"

#include <QHeaderView>
#include <QSet>
#include <QSignalBlocker>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStringBuilder>
#include <QTableWidget>

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "documents/DocumentFields.h"
#include "forms/FormDefinitions.h"

namespace {

constexpr int personColumn = 0;

/// A cell that holds its text and its identifier as they are, where the base class keeps a vector
/// of variants: a list of a hundred thousand documents is filled and sorted in half the time. The
/// order is that of the base class.
class DocumentCell : public QTableWidgetItem
{
public:
    DocumentCell(QString text, const QVariant& id)
        : QTableWidgetItem(cellType)
        , m_text(std::move(text))
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
        return other.type() == cellType ? m_text < static_cast<const DocumentCell&>(other).m_text
                                        : QTableWidgetItem::operator<(other);
    }

private:
    static constexpr int cellType = UserType + 1; // of no other class's cells in this table

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
    return lname % QChar(' ') % fname % QChar(' ') % mname; // one allocation a row
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

/// A text with its first characters at hand: most comparisons go no further, and never to the
/// memory where the text lies.
class SortKey
{
public:
    SortKey(const QString& text, int row)
        : m_begin(beginning(text))
        , m_text(&text)
        , m_row(row)
    {
    }

    int row() const { return m_row; }

    /// By text; equal ones keep their order.
    bool isBefore(const SortKey& other, bool ascending) const
    {
        if (m_begin != other.m_begin) {
            return (m_begin < other.m_begin) == ascending;
        }
        const int order = m_text->compare(*other.m_text);
        return order == 0 ? m_row < other.m_row : (order < 0) == ascending;
    }

private:
    using Beginning = std::array<quint64, 3>;

    /// Compares as the first twelve characters do; missing ones come before all others.
    static Beginning beginning(const QString& text)
    {
        constexpr int perWord = 4;
        Beginning words{};
        const int count = std::min(text.size(), perWord * static_cast<int>(words.size()));
        for (int i = 0; i < count; ++i) {
            const int shift = 16 * (perWord - 1 - i % perWord);
            words[i / perWord] |= quint64(text.at(i).unicode()) << shift;
        }
        return words;
    }

    Beginning m_begin;
    const QString* m_text;
    int m_row;
};

/// The numbers of the rows in the order in which the table itself would sort them by the column.
std::vector<int> sortedOrder(const std::vector<DocumentListRow>& rows, int column, bool ascending)
{
    std::vector<SortKey> keys;
    keys.reserve(rows.size());
    for (const DocumentListRow& row : rows) {
        keys.emplace_back(row.cells[column], static_cast<int>(keys.size()));
    }
    std::sort(keys.begin(), keys.end(), [ascending](const SortKey& left, const SortKey& right) {
        return left.isBefore(right, ascending);
    });
    std::vector<int> order;
    order.reserve(keys.size());
    for (const SortKey& key : keys) {
        order.push_back(key.row());
    }
    return order;
}

/// The numbers of the rows in the order in which the table is to show them.
std::vector<int> orderInTable(const std::vector<DocumentListRow>& rows, const QTableWidget* table)
{
    const QHeaderView* header = table->horizontalHeader();
    const int column = header->sortIndicatorSection();
    if (table->isSortingEnabled() && column >= 0 && column < header->count()) {
        return sortedOrder(rows, column, header->sortIndicatorOrder() == Qt::AscendingOrder);
    }
    std::vector<int> order(rows.size());
    std::iota(order.begin(), order.end(), 0);
    return order;
}

/// While it lives no column of the table is the sorted one: cells stay where they are set, and the
/// rows are not sorted again at the end.
class SortColumnPause
{
public:
    explicit SortColumnPause(QTableWidget* table)
        : m_header(table->horizontalHeader())
        , m_column(m_header->sortIndicatorSection())
    {
        show(-1);
    }
    ~SortColumnPause() { show(m_column); }
    SortColumnPause(const SortColumnPause&) = delete;
    SortColumnPause& operator=(const SortColumnPause&) = delete;

private:
    void show(int column)
    {
        const QSignalBlocker blocker(m_header); // the table would sort
        m_header->setSortIndicator(column, m_header->sortIndicatorOrder());
    }

    QHeaderView* m_header;
    int m_column;
};

/// Puts the rows into the empty table. The views hear of all cells at once: a signal for each of a
/// hundred thousand rows' cells takes longer than the cells themselves.
void putRows(QTableWidget* table, const std::vector<DocumentListRow>& rows,
             const std::vector<int>& order)
{
    table->setRowCount(static_cast<int>(rows.size()));
    if (rows.empty()) {
        return;
    }
    QAbstractItemModel* model = table->model();
    {
        const QSignalBlocker blocker(model);
        for (int row = 0; row < table->rowCount(); ++row) {
            setDocumentListRow(table, row, rows[order[row]]);
        }
    }
    emit model->dataChanged(model->index(0, 0),
                            model->index(table->rowCount() - 1, table->columnCount() - 1));
}

} // namespace

DocumentListRow documentListRow(const QVariant& id, const DocumentFields& fields)
{
    return {id,
            {personName(fields.lname(), fields.fname(), fields.mname()), fields.docGroup(),
             docTypeNames[fields.docType()], fields.issueDate()}};
}

// The name, which no other row shares, is copied: names that lie in memory in the order of the rows
// are freed and compared in a fraction of the time.
void setDocumentListRow(QTableWidget* table, int row, const DocumentListRow& document)
{
    for (int column = 0; column < static_cast<int>(document.cells.size()); ++column) {
        const QString& text = document.cells[column];
        auto* cell = column == personColumn
                         ? new DocumentCell(QString(text.constData(), text.size()), document.id)
                         : new DocumentCell(text, QVariant());
        table->setItem(row, column, cell);
    }
}

void fillDocumentList(QTableWidget* table, QSqlQuery& documents)
{
    const std::vector<DocumentListRow> rows = readRows(documents);
    // Cells set into the sort column of a sorting table would tear rows apart. So the rows are
    // brought into the header's order before, and the cells lie in memory in that order.
    const std::vector<int> order = orderInTable(rows, table);
    const SortColumnPause pause(table);
    putRows(table, rows, order);
}
