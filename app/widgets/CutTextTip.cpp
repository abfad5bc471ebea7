#include "app/widgets/CutTextTip.h"

#include <QTextDocument>
#include <QToolTip>

void showCutText(const QPoint& globalPos, const QString& text, QWidget* widget, const QRect& area)
{
    constexpr int oneLine = 80; // characters; the toolkit wraps only rich text
    const bool isPlain = text.size() <= oneLine && !Qt::mightBeRichText(text);
    QToolTip::showText(
        globalPos,
        isPlain ? text : "<p style=\"white-space: pre-wrap\">" + text.toHtmlEscaped() + "</p>",
        widget, area);
}
