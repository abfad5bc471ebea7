#include "documents/CellDateEdit.h"

#include <QCalendarWidget>
#include <QChildEvent>

#include "app/AppStyle.h"

CellDateEdit::CellDateEdit(QWidget* parent)
    : DateField(parent)
{
    setButtonSymbols(QAbstractSpinBox::NoButtons);
    setCalendarPopup(true);
}

// The pop-up gets its layout as soon as its calendar is complete and before anybody sees it.
bool CellDateEdit::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ChildAdded &&
        !static_cast<QChildEvent*>(event)->child()->isWidgetType())
    {
        if (auto* calendar = watched->findChild<QCalendarWidget*>()) {
            watched->removeEventFilter(this);
            applyCalendarStyle(calendar);
        }
    }
    return DateField::eventFilter(watched, event);
}

void CellDateEdit::childEvent(QChildEvent* event)
{
    const bool isPopup = event->added() && event->child()->isWidgetType() &&
                         static_cast<QWidget*>(event->child())->windowType() == Qt::Popup;
    if (isPopup) {
        event->child()->installEventFilter(this);
    }
    DateField::childEvent(event);
}
