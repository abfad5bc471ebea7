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

void showInCell(QTableWidget* table, int row, int column, const QString& text,
                const QVariant& identity)
{
    QTableWidgetItem* item = table->item(row, column);
    if (!item) {
        table->setItem(row, column, makeTableItem(text, identity));
        return;
    }
    item->setText(text);
    if (identity.isValid()) {
        item->setData(Qt::UserRole, identity);
    }
}

QTableWidgetItem* currentRowItem(const QTableWidget* table)
{
    const int row = table->currentRow();
    QTableWidgetItem* item = row < 0 ? nullptr : table->item(row, 0);
    return item && item->isSelected() ? item : nullptr;
}
