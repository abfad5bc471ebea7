#pragma once

#include <QLabel>
#include <QSizeF>

#include "render/page/PageText.h"
#include "render/page/PageWidget.h"
#include "render/vector/PagePaintable.h"

/// The label of a text item. Its size hints, which cost a rich text label some ten layouts of its
/// text, are spared where they make no difference: in a frame that has room enough for the text on
/// unbroken lines, the layout gives a label that is alone in it all the room. On a page it lays its
/// text out once, where the toolkit's label takes four layouts.
class FrameLabel : public PageWidget<QLabel>, public PagePaintable
{
public:
    explicit FrameLabel(const QString& text = QString());

    /// Shows the text, which may be of anybody: bounded, and loading only what markup may load.
    void setText(const QString& text);

    /// False if the end of the text or its markup had to be left out.
    bool isWhole() const { return m_isWhole; }

    /// False if what the text has loaded would be there for the next one too.
    bool takesAnotherText() const { return !m_isGuarded; }

    /// Tells the label, alone in its frame and in its font, what the frame's layout leaves for it,
    /// in scene units, and the text that it has or gets, without the markup around it;
    /// `lineSpacing` is a factor. A label that a page was painted with must have its text by then.
    void setAvailableSize(const QSizeF& size, const QString& text, qreal lineSpacing);

    /// True if the text fits its frame on unbroken lines for sure: of all texts that do, the label
    /// has the same place.
    bool fits() const { return m_fits; }

    /// The text as it is laid out on a page.
    const QTextDocument& pageDocument();

    void paintOnPage(QPainter& painter, const QRect& exposed) override;

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

private:
    QSizeF neededSize(const QString& text, qreal lineSpacing);
    QRect textRect(const QTextDocument& document) const;

    bool m_isWhole = true;
    bool m_isGuarded = false; // the text may load something
    bool m_fits = false;      // surely; else the hints are the toolkit's
    QSize m_available;
    PageText m_pageText;
};
