#include "batch/HeadingCheck.h"

#include <QHeaderView>

HeadingCheck::HeadingCheck(QHeaderView* header)
    : QCheckBox(header)
    , m_header(header)
{
    setTristate(true);
    connect(header, &QHeaderView::geometriesChanged, this, &HeadingCheck::place);
    connect(header, &QHeaderView::sectionResized, this, &HeadingCheck::place);
    place();
}

void HeadingCheck::showState(int ticked, int rows)
{
    const bool isAll = rows > 0 && ticked == rows;
    setCheckState(isAll ? Qt::Checked : ticked > 0 ? Qt::PartiallyChecked : Qt::Unchecked);
    setEnabled(rows > 0);
}

void HeadingCheck::nextCheckState()
{
    setCheckState(checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
}

void HeadingCheck::place()
{
    setGeometry(0, 0, m_header->sectionSize(0), m_header->height());
}
