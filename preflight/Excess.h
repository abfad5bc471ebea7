#pragma once

#include <QRectF>
#include <QVector>

#include "preflight/Finding.h"

/// How far something reaches beyond a boundary on one side, in the unit of the rectangles.
struct Excess
{
    Finding::Side side;
    double length;
};

/// The sides on which `inner` leaves `outer` by more than `tolerance`, left, top, right, bottom. A
/// null `inner` leaves nothing.
QVector<Excess> excessesOf(const QRectF& inner, const QRectF& outer, double tolerance);

/// How far `inner` leaves `outer` on a side; 0 if it does not.
double excessOn(Finding::Side side, const QRectF& inner, const QRectF& outer);
