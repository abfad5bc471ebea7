#pragma once

#include <QLabel>
#include <QSizeF>

#include "render/page/PageWidget.h"

/// The label of a text item. Its size hints, which cost a rich text label some ten layouts of its
/// text, are spared where they make no difference: in a frame that has room enough for the text on
/// unbroken lines, the layout gives a label that is alone in it all the room.
class FrameLabel : public PageWidget<QLabel>
{
public:
    /// Tells the label, alone in its frame and in its font, what the frame's layout leaves for it,
    /// in scene units, before it gets a text. `text` is that text without the markup around it,
    /// `lineSpacing` a factor.
    void setAvailableSize(const QSizeF& size, const QString& text, qreal lineSpacing);

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

private:
    bool m_fits = false; // surely; else the hints are the toolkit's
    QSize m_available;
};
