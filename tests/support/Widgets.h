#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>

class QTableWidget;

// Ways to find the widgets of a window and to work on them as a user does. The window must be
// visible.

/// Widget of a window by its object name, of this class; a missing one ends the test program.
template <class Widget>
Widget* named(const QWidget* window, const QString& name)
{
    auto* widget = window->findChild<Widget*>(name);
    if (!widget) {
        qFatal("no %s named %s", Widget::staticMetaObject.className(), qPrintable(name));
    }
    return widget;
}

template <class Widget>
Widget* named(const QWidget& window, const QString& name)
{
    return named<Widget>(&window, name);
}

/// Clicks a push button of the window by its object name.
void clickButton(const QWidget* window, const QString& name);
void clickButton(const QWidget& window, const QString& name);

/// Double-clicks a push button as a mouse does: press, release, double click, release.
void doubleClickButton(const QWidget& window, const QString& name);

/// Turns the wheel by one step over a widget, away from the user.
void wheelOver(QWidget* widget);

/// Presses a key where the keyboard is: in an open pop-up, else in the widget with the focus.
void pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

/// Types a text, in any script, where the keyboard is.
void typeKeys(const QString& text);

/// Clicks the first cell of a row.
void clickRow(QTableWidget* table, int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

/// Double-clicks the first cell of a row.
void doubleClickRow(QTableWidget* table, int row);

/// Compares the captions and roles of a dialog's two buttons, "ОК" and "Отмена".
void compareDialogButtons(const QWidget& dialog);

/// Copies the text of the first cell by keys, deletes it there, and pastes it into the cell below;
/// no cell is open.
void moveClosedText(QTableWidget* table);

/// The texts of a column from the top down.
QStringList columnTexts(const QTableWidget* table, int column);

/// The tool tip that comes when the mouse rests at a position of a widget; empty if none comes.
QString toolTipAt(QWidget* widget, const QPoint& position);

/// Goes on by Tab until a widget has the focus; false if it never gets it.
bool tabTo(QWidget* target);

/// Types a text into a plain cell of a table: double click, keys, Enter.
void typeIntoCell(QTableWidget* table, int row, int column, const QString& text);

/// Types a text by keys, in any script: QTest::keyClicks() knows Latin letters only.
void typeLetters(QWidget* editor, const QString& text);

/// Replaces the text of a line editor, or of the one inside a combo, spin box or date edit, by
/// keys.
void typeInto(QWidget* editor, const QString& text);
