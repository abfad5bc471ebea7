#include "batch/DocumentsModel.h"

#include <QSet>

#include <algorithm>
#include <numeric>

#include "batch/SheetText.h"

namespace {

/// A text as a search compares it: without regard to case, and "ё" counts as "е".
QString searchable(const QString& text)
{
    return text.toCaseFolded().replace(QChar(0x451), QChar(0x435));
}

} // namespace

DocumentsModel::DocumentsModel(QObject* parent)
    : QAbstractTableModel(parent)
{
}

void DocumentsModel::setDocuments(const QVector<PrintDocument>& documents,
                                  const QHash<qint64, QString>& formNames)
{
    QSet<qint64> ticked;
    for (const Entry& entry : m_documents) {
        if (entry.isTicked) {
            ticked << entry.document.id.toLongLong();
        }
    }
    beginResetModel();
    m_formNames = formNames;
    m_documents.clear();
    m_documents.reserve(documents.size());
    m_tickedCount = 0;
    for (const PrintDocument& document : documents) {
        const QString person = personOf(document);
        const bool isTicked = ticked.contains(document.id.toLongLong());
        m_tickedCount += isTicked ? 1 : 0;
        m_documents.push_back(
            {document, person,
             searchable(person + ' ' + document.blankSeries + ' ' + document.blankNumber),
             isTicked});
    }
    order();
    show();
    endResetModel();
    emit ticksChanged();
}

void DocumentsModel::setFilter(const ListFilter& filter)
{
    beginResetModel();
    m_filter = filter;
    show();
    endResetModel();
}

int DocumentsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int DocumentsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant DocumentsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Entry& entry = m_documents[m_shown[index.row()]];
    if (role == Qt::DisplayRole && index.column() != TickColumn) {
        return text(entry, index.column());
    }
    if (role == Qt::CheckStateRole && index.column() == TickColumn) {
        return entry.isTicked ? Qt::Checked : Qt::Unchecked;
    }
    if (role == Qt::AccessibleTextRole && index.column() == TickColumn) {
        return entry.isTicked ? "отмечен" : "не отмечен";
    }
    return {};
}

bool DocumentsModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || index.column() != TickColumn || role != Qt::CheckStateRole) {
        return false;
    }
    setTicked({index.row()}, value.toInt() == Qt::Checked);
    return true;
}

Qt::ItemFlags DocumentsModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return index.column() == TickColumn ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant DocumentsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const char* const captions[ColumnCount] = {
        "", "ФИО", "Класс", "Тип документа", "Дата выдачи", "Серия", "Номер"};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    return QString(captions[section]);
}

void DocumentsModel::sort(int column, Qt::SortOrder sortOrder)
{
    if (column < 0 || column >= ColumnCount) {
        return;
    }
    beginResetModel();
    m_sortColumn = column;
    m_sortOrder = sortOrder;
    order();
    show();
    endResetModel();
}

void DocumentsModel::setTicked(const QVector<int>& rows, bool ticked)
{
    for (const int row : rows) {
        Entry& entry = m_documents[m_shown[row]];
        m_tickedCount += int(ticked) - int(entry.isTicked);
        entry.isTicked = ticked;
    }
    if (rows.isEmpty()) {
        return;
    }
    const auto [first, last] = std::minmax_element(rows.cbegin(), rows.cend());
    emit dataChanged(index(*first, TickColumn), index(*last, TickColumn));
    emit ticksChanged();
}

void DocumentsModel::setAllShownTicked(bool ticked)
{
    QVector<int> rows(rowCount());
    std::iota(rows.begin(), rows.end(), 0);
    setTicked(rows, ticked);
}

const PrintDocument& DocumentsModel::document(int row) const
{
    return m_documents[m_shown[row]].document;
}

int DocumentsModel::rowOf(const QVariant& id) const
{
    const auto found = std::find_if(m_shown.cbegin(), m_shown.cend(), [&](int entry) {
        return m_documents[entry].document.id == id;
    });
    return found == m_shown.cend() ? -1 : static_cast<int>(found - m_shown.cbegin());
}

int DocumentsModel::shownTickedCount() const
{
    return static_cast<int>(std::count_if(m_shown.cbegin(), m_shown.cend(), [this](int entry) {
        return m_documents[entry].isTicked;
    }));
}

QVector<PrintDocument> DocumentsModel::ticked() const
{
    QVector<PrintDocument> documents;
    documents.reserve(m_tickedCount);
    for (const int entry : m_order) {
        if (m_documents[entry].isTicked) {
            documents << m_documents[entry].document;
        }
    }
    return documents;
}

QMap<qint64, int> DocumentsModel::tickedByForm() const
{
    QMap<qint64, int> counts;
    for (const Entry& entry : m_documents) {
        if (entry.isTicked) {
            ++counts[entry.document.formId.toLongLong()];
        }
    }
    return counts;
}

QString DocumentsModel::formName(qint64 formId) const
{
    const QString name = m_formNames.value(formId).trimmed();
    return name.isEmpty() ? "Тип " + QString::number(formId) : name;
}

QString DocumentsModel::text(const Entry& entry, int column) const
{
    switch (column) {
    case PersonColumn:
        return entry.person;
    case GroupColumn:
        return entry.document.group;
    case FormColumn:
        return m_formNames.value(entry.document.formId.toLongLong());
    case IssueDateColumn:
        return entry.document.issueDate;
    case SeriesColumn:
        return entry.document.blankSeries;
    case NumberColumn:
        return entry.document.blankNumber;
    default:
        return {};
    }
}

bool DocumentsModel::isBefore(const Entry& left, const Entry& right) const
{
    if (m_sortColumn == PersonColumn) {
        return left.searched < right.searched;
    }
    if (m_sortColumn == TickColumn) {
        return left.isTicked && !right.isTicked;
    }
    return text(left, m_sortColumn) < text(right, m_sortColumn);
}

bool DocumentsModel::passes(const Entry& entry, const QStringList& words) const
{
    const PrintDocument& document = entry.document;
    const bool hasWords = std::all_of(words.cbegin(), words.cend(), [&](const QString& word) {
        return entry.searched.contains(word);
    });
    return hasWords && document.group.contains(m_filter.group, Qt::CaseInsensitive) &&
           (m_filter.formId.isNull() || document.formId == m_filter.formId) &&
           (m_filter.from.isEmpty() || document.issueDate >= m_filter.from) &&
           (m_filter.to.isEmpty() || document.issueDate <= m_filter.to);
}

void DocumentsModel::order()
{
    m_order.resize(m_documents.size());
    std::iota(m_order.begin(), m_order.end(), 0);
    const bool isAscending = m_sortOrder == Qt::AscendingOrder;
    std::stable_sort(m_order.begin(), m_order.end(), [&](int left, int right) {
        return isAscending ? isBefore(m_documents[left], m_documents[right])
                           : isBefore(m_documents[right], m_documents[left]);
    });
}

void DocumentsModel::show()
{
    const QStringList words = searchable(m_filter.name).split(' ', Qt::SkipEmptyParts);
    const bool isAll = m_filter.isEmpty();
    m_shown.clear();
    for (const int entry : m_order) {
        if (isAll || passes(m_documents[entry], words)) {
            m_shown.push_back(entry);
        }
    }
}
