#include "app/widgets/CalendarPopupStyle.h"

#include <QCalendarWidget>
#include <QChildEvent>
#include <QDateEdit>

#include "app/AppStyle.h"

CalendarPopupStyle::CalendarPopupStyle(QDateEdit* edit)
    : QObject(edit)
{
    edit->installEventFilter(this);
}

void CalendarPopupStyle::install(QDateEdit* edit)
{
    new CalendarPopupStyle(edit);
}

bool CalendarPopupStyle::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::ChildAdded) {
        return QObject::eventFilter(watched, event);
    }
    QObject* child = static_cast<QChildEvent*>(event)->child();
    if (watched == parent()) {
        if (child->isWidgetType() && static_cast<QWidget*>(child)->windowType() == Qt::Popup) {
            child->installEventFilter(this);
        }
    } else if (!child->isWidgetType()) {
        // The pop-up gets its layout as soon as its calendar is complete.
        if (auto* calendar = watched->findChild<QCalendarWidget*>()) {
            watched->removeEventFilter(this);
            applyCalendarStyle(calendar);
        }
    }
    return QObject::eventFilter(watched, event);
}
