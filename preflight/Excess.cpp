#include "preflight/Excess.h"

QVector<Excess> excessesOf(const QRectF& inner, const QRectF& outer, double tolerance)
{
    QVector<Excess> excesses;
    for (const Finding::Side side :
         {Finding::Side::Left, Finding::Side::Top, Finding::Side::Right, Finding::Side::Bottom})
    {
        const double length = excessOn(side, inner, outer);
        if (length > tolerance) {
            excesses.append({side, length});
        }
    }
    return excesses;
}

double excessOn(Finding::Side side, const QRectF& inner, const QRectF& outer)
{
    if (inner.isNull()) {
        return 0;
    }
    switch (side) {
    case Finding::Side::Left:
        return qMax(outer.left() - inner.left(), 0.0);
    case Finding::Side::Top:
        return qMax(outer.top() - inner.top(), 0.0);
    case Finding::Side::Right:
        return qMax(inner.right() - outer.right(), 0.0);
    case Finding::Side::Bottom:
        return qMax(inner.bottom() - outer.bottom(), 0.0);
    case Finding::Side::None:
        break;
    }
    return 0;
}
