#pragma once

#include <QObject>

class QKeyEvent;
class QModelIndex;
class QTableWidget;

/// Lets Ctrl+V, Ctrl+X and Delete work on the text of a cell that is selected but not open for
/// typing. Ctrl+C is what tables can do by themselves.
class CellKeys : public QObject
{
    Q_OBJECT

public:
    /// Gives the keys to one table. What can't be edited is left alone.
    static void install(QTableWidget* table);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit CellKeys(QTableWidget* table);
    bool pressKey(const QKeyEvent& key);
    bool isTextCell(const QModelIndex& cell) const;

    QTableWidget* m_table;
};
