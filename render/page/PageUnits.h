#pragma once

#include <QtGlobal>

#include "render/vector/Inch.h"

/// Units of a page. A length on a page is a number of scene units, the origin is the top left
/// corner of the paper. Lengths of the database in millimetres become scene units by mmToPixels()
/// alone, which is not exact and must not be.
namespace PageUnits {
/// A scene unit is nominally a pixel at this resolution, whatever the screen's is.
constexpr int dotsPerInch = 96;

/// The same for pictures, which tell their resolution in whole dots.
constexpr int dotsPerMetre = qRound(dotsPerInch * millimetresPerMetre / millimetresPerInch);
} // namespace PageUnits
