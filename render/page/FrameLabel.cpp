#include "render/page/FrameLabel.h"

#include <QTextDocument>
#include <QTextLayout>

#include "render/page/MarkupBound.h"
#include "render/page/MarkupDocument.h"

namespace {

bool hasMarkup(const QString& text)
{
    return text.contains('<') || text.contains('&');
}

/// Size of a plain text on unbroken lines; at least that of the same text as markup, which joins
/// blanks.
QSizeF unbrokenSize(const QString& text, const QFont& font, qreal lineSpacing)
{
    QTextLayout layout(QString(text).replace('\n', QChar::LineSeparator), font);
    QSizeF size(0, 0);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(QWIDGETSIZE_MAX);
        size.setWidth(qMax(size.width(), line.naturalTextWidth()));
        size.rheight() += line.height() * qMax(lineSpacing, 1.0);
    }
    layout.endLayout();
    return size;
}

} // namespace

FrameLabel::FrameLabel(const QString& text)
{
    setText(text);
}

void FrameLabel::setText(const QString& text)
{
    const BoundedMarkup markup = boundedMarkup(text);
    m_isWhole = markup.isWhole;
    if (markup.text == QLabel::text()) {
        return;
    }
    QLabel::setText(markup.text);
    // The label fills its document when it is first measured or painted.
    auto* document = findChild<QTextDocument*>();
    if (document && hasElements(markup.text)) {
        MarkupDocument::guard(*document, markup.text);
    }
}

void FrameLabel::setRoom(const QSizeF& room, const QFont& font, qreal lineSpacing)
{
    constexpr int rounding = 2; // what the toolkit may round up in each direction
    m_room = room.toSize();
    if (hasMarkup(text())) {
        return;
    }
    const QSizeF needed = unbrokenSize(text(), QFont(font, this), lineSpacing);
    m_fits =
        needed.width() + rounding <= room.width() && needed.height() + rounding <= room.height();
}

QSize FrameLabel::minimumSizeHint() const
{
    return m_fits ? QSize(0, 0) : QLabel::minimumSizeHint();
}

QSize FrameLabel::sizeHint() const
{
    return m_fits ? m_room : QLabel::sizeHint();
}
