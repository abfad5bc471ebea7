#include "tools/InkRecorder.h"

#include <QGraphicsItem>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionGraphicsItem>
#include <QTextDocument>

#include <limits>

namespace {

constexpr int pageSide = 1 << 20; // scene units; more than any page has
constexpr int dotsPerInch = 96;   // of a page

void paintWithChildren(QPainter& painter, QGraphicsItem* item)
{
    if (!item->isVisible()) {
        return;
    }
    QStyleOptionGraphicsItem option;
    option.rect = item->boundingRect().toAlignedRect();
    option.exposedRect = item->boundingRect();
    painter.save();
    painter.setTransform(item->sceneTransform());
    item->paint(&painter, &option, nullptr);
    painter.restore();
    for (QGraphicsItem* child : item->childItems()) {
        paintWithChildren(painter, child);
    }
}

} // namespace

QRectF TextMark::ink() const
{
    QPainterPath glyphs;
    glyphs.addText(position, font, text);
    return glyphs.isEmpty() ? QRectF() : transform.map(glyphs).boundingRect();
}

QRectF TextMark::roughInk() const
{
    // A slanted letter leans out of its box, an accent may stand above it.
    const double slack = box.height() / 3;
    return box.adjusted(-slack, -slack, slack, slack);
}

/// Keeps texts and passes over all else.
class InkRecorder::Engine : public QPaintEngine
{
public:
    explicit Engine(QVector<TextMark>& marks)
        : QPaintEngine(AllFeatures)
        , m_marks(marks)
    {
    }

    bool begin(QPaintDevice*) override
    {
        m_clip = QRectF();
        m_isClipped = false;
        return true;
    }
    bool end() override { return true; }
    Type type() const override { return User; }

    void updateState(const QPaintEngineState& newState) override
    {
        const DirtyFlags dirty = newState.state();
        if (dirty & DirtyClipRegion) {
            updateClip(newState, QRectF(newState.clipRegion().boundingRect()));
        } else if (dirty & DirtyClipPath) {
            updateClip(newState, newState.clipPath().boundingRect());
        }
        if (dirty & DirtyClipEnabled) {
            m_isClipped = newState.isClipEnabled();
        }
    }

    void drawPath(const QPainterPath&) override {}
    void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}

    void drawTextItem(const QPointF& position, const QTextItem& item) override
    {
        TextMark mark;
        mark.text = item.text();
        mark.font = item.font();
        mark.position = position;
        mark.transform = state->transform();
        mark.box = mark.transform.mapRect(QRectF(position.x(), position.y() - item.ascent(),
                                                 item.width(), item.ascent() + item.descent()));
        mark.clip = m_isClipped ? m_clip : QRectF();
        m_marks.append(mark);
    }

private:
    void updateClip(const QPaintEngineState& newState, const QRectF& area)
    {
        const QRectF clip = newState.transform().mapRect(area);
        switch (newState.clipOperation()) {
        case Qt::NoClip:
            m_isClipped = false;
            return;
        case Qt::ReplaceClip:
            m_clip = clip;
            break;
        case Qt::IntersectClip:
            m_clip = m_isClipped ? m_clip.intersected(clip) : clip;
            break;
        }
        m_isClipped = true;
    }

    QVector<TextMark>& m_marks;
    QRectF m_clip; // on the page
    bool m_isClipped = false;
};

InkRecorder::InkRecorder()
    : m_engine(std::make_unique<Engine>(m_marks))
{
}

InkRecorder::~InkRecorder() = default;

QVector<TextMark> InkRecorder::textsOf(QGraphicsItem* item)
{
    m_marks.clear();
    QPainter painter(this);
    paintWithChildren(painter, item);
    return m_marks;
}

QVector<TextMark> InkRecorder::textsOf(const QTextDocument& document, const QTransform& place)
{
    m_marks.clear();
    QPainter painter(this);
    painter.setTransform(place);
    // The operation that draws does not change the document, but is not marked so.
    const_cast<QTextDocument&>(document).drawContents(&painter);
    return m_marks;
}

QPaintEngine* InkRecorder::paintEngine() const
{
    return m_engine.get();
}

int InkRecorder::metric(PaintDeviceMetric metric) const
{
    constexpr double millimetresPerInch = 25.4;
    switch (metric) {
    case PdmWidth:
    case PdmHeight:
        return pageSide;
    case PdmWidthMM:
    case PdmHeightMM:
        return qRound(pageSide * millimetresPerInch / dotsPerInch);
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return dotsPerInch;
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

QRectF inkOf(const QVector<TextMark>& marks)
{
    QRectF ink;
    for (const TextMark& mark : marks) {
        ink |= mark.ink();
    }
    return ink;
}

QRectF PrintedInk::roughBounds() const
{
    QRectF bounds = solid;
    for (const TextMark& mark : texts) {
        bounds |= mark.clip.isNull() ? mark.roughInk() : mark.roughInk() & mark.clip;
    }
    return bounds;
}

QRectF PrintedInk::bounds() const
{
    QRectF bounds = solid;
    for (const TextMark& mark : texts) {
        bounds |= mark.clip.isNull() ? mark.ink() : mark.ink() & mark.clip;
    }
    return bounds;
}
