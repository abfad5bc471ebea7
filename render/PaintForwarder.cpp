#include "render/PaintForwarder.h"

#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QRegion>
#include <QTransform>

#include <limits>

namespace {

/// Brings the target painter into the source's state just before each primitive. Working from the
/// whole state, not from its changes, costs little, since a painter ignores what it already has.
class ForwardingEngine : public QPaintEngine
{
public:
    explicit ForwardingEngine(QPainter* target)
        : QPaintEngine(AllFeatures)
        , m_target(target)
        , m_base(target->transform())
        , m_baseOpacity(target->opacity())
    {
        m_target->save();
    }

    ~ForwardingEngine() override { m_target->restore(); }

    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }

    void updateState(const QPaintEngineState& newState) override
    {
        const DirtyFlags dirty = newState.state();
        if (dirty & DirtyClipRegion) {
            QPainterPath path;
            path.addRegion(newState.clipRegion());
            updateClip(newState.clipOperation(), newState.transform().map(path));
        } else if (dirty & DirtyClipPath) {
            updateClip(newState.clipOperation(), newState.transform().map(newState.clipPath()));
        }
        if (dirty & DirtyClipEnabled) {
            m_clipEnabled = newState.isClipEnabled();
        }
    }

    void drawPath(const QPainterPath& path) override
    {
        if (prepareTarget()) {
            m_target->drawPath(path);
        }
    }

    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override
    {
        if (!prepareTarget()) {
            return;
        }
        switch (mode) {
        case PolylineMode:
            m_target->drawPolyline(points, count);
            break;
        case ConvexMode:
            m_target->drawConvexPolygon(points, count);
            break;
        case WindingMode:
            m_target->drawPolygon(points, count, Qt::WindingFill);
            break;
        case OddEvenMode:
            m_target->drawPolygon(points, count, Qt::OddEvenFill);
            break;
        }
    }

    void drawRects(const QRectF* rects, int count) override
    {
        if (prepareTarget()) {
            m_target->drawRects(rects, count);
        }
    }

    void drawLines(const QLineF* lines, int count) override
    {
        if (prepareTarget()) {
            m_target->drawLines(lines, count);
        }
    }

    void drawPixmap(const QRectF& rect, const QPixmap& pixmap, const QRectF& source) override
    {
        if (prepareTarget()) {
            m_target->drawPixmap(rect, pixmap, source);
        }
    }

    void drawTiledPixmap(const QRectF& rect, const QPixmap& pixmap, const QPointF& offset) override
    {
        if (prepareTarget()) {
            m_target->drawTiledPixmap(rect, pixmap, offset);
        }
    }

    void drawImage(const QRectF& rect, const QImage& image, const QRectF& source,
                   Qt::ImageConversionFlags flags) override
    {
        if (prepareTarget()) {
            m_target->drawImage(rect, image, source, flags);
        }
    }

    void drawTextItem(const QPointF& position, const QTextItem& item) override
    {
        if (prepareTarget()) {
            m_target->drawTextItem(position, item);
        }
    }

private:
    void updateClip(Qt::ClipOperation operation, const QPainterPath& path)
    {
        switch (operation) {
        case Qt::NoClip:
            m_clipEnabled = false;
            return;
        case Qt::ReplaceClip:
            m_clip = path;
            break;
        case Qt::IntersectClip:
            m_clip = m_clipEnabled ? m_clip.intersected(path) : path;
            break;
        }
        m_clipEnabled = true;
    }

    /// Puts the source's clip and state on the target; false if nothing of a primitive can show.
    bool prepareTarget()
    {
        QPainterPath clip;
        clip.addRegion(systemClip());
        if (m_clipEnabled) {
            clip = clip.isEmpty() ? m_clip : clip.intersected(m_clip);
        }
        if (clip.isEmpty()) {
            return systemClip().isEmpty() && !m_clipEnabled;
        }
        if (clip != m_targetClip) {
            m_targetClip = clip;
            m_target->restore();
            m_target->save();
            m_target->setClipPath(clip, Qt::IntersectClip);
        }
        m_target->setTransform(state->transform() * m_base);
        m_target->setPen(state->pen());
        m_target->setBrush(state->brush());
        m_target->setBrushOrigin(state->brushOrigin());
        m_target->setBackground(state->backgroundBrush());
        m_target->setBackgroundMode(state->backgroundMode());
        m_target->setOpacity(m_baseOpacity * state->opacity());
        m_target->setRenderHints(~state->renderHints(), false);
        m_target->setRenderHints(state->renderHints());
        return true;
    }

    QPainter* m_target;
    QTransform m_base;
    qreal m_baseOpacity;
    QPainterPath m_clip; // of the source, in the forwarder's own coordinates
    bool m_clipEnabled = false;
    QPainterPath m_targetClip; // what the target has now
};

} // namespace

PaintForwarder::PaintForwarder(QPainter* target, const QSize& size, int dpi)
    : m_engine(std::make_unique<ForwardingEngine>(target))
    , m_size(size)
    , m_dpi(dpi)
{
}

PaintForwarder::~PaintForwarder() = default;

QPaintEngine* PaintForwarder::paintEngine() const
{
    return m_engine.get();
}

int PaintForwarder::metric(PaintDeviceMetric metric) const
{
    constexpr double millimetresPerInch = 25.4;
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
