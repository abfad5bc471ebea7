#include "app/widgets/EntryTable.h"

#include <QChildEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSpinBox>

#include "app/widgets/CellKeys.h"
#include "app/widgets/LineStart.h"

namespace {

// What is typed next replaces the text. A date keeps its selected section.
void selectText(QWidget* editor)
{
    if (auto* spin = qobject_cast<QSpinBox*>(editor)) {
        spin->selectAll();
        return;
    }
    const auto* combo = qobject_cast<QComboBox*>(editor);
    if (combo && combo->lineEdit()) {
        LineStart::selectText(combo->lineEdit());
    }
}

bool isEnter(const QEvent& event)
{
    const int key =
        event.type() == QEvent::KeyPress ? static_cast<const QKeyEvent&>(event).key() : 0;
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

EntryTable::EntryTable(QWidget* parent)
    : QTableWidget(parent)
{
    CellKeys::install(this);
}

bool EntryTable::focusNextPrevChild(bool next)
{
    return goTo(neighbour(currentIndex(), next),
                next ? Qt::TabFocusReason : Qt::BacktabFocusReason) ||
           leave(next);
}

void EntryTable::focusInEvent(QFocusEvent* event)
{
    QTableWidget::focusInEvent(event);
    const bool fromBefore = event->reason() == Qt::TabFocusReason;
    if (fromBefore || event->reason() == Qt::BacktabFocusReason) {
        goTo(neighbour(QModelIndex(), fromBefore), event->reason());
    }
}

bool EntryTable::eventFilter(QObject* watched, QEvent* event)
{
    const auto* combo = qobject_cast<QComboBox*>(watched);
    if (combo && combo->lineEdit() && isEnter(*event)) {
        // A selection would count as the rest of a completion, and Enter would put one in.
        combo->lineEdit()->deselect();
    }
    return QTableWidget::eventFilter(watched, event);
}

void EntryTable::keyPressEvent(QKeyEvent* event)
{
    if (!isEnter(*event)) {
        QTableWidget::keyPressEvent(event);
        return;
    }
    // A text that is open is closed by its delegate, see closeEditor().
    if (state() != EditingState) {
        goOn(currentIndex());
    }
    event->accept();
}

bool EntryTable::viewportEvent(QEvent* event)
{
    // An editor in a cell is no stop of its own: it would stand behind the window's last button.
    if (event->type() == QEvent::ChildPolished) {
        auto* editor = qobject_cast<QWidget*>(static_cast<QChildEvent*>(event)->child());
        if (editor && editor->focusPolicy() & Qt::TabFocus) {
            editor->setFocusPolicy(Qt::ClickFocus);
        }
    }
    return QTableWidget::viewportEvent(event);
}

QModelIndex EntryTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    // What Tab asks for while a cell is being edited.
    if (action == MoveNext || action == MovePrevious) {
        return neighbour(currentIndex(), action == MoveNext);
    }
    return QTableWidget::moveCursor(action, modifiers);
}

void EntryTable::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint)
{
    QTableWidget::closeEditor(editor, hint);
    if (hint == QAbstractItemDelegate::SubmitModelCache) {
        goOn(currentIndex()); // ended by Enter
    } else if (hint != QAbstractItemDelegate::NoHint) {
        selectText(indexWidget(currentIndex())); // Tab may have gone to an editor
    }
}

void EntryTable::goOn(const QModelIndex& cell)
{
    const QModelIndex next = neighbour(cell, true);
    goTo(next.isValid() ? next : cell, Qt::TabFocusReason);
}

bool EntryTable::goTo(const QModelIndex& cell, Qt::FocusReason reason)
{
    if (!cell.isValid()) {
        return false;
    }
    setCurrentIndex(cell);
    if (QWidget* editor = indexWidget(cell)) {
        editor->setFocus(reason);
        selectText(editor);
    } else {
        setFocus(Qt::OtherFocusReason); // with Tab as the reason it would begin at an end again
    }
    return true;
}

bool EntryTable::takesEntries(const QModelIndex& cell) const
{
    const bool editable = cell.flags() & Qt::ItemIsEditable && editTriggers() != NoEditTriggers;
    return cell.flags() & Qt::ItemIsEnabled && (indexWidget(cell) || editable);
}

QModelIndex EntryTable::neighbour(const QModelIndex& cell, bool next) const
{
    const int columns = columnCount();
    const int cells = rowCount() * columns;
    const int step = next ? 1 : -1;
    int position = next ? -1 : cells;
    if (cell.isValid()) {
        position = cell.row() * columns + cell.column();
    }
    for (position += step; position >= 0 && position < cells; position += step) {
        const QModelIndex found = model()->index(position / columns, position % columns);
        if (takesEntries(found)) {
            return found;
        }
    }
    return {};
}

bool EntryTable::leave(bool next)
{
    QWidget* widget = this;
    do {
        widget = next ? widget->nextInFocusChain() : widget->previousInFocusChain();
        const bool takesFocus = widget->focusPolicy() & Qt::TabFocus && widget->isEnabled() &&
                                widget->isVisible() && widget->window() == window();
        if (takesFocus && !widget->isWindow() && !isAncestorOf(widget) && widget != this) {
            widget->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
    } while (widget != this);
    return false;
}
