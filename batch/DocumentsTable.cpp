#include "batch/DocumentsTable.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "app/AppStyle.h"
#include "app/widgets/CellTextDelegate.h"
#include "app/widgets/HeadingTips.h"
#include "batch/DocumentsModel.h"
#include "batch/HeadingCheck.h"

namespace {

/// Leaves the ticks to the table.
class TickDelegate : public CellTextDelegate
{
public:
    using CellTextDelegate::CellTextDelegate;

    bool editorEvent(QEvent* /*event*/, QAbstractItemModel* /*model*/,
                     const QStyleOptionViewItem& /*option*/, const QModelIndex& /*index*/) override
    {
        return false;
    }
};

} // namespace

DocumentsTable::DocumentsTable(QWidget* parent)
    : QTableView(parent)
    , m_heading(new HeadingCheck(horizontalHeader()))
{
    m_heading->setObjectName("selectAllCheck");
    m_heading->setAccessibleName("Отметить все показанные документы");
    m_heading->setToolTip("Отметить все показанные документы");
    setItemDelegate(new TickDelegate(this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setAlternatingRowColors(true);
    setTabKeyNavigation(false);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(plainRowHeight);
    horizontalHeader()->setHighlightSections(false);
    HeadingTips::install(horizontalHeader());
}

void DocumentsTable::setDocuments(DocumentsModel* documents)
{
    m_documents = documents;
    setModel(documents);
    horizontalHeader()->setSortIndicator(DocumentsModel::PersonColumn, Qt::AscendingOrder);
    setSortingEnabled(true);
    connect(documents, &QAbstractItemModel::modelAboutToBeReset, this,
            &DocumentsTable::keepCurrent);
    connect(documents, &QAbstractItemModel::modelReset, this, &DocumentsTable::restoreCurrent);
    connect(documents, &QAbstractItemModel::modelReset, this, &DocumentsTable::showHeading);
    connect(documents, &DocumentsModel::ticksChanged, this, &DocumentsTable::showHeading);
    connect(m_heading, &HeadingCheck::clicked, this,
            [this] { m_documents->setAllShownTicked(m_heading->checkState() == Qt::Checked); });
    showHeading();
}

void DocumentsTable::setNotice(const QString& notice)
{
    m_notice = notice;
    viewport()->update();
}

void DocumentsTable::mousePressEvent(QMouseEvent* event)
{
    const QModelIndex cell = indexAt(event->pos());
    const bool isTick = event->button() == Qt::LeftButton && cell.isValid() && pressTick(*event);
    if (isTick && cell.column() == DocumentsModel::TickColumn &&
        event->modifiers() == Qt::NoModifier) {
        // The selection stays: a box is no choice of a row.
        selectionModel()->setCurrentIndex(cell, QItemSelectionModel::NoUpdate);
        return;
    }
    QTableView::mousePressEvent(event);
}

void DocumentsTable::mouseDoubleClickEvent(QMouseEvent* event)
{
    mousePressEvent(event); // two clicks on a box are two changes
}

void DocumentsTable::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space &&
        (event->modifiers() == Qt::NoModifier || event->modifiers() == Qt::ShiftModifier))
    {
        tickSelected();
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

void DocumentsTable::paintEvent(QPaintEvent* event)
{
    QTableView::paintEvent(event);
    if ((model() && model()->rowCount() > 0) || m_notice.isEmpty()) {
        return;
    }
    QPainter painter(viewport());
    painter.setPen(QColor("#878787"));
    painter.drawText(viewport()->rect().adjusted(24, 0, -24, 0), Qt::AlignCenter | Qt::TextWordWrap,
                     m_notice);
}

bool DocumentsTable::pressTick(const QMouseEvent& event)
{
    const QModelIndex cell = indexAt(event.pos());
    const bool isBox = cell.column() == DocumentsModel::TickColumn;
    if (event.modifiers() == Qt::ShiftModifier) {
        tickUpTo(cell.row());
        return true;
    }
    m_anchorId = m_documents->document(cell.row()).id;
    m_anchorTicks = true;
    if (isBox && event.modifiers() == Qt::NoModifier) {
        m_anchorTicks = !m_documents->isTicked(cell.row());
        m_documents->setTicked({cell.row()}, m_anchorTicks);
        return true;
    }
    return false;
}

void DocumentsTable::tickUpTo(int row)
{
    const int anchor = m_documents->rowOf(m_anchorId);
    const int first = anchor < 0 ? row : qMin(anchor, row);
    const int last = anchor < 0 ? row : qMax(anchor, row);
    QVector<int> rows;
    for (int i = first; i <= last; ++i) {
        rows << i;
    }
    m_documents->setTicked(rows, m_anchorTicks);
}

void DocumentsTable::tickSelected()
{
    const QModelIndex current = currentIndex();
    if (!current.isValid()) {
        return;
    }
    QVector<int> rows;
    const QModelIndexList selected = selectionModel()->selectedRows();
    for (const QModelIndex& row : selected) {
        rows << row.row();
    }
    if (!rows.contains(current.row())) {
        rows = {current.row()};
    }
    m_anchorId = m_documents->document(current.row()).id;
    m_anchorTicks = !m_documents->isTicked(current.row());
    m_documents->setTicked(rows, m_anchorTicks);
}

void DocumentsTable::keepCurrent()
{
    const QModelIndex current = currentIndex();
    if (current.isValid()) {
        m_currentId = m_documents->document(current.row()).id;
    }
}

void DocumentsTable::restoreCurrent()
{
    const int row = m_documents->rowOf(m_currentId);
    if (m_documents->rowCount() == 0) {
        return;
    }
    // Space and the arrow keys begin somewhere, and the user sees where.
    const QModelIndex cell = m_documents->index(qMax(row, 0), DocumentsModel::PersonColumn);
    selectionModel()->setCurrentIndex(cell, QItemSelectionModel::ClearAndSelect |
                                                QItemSelectionModel::Rows);
    if (row >= 0) {
        scrollTo(cell);
    }
}

void DocumentsTable::showHeading()
{
    m_heading->showState(m_documents->shownTickedCount(), m_documents->rowCount());
}
