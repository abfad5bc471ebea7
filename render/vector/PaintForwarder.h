#pragma once

#include <memory>

#include "render/vector/VirtualPaintDevice.h"

class QPaintEngine;
class QPainter;

/// A paint device that repeats on another painter whatever is painted on it, primitive by
/// primitive, in the coordinates that the other painter has when the forwarder is made. Text stays
/// text, with the glyph positions of the source; the clips of the source come through.
class PaintForwarder : public VirtualPaintDevice
{
public:
    /// `target` must be active and outlive the forwarder; its state is restored at the end. `size`
    /// (units of the source) and `dpi` are what the device says of itself.
    PaintForwarder(QPainter* target, const QSize& size, int dpi);
    ~PaintForwarder() override;

    QPaintEngine* paintEngine() const override;

private:
    std::unique_ptr<QPaintEngine> m_engine;
};
