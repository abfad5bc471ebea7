#include "app/widgets/RowFitPause.h"

#include "app/widgets/RowFit.h"

RowFitPause::RowFitPause(const QTableView* table)
    : m_fit(RowFit::of(table))
{
    m_fit->pause();
}

RowFitPause::~RowFitPause()
{
    m_fit->resume();
}
