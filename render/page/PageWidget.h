#pragma once

#include <QPaintDevice>

#include "render/page/PageUnits.h"

/// A widget that stands on a page. There a scene unit is a pixel at 96 dots per inch, so that a
/// font of 12 points is as large on paper as it says, whatever screen the page is laid out on.
template <class Widget>
class PageWidget : public Widget
{
public:
    using Widget::Widget;

protected:
    int metric(QPaintDevice::PaintDeviceMetric metric) const override
    {
        const bool isLogicalDpi =
            metric == QPaintDevice::PdmDpiX || metric == QPaintDevice::PdmDpiY;
        return isLogicalDpi ? PageUnits::dotsPerInch : Widget::metric(metric);
    }
};
