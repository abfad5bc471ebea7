#pragma once

#include <QString>

class QCalendarWidget;
class QTableView;
class QToolBar;
class QWidget;

/// Text of the base style sheet, ":/res/baseStyle.css"; empty until loadBaseStyle() has read it.
extern QString baseStyleSheet;

/// Reads the base style sheet into `baseStyleSheet`. On failure returns false and leaves it as it
/// was, so that windows show their own styles only.
bool loadBaseStyle();

/// Joins the base style sheet and the window's own one, in this order, and sets the result on the
/// window. Each window calls it once in its constructor, after its form is set up: what the form
/// holds gets sharp icons, pale placeholders and, where a button shows no words, its tool tip as
/// the accessible name; column headings that don't fit are elided, with the whole text as a tool
/// tip. Icons that come later need sharpIcon().
void applyBaseStyle(QWidget* window);

/// Gives a widget of a styled window this height in pixels, whatever minimum the style sheets say.
/// To be called after applyBaseStyle().
void setStyledFixedHeight(QWidget* widget, int height);

/// Makes all buttons of a tool bar with captions under the icons as high as the tallest one, so
/// that the icons stand on one line. To be called when the bar has all its buttons.
void alignToolBarIcons(const QToolBar* toolBar);

/// Height in pixels of a table's row that holds one line of text or an editor of the base style.
constexpr int plainRowHeight = 30;

/// Makes each row of a table as high as its text, from `lowest` pixels up to six lines, and keeps
/// it so when a text or the width of a column changes. For tables of some thousand rows at most.
void fitRows(QTableView* table, int lowest = plainRowHeight);

/// Dresses the pop-up calendar of a date edit: size, colours and the month buttons.
void applyCalendarStyle(QCalendarWidget* calendar);
