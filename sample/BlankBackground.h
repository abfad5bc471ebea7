#pragma once

#include <QImage>
#include <QJsonObject>
#include <QSize>

/// Draws the picture of a pre-printed paper form: tinted paper, guilloche, captions and the lines
/// to write on. `pageSize` is the page in scene units; the picture has two pixels a unit, which is
/// 192 dots per inch. All numbers in the description are scene units, fonts are points.
///
/// Keys of the description: "paper" (two colours, centre and rim), "ink" and "accent" (colours),
/// "frame" (distance of the ornament's axis from the edge), "rosettes" (arrays of x, y, radius),
/// "lines" (arrays of x, y, width), "captions" (objects with "x", "y" of the base line, "w",
/// "size", "text" and optionally "align", "bold", "italic", "spacing", "accent").
QImage drawBlankBackground(const QJsonObject& description, const QSize& pageSize);
