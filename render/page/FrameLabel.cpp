#include "render/page/FrameLabel.h"

#include <QTextLayout>

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

QSize FrameLabel::minimumSizeHint() const
{
    return m_fits ? QSize(0, 0) : QLabel::minimumSizeHint();
}

QSize FrameLabel::sizeHint() const
{
    return m_fits ? m_available : QLabel::sizeHint();
}
