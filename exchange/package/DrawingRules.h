#pragma once

#include <QString>

#include "exchange/package/PartRule.h"

class XmlOutput;

/// What the elements of drawings and charts may hold.
namespace DrawingRules {

/// The rule of an object's place by its name, with its corners or its size as children, which it
/// needs all; null if there is none.
const ElementRule* anchor(const QString& name);

/// Adds the prefixes that a drawing's elements are written with to the start tag that is open.
void writeNamespaces(XmlOutput& out);

void writePicture(const QString& relation, XmlOutput& out);
void writeChartFrame(const QString& relation, XmlOutput& out);

/// Copies the line that the reader is at, if it is whole.
void copyLine(PartReader& reader, XmlOutput& out);

/// Copies the chart of a part from its beginning on. Returns false if it is of a kind that the
/// library does not write.
bool copyChart(PartReader& reader, XmlOutput& out);

} // namespace DrawingRules
