#pragma once

#include <QPaintDevice>
#include <QSize>

/// A paint device that is no more than a size and a resolution; what is painted on it goes to the
/// engine of a derived class.
class VirtualPaintDevice : public QPaintDevice
{
protected:
    /// `size` is in units of which `dpi` make an inch.
    VirtualPaintDevice(const QSize& size, int dpi);

    int metric(PaintDeviceMetric metric) const override;

private:
    QSize m_size;
    int m_dpi;
};
