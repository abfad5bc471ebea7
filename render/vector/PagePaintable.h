#pragma once

class QPainter;
class QRect;

/// A widget that paints itself on a page without the toolkit's machinery for painting widgets,
/// which costs more than the layout of a text.
class PagePaintable
{
public:
    PagePaintable() = default;
    PagePaintable(const PagePaintable&) = delete;
    PagePaintable& operator=(const PagePaintable&) = delete;
    virtual ~PagePaintable();

    /// Paints what the widget shows within `exposed`, in its own coordinates. The painter's state
    /// may be left changed.
    virtual void paintOnPage(QPainter& painter, const QRect& exposed) = 0;
};
