#include "app/widgets/TableItems.h"

#include <QTableWidget>

QTableWidgetItem* makeTableItem(const QString& text, const QVariant& identity)
{
    auto* item = new QTableWidgetItem(text);
    if (identity.isValid()) {
        item->setData(Qt::UserRole, identity);
    }
    return item;
}

QTableWidgetItem* currentRowItem(const QTableWidget* table)
{
    const int row = table->currentRow();
    return row < 0 ? nullptr : table->item(row, 0);
}
