#pragma once

#include <QString>

class QCalendarWidget;
class QTableView;
class QWidget;

/// Text of the base style sheet, ":/res/baseStyle.css"; empty until loadBaseStyle() has read it.
extern QString baseStyleSheet;

/// Reads the base style sheet into `baseStyleSheet`. On failure returns false and leaves it as it
/// was, so that windows show their own styles only.
bool loadBaseStyle();

/// Joins the base style sheet and the window's own one, in this order, and sets the result on the
/// window. Each window calls it once in its constructor, after its form is set up. Column headings
/// of its tables that don't fit are elided, with the whole text as a tool tip.
void applyBaseStyle(QWidget* window);

/// Gives a widget of a styled window this height in pixels, whatever minimum the style sheets say.
/// To be called after applyBaseStyle().
void setStyledFixedHeight(QWidget* widget, int height);

/// Height in pixels of a table's row that holds one line of text or an editor of the base style.
constexpr int plainRowHeight = 30;

/// Makes each row of a table as high as its text, from `lowest` pixels up to six lines, and keeps
/// it so when a text or the width of a column changes. For tables of some thousand rows at most.
void fitRows(QTableView* table, int lowest = plainRowHeight);

/// Dresses the pop-up calendar of a date edit: size, colours and the month buttons.
void applyCalendarStyle(QCalendarWidget* calendar);
