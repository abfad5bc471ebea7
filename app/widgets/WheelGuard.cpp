#include "app/widgets/WheelGuard.h"

#include <QEvent>
#include <QWidget>

WheelGuard::WheelGuard(QWidget* editor)
    : QObject(editor)
{
    // The default policy of these editors would give them the focus with the first wheel step. One
    // that a table has made a part of its own round keeps what it has.
    if (editor->focusPolicy() == Qt::WheelFocus) {
        editor->setFocusPolicy(Qt::StrongFocus);
    }
    editor->installEventFilter(this);
}

void WheelGuard::install(QWidget* editor)
{
    new WheelGuard(editor);
}

bool WheelGuard::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Wheel || static_cast<QWidget*>(watched)->hasFocus()) {
        return QObject::eventFilter(watched, event);
    }
    event->ignore(); // goes on to the parent
    return true;
}
