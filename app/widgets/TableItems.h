#pragma once

#include <QString>
#include <QVariant>

class QTableWidget;
class QTableWidgetItem;

// Rows of table widgets carry the identity of their record in Qt::UserRole of their first item, and
// nothing else ties a row to a record.

/// A new item; `identity`, if it is valid, is that of the row whose first item it becomes.
QTableWidgetItem* makeTableItem(const QString& text, const QVariant& identity = QVariant());

/// Shows a text in a cell, in the item that is there already if there is one, so that neither an
/// editor open in it nor the current cell is lost.
void showInCell(QTableWidget* table, int row, int column, const QString& text,
                const QVariant& identity = QVariant());

/// The first item of the table's current row; null if there is none, or if it is not selected: what
/// the user did not pick is not acted on.
QTableWidgetItem* currentRowItem(const QTableWidget* table);
