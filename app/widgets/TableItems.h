#pragma once

#include <QString>
#include <QVariant>

class QTableWidget;
class QTableWidgetItem;

// Rows of table widgets carry the identity of their record in Qt::UserRole of their first item, and
// nothing else ties a row to a record.

/// A new item; `identity`, if it is valid, is that of the row whose first item it becomes.
QTableWidgetItem* makeTableItem(const QString& text, const QVariant& identity = QVariant());

/// The first item of the table's current row; null if there is none.
QTableWidgetItem* currentRowItem(const QTableWidget* table);
