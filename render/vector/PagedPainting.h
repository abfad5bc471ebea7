#pragma once

class QPainter;

/// A paint device, other than a printer, that wants what a printed page gets.
class PageSurface
{
public:
    PageSurface() = default;
    PageSurface(const PageSurface&) = default;
    PageSurface& operator=(const PageSurface&) = default;
    virtual ~PageSurface();
};

/// True if what the painter paints becomes a printed page (a printer or a PDF file), or is to be
/// painted as on one.
bool paintsOnPage(const QPainter* painter);
