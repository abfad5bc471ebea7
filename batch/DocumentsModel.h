#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QMap>
#include <QString>
#include <QVector>

#include <vector>

#include "batch/ListFilter.h"
#include "printing/PrintDocument.h"

/// The documents of the database, held in memory: those that pass a filter are its rows, sorted by
/// a column. Each can be ticked; ticks stay when a filter hides their documents.
class DocumentsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        TickColumn,
        PersonColumn,
        GroupColumn,
        FormColumn,
        IssueDateColumn,
        SeriesColumn,
        NumberColumn,
        ColumnCount
    };

    explicit DocumentsModel(QObject* parent = nullptr);

    /// Takes all documents of the database, with the names of the forms by ID. Documents that were
    /// ticked still are.
    void setDocuments(const QVector<PrintDocument>& documents,
                      const QHash<qint64, QString>& formNames);

    void setFilter(const ListFilter& filter);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

    bool isTicked(int row) const { return m_documents[m_shown[row]].isTicked; }
    void setTicked(const QVector<int>& rows, bool ticked);
    void setAllShownTicked(bool ticked);

    /// The document of a row.
    const PrintDocument& document(int row) const;

    /// The row of a document; -1 if it is not shown.
    int rowOf(const QVariant& id) const;

    int documentCount() const { return static_cast<int>(m_documents.size()); }
    int tickedCount() const { return m_tickedCount; }

    /// How many of the rows are ticked.
    int shownTickedCount() const;

    /// The ticked documents in the order of the list, hidden ones among them.
    QVector<PrintDocument> ticked() const;

    /// How many documents of each form are ticked, by the form's ID.
    QMap<qint64, int> tickedByForm() const;

    /// Name of a form; one that is gone is called by its ID.
    QString formName(qint64 formId) const;

signals:
    void ticksChanged();

private:
    struct Entry
    {
        PrintDocument document;
        QString person;
        QString searched; // person and paper in the letters that a search compares
        bool isTicked;
    };

    QString text(const Entry& entry, int column) const;
    bool isBefore(const Entry& left, const Entry& right) const;
    bool passes(const Entry& entry, const QStringList& words) const;
    void order();
    void show();

    std::vector<Entry> m_documents;
    QHash<qint64, QString> m_formNames;
    std::vector<int> m_order; // all documents as they are sorted
    std::vector<int> m_shown; // of them those that are rows
    ListFilter m_filter;
    int m_sortColumn = PersonColumn;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    int m_tickedCount = 0;
};
