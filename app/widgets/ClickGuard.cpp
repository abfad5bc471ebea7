#include "app/widgets/ClickGuard.h"

#include <QAbstractButton>
#include <QEvent>

ClickGuard::ClickGuard(QAbstractButton* button)
    : QObject(button)
{
    button->installEventFilter(this);
}

void ClickGuard::install(QAbstractButton* button)
{
    new ClickGuard(button);
}

bool ClickGuard::eventFilter(QObject* watched, QEvent* event)
{
    return event->type() == QEvent::MouseButtonDblClick || QObject::eventFilter(watched, event);
}
