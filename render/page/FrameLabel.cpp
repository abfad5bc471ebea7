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
    if (hasMarkup(text)) {
        return;
    }
    const QSizeF needed = unbrokenSize(text, font(), lineSpacing);
    m_fits =
        needed.width() + rounding <= size.width() && needed.height() + rounding <= size.height();
}

const QTextDocument& FrameLabel::pageDocument()
{
    const double width = contentsRect().width();
    if (!m_pageDocument || m_documentText != text() || m_pageDocument->textWidth() != width ||
        m_pageDocument->defaultFont() != font())
    {
        layOutPageDocument(width);
    }
    return *m_pageDocument;
}

void FrameLabel::layOutPageDocument(double width)
{
    if (!m_pageDocument || m_isGuarded) {
        m_pageDocument = std::make_unique<QTextDocument>();
        m_pageDocument->setUndoRedoEnabled(false);
        m_pageDocument->setDocumentMargin(0);
    }
    QTextOption option(alignment());
    option.setWrapMode(wordWrap() ? QTextOption::WordWrap : QTextOption::ManualWrap);
    option.setTextDirection(layoutDirection());
    const QTextOption known = m_pageDocument->defaultTextOption();
    if (m_pageDocument->textWidth() != width || m_pageDocument->defaultFont() != font() ||
        known.alignment() != option.alignment() || known.wrapMode() != option.wrapMode() ||
        known.textDirection() != option.textDirection())
    {
        // Without a text: each of these would lay it out anew.
        m_pageDocument->clear();
        m_pageDocument->setDefaultFont(font());
        m_pageDocument->setDefaultTextOption(option);
        m_pageDocument->setTextWidth(width);
    }
    m_documentText = text();
    if (m_isGuarded) {
        MarkupDocument::guard(*m_pageDocument, m_documentText);
    }
    m_pageDocument->setHtml(m_documentText);
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
