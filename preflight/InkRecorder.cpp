#include "preflight/InkRecorder.h"

#include <QGraphicsItem>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionGraphicsItem>
#include <QTextDocument>

#include "preflight/LetterBoxes.h"
#include "render/page/PageUnits.h"
#include "render/vector/ClipTrackingEngine.h"

namespace {

constexpr int pageSide = 1 << 20; // scene units; more than any page has

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
    if (const std::optional<QRectF> letters = LetterBoxes::shared().around(text, font, advance)) {
        return transform.mapRect(letters->translated(position));
    }
    // A slanted letter leans out of its box, an accent may stand above it.
    const double slack = box.height() / 3;
    return box.adjusted(-slack, -slack, slack, slack);
}

QRectF TextMark::clipped(const QRectF& onPage) const
{
    return clip ? onPage & *clip : onPage;
}

/// Keeps texts and passes over all else.
class InkRecorder::Engine : public ClipTrackingEngine
{
public:
    explicit Engine(QVector<TextMark>& marks)
        : m_marks(marks)
    {
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
        mark.advance = item.width();
        mark.box = mark.transform.mapRect(QRectF(position.x(), position.y() - item.ascent(),
                                                 item.width(), item.ascent() + item.descent()));
        if (isClipped()) {
            mark.clip = clip().boundingRect();
        }
        m_marks.append(mark);
    }

private:
    QVector<TextMark>& m_marks;
};

InkRecorder::InkRecorder()
    : VirtualPaintDevice(QSize(pageSide, pageSide), PageUnits::dotsPerInch)
    , m_engine(std::make_unique<Engine>(m_marks))
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
        bounds |= mark.clipped(mark.roughInk());
    }
    return bounds;
}

QRectF PrintedInk::bounds() const
{
    QRectF bounds = solid;
    for (const TextMark& mark : texts) {
        bounds |= mark.clipped(mark.ink());
    }
    return bounds;
}
