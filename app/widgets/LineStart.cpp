#include "app/widgets/LineStart.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>

LineStart::LineStart(QLineEdit* edit)
    : QObject(edit)
    , m_edit(edit)
{
    edit->installEventFilter(this);
    connect(edit, &QLineEdit::textEdited, this, [this] { m_isTyped = true; });
    connect(edit, &QLineEdit::textChanged, this, &LineStart::showStartOfNewText);
}

void LineStart::install(QLineEdit* edit)
{
    new LineStart(edit);
}

void LineStart::installAll(const QWidget* window)
{
    const QList<QLineEdit*> edits = window->findChildren<QLineEdit*>();
    for (QLineEdit* edit : edits) {
        if (!qobject_cast<QComboBox*>(edit->parent()) &&
            !qobject_cast<QAbstractSpinBox*>(edit->parent())) {
            install(edit);
        }
    }
}

void LineStart::selectText(QLineEdit* edit)
{
    const int length = edit->text().size();
    edit->setSelection(length, -length);
}

bool LineStart::isForGood(const QFocusEvent& focusOut)
{
    return focusOut.reason() != Qt::ActiveWindowFocusReason &&
           focusOut.reason() != Qt::PopupFocusReason;
}

bool LineStart::eventFilter(QObject* watched, QEvent* event)
{
    // One that is being destroyed loses the focus, and is no line edit any more.
    if (!qobject_cast<QLineEdit*>(watched)) {
        return QObject::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::FocusIn:
        // The base class selects the text after Tab, with the cursor behind it.
        m_edit->event(event);
        if (m_edit->hasSelectedText() && m_edit->selectedText() == m_edit->text()) {
            selectText(m_edit);
        }
        return true;
    case QEvent::FocusOut:
        if (isForGood(*static_cast<QFocusEvent*>(event))) {
            showStart();
        }
        break;
    case QEvent::KeyPress:
    case QEvent::InputMethod:
    case QEvent::ContextMenu:
        leaveStart();
        break;
    case QEvent::MouseButtonPress:
        m_isAtStart = false; // the click says where the cursor goes
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void LineStart::showStart()
{
    m_edit->home(false);
    m_isAtStart = true;
}

void LineStart::showStartOfNewText()
{
    if (!m_isTyped && !m_edit->hasFocus()) {
        showStart();
    }
    m_isTyped = false;
}

void LineStart::leaveStart()
{
    if (m_isAtStart && m_edit->cursorPosition() == 0 && !m_edit->hasSelectedText()) {
        m_edit->end(false);
    }
    m_isAtStart = false;
}
