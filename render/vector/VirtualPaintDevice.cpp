#include "render/vector/VirtualPaintDevice.h"

#include <limits>

#include "render/vector/Inch.h"

VirtualPaintDevice::VirtualPaintDevice(const QSize& size, int dpi)
    : m_size(size)
    , m_dpi(dpi)
{
}

int VirtualPaintDevice::metric(PaintDeviceMetric metric) const
{
    switch (metric) {
    case PdmWidth:
        return m_size.width();
    case PdmHeight:
        return m_size.height();
    case PdmWidthMM:
        return qRound(m_size.width() * millimetresPerInch / m_dpi);
    case PdmHeightMM:
        return qRound(m_size.height() * millimetresPerInch / m_dpi);
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return m_dpi;
    case PdmNumColors:
        return std::numeric_limits<int>::max();
    case PdmDepth:
        return 32;
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return static_cast<int>(devicePixelRatioFScale());
    }
    return 0;
}
