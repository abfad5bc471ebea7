#include "sample/Guilloche.h"

#include <QLineF>
#include <QPainter>
#include <QPolygonF>
#include <QtMath>

#include <cmath>
#include <functional>

namespace {

constexpr qreal fullTurn = 2 * M_PI;

class SavedPainter
{
public:
    SavedPainter(QPainter& painter, const QColor& color, qreal lineWidth)
        : m_painter(painter)
    {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(color, lineWidth));
        painter.setBrush(Qt::NoBrush);
    }
    ~SavedPainter() { m_painter.restore(); }
    Q_DISABLE_COPY(SavedPainter)

private:
    QPainter& m_painter;
};

QPolygonF curve(qreal from, qreal to, qreal step, const std::function<QPointF(qreal)>& point)
{
    const int count = qMax(2, qCeil((to - from) / step) + 1);
    QPolygonF polygon;
    polygon.reserve(count);
    for (int i = 0; i < count; i++) {
        polygon << point(from + (to - from) * i / (count - 1));
    }
    return polygon;
}

// A whole number of waves on each side, so that the bands meet at the corners.
void drawBand(QPainter& painter, const QLineF& axis, qreal width)
{
    constexpr int strands = 6;
    constexpr qreal wantedPeriod = 36;
    const qreal length = axis.length();
    const qreal period = length / qMax(1, qRound(length / wantedPeriod));
    const QPointF along = (axis.p2() - axis.p1()) / length;
    const QPointF across(-along.y(), along.x());
    for (int strand = 0; strand < strands; strand++) {
        const qreal phase = fullTurn * strand / strands;
        painter.drawPolyline(curve(0, length, 1.5, [&](qreal t) {
            const qreal angle = fullTurn * t / period;
            const qreal swing = 0.75 * std::sin(angle + phase) + 0.25 * std::sin(3 * angle - phase);
            return axis.p1() + along * t + across * (swing * width / 2);
        }));
    }
}

void drawPetals(QPainter& painter, const QPointF& center, qreal radius, qreal depth, int petals,
                int strands)
{
    for (int strand = 0; strand < strands; strand++) {
        const qreal phase = fullTurn * strand / strands;
        painter.drawPolygon(curve(0, fullTurn, fullTurn / 360, [&](qreal angle) {
            const qreal distance = radius * (1 - depth + depth * std::cos(petals * angle + phase));
            return center + QPointF(std::cos(angle), std::sin(angle)) * distance;
        }));
    }
}

} // namespace

void Guilloche::drawNet(QPainter& painter, const QRectF& area, const QColor& color, qreal lineWidth)
{
    const SavedPainter saved(painter, color, lineWidth);
    constexpr qreal spacing = 6;
    constexpr qreal swing = 9;
    painter.setClipRect(area);
    const int rows = qCeil((area.height() + 2 * swing) / spacing);
    for (int row = 0; row < rows; row++) {
        const qreal y = area.top() - swing + row * spacing;
        painter.drawPolyline(curve(area.left(), area.right(), 3, [&](qreal x) {
            const qreal wave = std::sin(x / 37 + row * 0.21) + 0.3 * std::sin(x / 11 - row * 0.4);
            return QPointF(x, y + swing * wave / 1.3);
        }));
    }
}

void Guilloche::drawFrame(QPainter& painter, const QRectF& frame, qreal width, const QColor& color,
                          qreal lineWidth)
{
    const SavedPainter saved(painter, color, lineWidth);
    drawBand(painter, QLineF(frame.topLeft(), frame.topRight()), width);
    drawBand(painter, QLineF(frame.topRight(), frame.bottomRight()), width);
    drawBand(painter, QLineF(frame.bottomRight(), frame.bottomLeft()), width);
    drawBand(painter, QLineF(frame.bottomLeft(), frame.topLeft()), width);
}

void Guilloche::drawRosette(QPainter& painter, const QPointF& center, qreal radius, int petals,
                            const QColor& color, qreal lineWidth)
{
    const SavedPainter saved(painter, color, lineWidth);
    drawPetals(painter, center, radius, 0.16, petals, 8);
    drawPetals(painter, center, radius * 0.74, 0.24, petals / 2, 10);
    drawPetals(painter, center, radius * 0.4, 0.3, petals / 3, 8);
}
