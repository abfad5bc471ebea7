#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>

class QPainter;

/// Ornaments of security printing, computed as families of thin curves. All of them draw with
/// hairlines of `lineWidth` in the painter's units and leave its state as it was.
namespace Guilloche {

/// An even net of waves over the whole rectangle.
void drawNet(QPainter& painter, const QRectF& area, const QColor& color, qreal lineWidth);

/// A band of interlaced waves along the four sides of `frame`; `width` is the height of the waves
/// from crest to crest.
void drawFrame(QPainter& painter, const QRectF& frame, qreal width, const QColor& color,
               qreal lineWidth);

/// A round rosette of interlaced petals.
void drawRosette(QPainter& painter, const QPointF& center, qreal radius, int petals,
                 const QColor& color, qreal lineWidth);

} // namespace Guilloche
