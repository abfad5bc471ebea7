#include "render/vector/PaintForwarder.h"

#include <QPainter>
#include <QPainterPath>
#include <QTransform>

#include "render/vector/ClipTrackingEngine.h"

namespace {

/// Brings the target painter into the source's state just before each primitive. Working from the
/// whole state, not from its changes, costs little, since a painter ignores what it already has.
class ForwardingEngine : public ClipTrackingEngine
{
public:
    explicit ForwardingEngine(QPainter* target)
        : m_target(target)
        , m_base(target->transform())
        , m_baseOpacity(target->opacity())
    {
        m_target->save();
    }

    ~ForwardingEngine() override { m_target->restore(); }

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
    /// Puts the source's clip and state on the target; false if nothing of a primitive can show.
    bool prepareTarget()
    {
        QPainterPath shown;
        shown.addRegion(systemClip());
        if (isClipped()) {
            shown = shown.isEmpty() ? clip() : shown.intersected(clip());
        }
        const bool isLimited = isClipped() || !systemClip().isEmpty();
        if (isLimited && shown.isEmpty()) {
            return false;
        }
        if (shown != m_targetClip) {
            m_targetClip = shown;
            m_target->restore();
            m_target->save();
            if (isLimited) {
                m_target->setClipPath(shown, Qt::IntersectClip);
            }
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
    QPainterPath m_targetClip; // what the target has now
};

} // namespace

PaintForwarder::PaintForwarder(QPainter* target, const QSize& size, int dpi)
    : VirtualPaintDevice(size, dpi)
    , m_engine(std::make_unique<ForwardingEngine>(target))
{
}

PaintForwarder::~PaintForwarder() = default;

QPaintEngine* PaintForwarder::paintEngine() const
{
    return m_engine.get();
}
