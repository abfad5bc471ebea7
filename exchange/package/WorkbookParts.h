#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

class PartReader;
class PartRelations;
class RelationList;

/// The small parts of a new package.
namespace WorkbookParts {

QByteArray contentTypes();

/// A sheet that shows the chart of a drawing and nothing else.
QByteArray chartSheet(const QString& drawing);

/// A link to another workbook, with its values, from the part that the reader is at the beginning
/// of.
QByteArray link(PartReader& reader, const PartRelations& relations, RelationList& newRelations);
/// One that leads nowhere, in place of one that cannot be read.
QByteArray brokenLink(RelationList& newRelations);

/// The colours and fonts of a workbook, copied whole, since formats refer to them by their places.
/// Returns nothing if they are damaged, and puts the reason into `error` (may be null).
std::optional<QByteArray> theme(const QByteArray& part, QString* error);

/// The document's properties of a kind, "core-properties" or "extended-properties". Returns nothing
/// if they are damaged.
std::optional<QByteArray> properties(const QByteArray& part, const QString& kind);

} // namespace WorkbookParts
