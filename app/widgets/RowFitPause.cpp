#include "app/widgets/RowFitPause.h"

#include <QHeaderView>
#include <QTableView>

RowFitPause::RowFitPause(const QTableView* table)
    : m_table(table)
{
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
}

RowFitPause::~RowFitPause()
{
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
}
