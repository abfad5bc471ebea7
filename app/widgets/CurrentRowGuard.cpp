#include "app/widgets/CurrentRowGuard.h"

#include <QItemSelectionModel>
#include <QListWidget>
#include <QTableWidget>

CurrentRowGuard::CurrentRowGuard(QAbstractItemView* list)
    : QObject(list)
    , m_list(list)
{
    forgetCurrent();
}

void CurrentRowGuard::install(QTableWidget* list)
{
    auto* guard = new CurrentRowGuard(list);
    connect(list, &QTableWidget::itemSelectionChanged, guard, &CurrentRowGuard::followSelection);
}

void CurrentRowGuard::install(QListWidget* list)
{
    auto* guard = new CurrentRowGuard(list);
    connect(list, &QListWidget::itemSelectionChanged, guard, &CurrentRowGuard::followSelection);
}

void CurrentRowGuard::forgetCurrent()
{
    // Where no row was made current on purpose, the focus does not make the first one current.
    m_list->setCurrentIndex(QModelIndex());
}

void CurrentRowGuard::followSelection()
{
    QItemSelectionModel* model = m_list->selectionModel();
    const QModelIndex current = model->currentIndex();
    if (!current.isValid() || model->isSelected(current)) {
        return;
    }
    const QItemSelection selection = model->selection();
    if (selection.isEmpty()) {
        forgetCurrent();
        return;
    }
    // Another of several selected rows. The list must not scroll away under the mouse.
    const bool scrolls = m_list->hasAutoScroll();
    m_list->setAutoScroll(false);
    const int row = selection.constLast().bottom();
    model->setCurrentIndex(current.sibling(row, current.column()), QItemSelectionModel::NoUpdate);
    m_list->setAutoScroll(scrolls);
}
