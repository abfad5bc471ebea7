#include "batch/ElidedLabel.h"

#include <QEvent>

#include "app/AppHelpers.h"

void ElidedLabel::setWholeText(const QString& text)
{
    m_text = text.simplified();
    setTextFormat(Qt::PlainText);
    setAccessibleName(m_text);
    elide();
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    elide();
}

void ElidedLabel::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        elide();
    }
}

void ElidedLabel::elide()
{
    const QString shown =
        fontMetrics().elidedText(m_text, Qt::ElideMiddle, contentsRect().width() - 2 * margin());
    setToolTip(shown == m_text ? QString() : plainMessage(m_text));
    if (shown != text()) {
        setText(shown);
    }
}
