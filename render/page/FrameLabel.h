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
    explicit FrameLabel(const QString& text);

    /// Shows the text, which may be of anybody: bounded, and loading only what markup may load.
    void setText(const QString& text);

    /// False if the end of the text or its markup had to be left out.
    bool isWhole() const { return m_isWhole; }

    /// Tells the label, alone in its frame, the room of the frame's layout, in scene units, before
    /// it goes into the frame. `font` and `lineSpacing` (a factor) are those that it will have.
    void setRoom(const QSizeF& room, const QFont& font, qreal lineSpacing);

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

private:
    bool m_isWhole = true;
    bool m_fits = false; // surely; else the hints are the toolkit's
    QSize m_room;
};
