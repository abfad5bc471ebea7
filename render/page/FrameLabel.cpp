#include "render/page/FrameLabel.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPainterPath>
#include <QTextLayout>
#include <QTextOption>
#include <QtMath>

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
    if (!hasElements(markup.text)) {
        return;
    }
    m_isGuarded = true;
    // The label fills its document when it is first measured or painted.
    if (auto* document = findChild<QTextDocument*>()) {
        MarkupDocument::guard(*document, markup.text);
    }
}

void FrameLabel::setAvailableSize(const QSizeF& size, const QString& text, qreal lineSpacing)
{
    constexpr int rounding = 2; // what the toolkit may round up in each direction
    m_available = size.toSize();
    m_fits = false;
    if (hasMarkup(text) || !boundedMarkup(text).isWhole) {
        return;
    }
    const QSizeF needed = neededSize(text, lineSpacing);
    m_fits =
        needed.width() + rounding <= size.width() && needed.height() + rounding <= size.height();
}

QSizeF FrameLabel::neededSize(const QString& text, qreal lineSpacing)
{
    if (!m_pageText.isLaidOut()) {
        return unbrokenSize(text, font(), lineSpacing);
    }
    // The check or the print wants that layout in any case.
    pageDocument();
    constexpr QSizeF tooLarge(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    return m_pageText.unbrokenSize(lineSpacing).value_or(tooLarge);
}

const QTextDocument& FrameLabel::pageDocument()
{
    QTextOption option(alignment());
    option.setWrapMode(wordWrap() ? QTextOption::WordWrap : QTextOption::ManualWrap);
    option.setTextDirection(layoutDirection());
    const double width = contentsRect().width();
    return m_pageText.layOut(text(), m_isGuarded, {font(), option, width});
}

void FrameLabel::paintOnPage(QPainter& painter, const QRect& exposed)
{
    const QTextDocument& document = pageDocument();
    const QRect place = textRect(document);
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = palette();
    context.palette.setColor(QPalette::Text, palette().color(foregroundRole()));
    painter.setRenderHints(painter.renderHints(), false);
    painter.setRenderHint(QPainter::TextAntialiasing);
    QPainterPath visible;
    visible.addRect(place & exposed);
    painter.setClipPath(visible, Qt::IntersectClip);
    painter.translate(place.topLeft());
    document.documentLayout()->draw(&painter, context);
}

QSize FrameLabel::minimumSizeHint() const
{
    return m_fits ? QSize(0, 0) : QLabel::minimumSizeHint();
}

QSize FrameLabel::sizeHint() const
{
    return m_fits ? m_available : QLabel::sizeHint();
}

/// As the toolkit's label does it: no text begins above the label, and what reaches below is cut.
QRect FrameLabel::textRect(const QTextDocument& document) const
{
    const QRect contents = contentsRect();
    const int rest = qMax(contents.height() - qCeil(document.size().height()), 0);
    int top = 0;
    if (alignment() & Qt::AlignVCenter) {
        top = rest / 2;
    } else if (alignment() & Qt::AlignBottom) {
        top = rest;
    }
    return contents.translated(0, top);
}
