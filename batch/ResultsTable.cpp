#include "batch/ResultsTable.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>

#include "app/AppStyle.h"
#include "app/widgets/CellTextDelegate.h"
#include "batch/RunWords.h"

namespace {

enum Column
{
    PersonColumn,
    GroupColumn,
    FormColumn,
    BlankColumn,
    PaperColumn,
    OutcomeColumn,
    ColumnCount
};

/// Before its turn a sheet tells what will be different with it.
QString beforeItsTurn(const PlannedSheet& sheet)
{
    if (sheet.sheet.blank.id.isNull()) {
        return "нет бланка";
    }
    if (sheet.isHeldBack) {
        return "не печатается: есть ошибки";
    }
    return sheet.hasErrors ? "есть ошибки" : QString();
}

bool isTicked(const QTableWidgetItem* item)
{
    return item->data(Qt::CheckStateRole).toInt() == Qt::Checked;
}

} // namespace

ResultsTable::ResultsTable(QWidget* parent)
    : NoticeTable(parent)
{
    setColumnCount(ColumnCount);
    setHorizontalHeaderLabels(
        {"Документ", "Класс", "Форма", "Бланк", "Серия и номер", "Что с листом"});
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setTabKeyNavigation(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setItemDelegate(new CellTextDelegate(plainRowHeight, this));
    verticalHeader()->setDefaultSectionSize(plainRowHeight);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    QHeaderView* header = horizontalHeader();
    header->setHighlightSections(false);
    header->setSectionResizeMode(PersonColumn, QHeaderView::Stretch);
    const int widths[ColumnCount] = {0, 80, 130, 140, 130, 270};
    for (int column = GroupColumn; column < ColumnCount; ++column) {
        setColumnWidth(column, widths[column]);
    }
    setStyleSheet("QTableView::indicator { margin-right: 6px; }");
    setNotice("Листов нет. Отметьте документы на первом шаге.");
}

void ResultsTable::setSheets(const QVector<PlannedSheet>& sheets,
                             const QVector<SheetOutcome>& outcomes)
{
    setUpdatesEnabled(false);
    setRowCount(sheets.size());
    for (int row = 0; row < sheets.size(); ++row) {
        for (int column = 0; column < ColumnCount; ++column) {
            if (!item(row, column)) {
                setItem(row, column, new QTableWidgetItem);
            }
        }
        showSheet(row, sheets[row], outcomes[row]);
    }
    setTickable(false);
    setUpdatesEnabled(true);
}

void ResultsTable::showSheet(int row, const PlannedSheet& sheet, const SheetOutcome& outcome,
                             const QString& event)
{
    QString state = event.isEmpty() ? inWords(outcome) : event;
    if (state.isEmpty()) {
        state = beforeItsTurn(sheet);
    }
    const QString texts[ColumnCount] = {personOf(sheet), sheet.group,    sheet.form,
                                        sheet.blankName, paperOf(sheet), state};
    for (int column = 0; column < ColumnCount; ++column) {
        item(row, column)->setText(texts[column]);
    }
    const bool isBad = outcome.state == SheetOutcome::State::Failed ||
                       (outcome.state == SheetOutcome::State::NotPrinted && outcome.spoilt > 0);
    item(row, OutcomeColumn)->setForeground(QColor(isBad ? "#D03B3B" : "#404040"));
}

void ResultsTable::goTo(int row)
{
    setCurrentCell(row, PersonColumn);
    scrollToItem(item(row, PersonColumn));
}

void ResultsTable::setTickable(bool isTickable)
{
    const QSignalBlocker blocker(this);
    for (int row = 0; row < rowCount(); ++row) {
        QTableWidgetItem* first = item(row, PersonColumn);
        first->setData(Qt::CheckStateRole, isTickable ? QVariant(Qt::Unchecked) : QVariant());
        first->setFlags(isTickable ? first->flags() | Qt::ItemIsUserCheckable
                                   : first->flags() & ~Qt::ItemIsUserCheckable);
    }
    viewport()->update();
}

QVector<int> ResultsTable::ticked() const
{
    QVector<int> rows;
    for (int row = 0; row < rowCount(); ++row) {
        if (isTicked(item(row, PersonColumn))) {
            rows.append(row);
        }
    }
    return rows;
}

/// Space ticks the current row, whichever of its cells is current.
void ResultsTable::keyPressEvent(QKeyEvent* event)
{
    QTableWidgetItem* first = currentRow() < 0 ? nullptr : item(currentRow(), PersonColumn);
    if (event->key() != Qt::Key_Space || !first ||
        !first->flags().testFlag(Qt::ItemIsUserCheckable)) {
        NoticeTable::keyPressEvent(event);
        return;
    }
    first->setCheckState(isTicked(first) ? Qt::Unchecked : Qt::Checked);
}
