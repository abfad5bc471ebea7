#pragma once

#include <QPaintEngine>
#include <QPainterPath>

/// A paint engine that paints nothing itself and knows at each primitive how it is clipped.
class ClipTrackingEngine : public QPaintEngine
{
public:
    ClipTrackingEngine();

    bool begin(QPaintDevice* device) override;
    bool end() override { return true; }
    Type type() const override { return User; }
    void updateState(const QPaintEngineState& newState) override;

protected:
    bool isClipped() const { return m_isClipped; }

    /// The painter's clip in the coordinates of the device; counts if isClipped().
    const QPainterPath& clip() const { return m_clip; }

private:
    void updateClip(Qt::ClipOperation operation, const QPainterPath& path);

    QPainterPath m_clip;
    bool m_isClipped = false;
};
