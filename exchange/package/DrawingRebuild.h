#pragma once

#include <QHash>
#include <QString>

#include <optional>

class PackageReader;
class PackageWriter;
class PartReader;
class PartRelations;
class RelationList;
class XmlOutput;

/// Copies the drawings of a workbook with their pictures, charts and lines into a new package. What
/// the library would save broken is left out: other shapes, groups, charts of kinds it does not
/// write, pictures without content. A part that two owners refer to is copied for each.
class DrawingRebuild
{
public:
    /// Both must outlive the copying.
    DrawingRebuild(PackageReader& package, PackageWriter& copy);

    /// Copies a drawing. Returns the new part's name below "xl/", an empty one if nothing is left
    /// in the drawing, or nothing if a part is damaged; then the reason is in `error` (may be
    /// null).
    std::optional<QString> add(const QString& part, QString* error);

private:
    bool copyAnchor(PartReader& reader, const PartRelations& relations, RelationList& newRelations,
                    XmlOutput& out, QString* error);
    bool copyObject(PartReader& reader, const PartRelations& relations, RelationList& newRelations,
                    XmlOutput& object, QString* error);
    std::optional<QString> addPicture(const QString& part, QString* error);
    std::optional<QString> addChart(const QString& part, QString* error);

    PackageReader& m_package;
    PackageWriter& m_copy;
    QHash<QString, QString> m_pictures; ///< new names by old ones
    int m_drawingCount = 0;
    int m_chartCount = 0;
    int m_objectCount = 0;
};
