#include "app/widgets/CellKeys.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QTableWidget>

namespace {

// A cell copied from a spreadsheet brings a line break at its end, and several cells bring more.
QString oneLine(QString text)
{
    static const QRegularExpression lastBreaks("[\\r\\n]+$");
    static const QRegularExpression breaks("\\r\\n|[\\r\\n\\t\\x{2028}\\x{2029}]");
    return text.remove(lastBreaks).replace(breaks, " ");
}

} // namespace

CellKeys::CellKeys(QTableWidget* table)
    : QObject(table)
    , m_table(table)
{
    table->installEventFilter(this);
}

void CellKeys::install(QTableWidget* table)
{
    new CellKeys(table);
}

bool CellKeys::eventFilter(QObject* watched, QEvent* event)
{
    return (event->type() == QEvent::KeyPress && pressKey(*static_cast<QKeyEvent*>(event))) ||
           QObject::eventFilter(watched, event);
}

// True if the key has done its work. Keys that an editor in a cell has left over are none of ours.
bool CellKeys::pressKey(const QKeyEvent& key)
{
    const QModelIndex cell = m_table->currentIndex();
    if (!m_table->hasFocus() || !isTextCell(cell)) {
        return false;
    }
    const bool isDelete = key.key() == Qt::Key_Delete && !(key.modifiers() & ~Qt::KeypadModifier);
    QClipboard* clipboard = QApplication::clipboard();
    if (key.matches(QKeySequence::Paste)) {
        if (!clipboard->text().isEmpty()) {
            m_table->model()->setData(cell, oneLine(clipboard->text()));
        }
    } else if (key.matches(QKeySequence::Cut)) {
        clipboard->setText(cell.data().toString());
        m_table->model()->setData(cell, QString());
    } else if (isDelete) {
        m_table->model()->setData(cell, QString());
    } else {
        return false;
    }
    return true;
}

bool CellKeys::isTextCell(const QModelIndex& cell) const
{
    const bool editable = cell.flags() & Qt::ItemIsEditable && cell.flags() & Qt::ItemIsEnabled;
    return editable && m_table->editTriggers() != QAbstractItemView::NoEditTriggers &&
           m_table->selectionModel()->isSelected(cell) && !m_table->indexWidget(cell);
}
