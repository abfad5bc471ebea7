#pragma once

#include <QString>

#include "exchange/package/PartRule.h"

/// What the elements of a sheet may hold, but for its cells.
namespace SheetRules {

/// The rule of an element of a sheet that is copied as it is; null if there is none.
const ElementRule* ofSheet(const QString& name);

/// Attributes of columns, but for which they are; `formats` is how many formats there are.
ElementRule column(int formats);

/// A rule that formats cells; `differences` is how many formats for that there are.
ElementRule condition(int differences);
bool isKnownCondition(const QString& type);
const ElementRule& scaleEnd();
const ElementRule& scaleColour();

/// Attributes of a link, but for its cell and its target.
const ElementRule& link();
/// Attributes of the page that a sheet is printed on.
const ElementRule& page();

} // namespace SheetRules
