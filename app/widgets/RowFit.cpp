#include "app/widgets/RowFit.h"

#include <QEvent>
#include <QHeaderView>
#include <QTableView>

#include <utility>

#include "app/widgets/CellTextDelegate.h"

RowFit::RowFit(QTableView* table, int lowest)
    : QObject(table)
    , m_table(table)
{
    constexpr int tallest = 104; // pixels; six lines
    table->setItemDelegate(new CellTextDelegate(table));
    QHeaderView* rows = table->verticalHeader();
    rows->setDefaultSectionSize(lowest);
    rows->setMinimumSectionSize(lowest);
    rows->setMaximumSectionSize(tallest);
    start();
    table->installEventFilter(this);
    connect(table->horizontalHeader(), &QHeaderView::sectionResized, this, &RowFit::columnResized);
}

RowFit* RowFit::of(const QTableView* table)
{
    return table->findChild<RowFit*>(QString(), Qt::FindDirectChildrenOnly);
}

void RowFit::pause()
{
    m_isPaused = true;
    m_startsAtShow = false;
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
}

void RowFit::resume()
{
    if (m_table->isVisible()) {
        start();
    } else {
        m_startsAtShow = true;
    }
}

bool RowFit::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show && m_startsAtShow) {
        start();
    }
    return QObject::eventFilter(watched, event);
}

void RowFit::start()
{
    m_isPaused = false;
    m_startsAtShow = false;
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
}

// The view itself fits its rows to a text that changes, but not to a column's new width, which is
// in force only after the signal. Once for all columns that change together.
void RowFit::columnResized()
{
    if (m_isPaused || std::exchange(m_isPending, true)) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isPending = false;
            QMetaObject::invokeMethod(m_table->verticalHeader(), "resizeSections");
        },
        Qt::QueuedConnection);
}
