#include "app/widgets/DateField.h"

#include <QKeyEvent>

namespace {

bool isFigure(const QString& typed)
{
    return !typed.isEmpty() && typed.at(0).isDigit();
}

bool isSeparator(const QString& typed)
{
    return !typed.isEmpty() && (typed.at(0).isPunct() || typed.at(0) == ' ');
}

} // namespace

DateField::DateField(QWidget* parent)
    : QDateEdit(parent)
{
}

bool DateField::event(QEvent* event)
{
    // Not through focusNextPrevChild(): a typed separator comes that way too, and stays inside.
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool isTab = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
        const bool back = key->key() == Qt::Key_Backtab || key->modifiers() & Qt::ShiftModifier;
        const bool isPlain = !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
        // NOLINTNEXTLINE(bugprone-parent-virtual-call): the direct base goes to the next section
        if (isTab && isPlain && QAbstractSpinBox::focusNextPrevChild(!back)) {
            return true;
        }
    }
    return QDateEdit::event(event);
}

void DateField::focusInEvent(QFocusEvent* event)
{
    QDateEdit::focusInEvent(event);
    if (event->reason() == Qt::BacktabFocusReason) {
        setSelectedSection(sectionAt(0)); // a date is typed from its beginning
    }
}

void DateField::keyPressEvent(QKeyEvent* event)
{
    const bool right = event->key() == Qt::Key_Right;
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    const bool goes = isPlain && (right || event->key() == Qt::Key_Left) && goToNextSection(right);
    // The separator behind "02" would otherwise skip the month.
    const bool isDone = m_hasAdvanced && isSeparator(event->text());
    const int section = currentSectionIndex();
    if (!goes && !isDone) {
        QDateEdit::keyPressEvent(event);
    }
    m_hasAdvanced = !isDone && isFigure(event->text()) && currentSectionIndex() > section;
}

// False at an end, and while the cursor stands in no section.
bool DateField::goToNextSection(bool next)
{
    const int section = currentSectionIndex();
    const int neighbour = section + (next ? 1 : -1);
    if (section < 0 || neighbour < 0 || neighbour >= sectionCount()) {
        return false;
    }
    QDateEdit::focusNextPrevChild(next);
    return true;
}
