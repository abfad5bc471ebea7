#pragma once

class QPoint;
class QRect;
class QString;
class QWidget;

/// Shows a text that is cut on the screen as a tool tip at `globalPos`, to the letter: markup in it
/// is text, too. It goes when the mouse leaves `area` of the widget. An empty text hides the tip.
void showCutText(const QPoint& globalPos, const QString& text, QWidget* widget, const QRect& area);
