#pragma once

#include <QMap>
#include <QSet>
#include <QString>

#include "exchange/package/CellRebuild.h"
#include "exchange/package/PartRelations.h"
#include "exchange/package/XmlOutput.h"

class PartReader;
class StyleRebuild;

/// Copies a sheet: of its cells, formats and rules what the library reads, with every number, place
/// and relation looked at.
class SheetRebuild
{
public:
    SheetRebuild(CellRebuild& cells, const StyleRebuild& styles, const PartRelations& relations);

    /// Reads the sheet's part. If it is damaged or over the limits, returns false and puts the
    /// reason into `error` (may be null).
    bool read(const QByteArray& part, QString* error);

    /// Name of the part that has the sheet's pictures and charts; empty without one.
    const QString& drawingPart() const { return m_drawingPart; }

    /// The sheet. `drawing` is the relation to its new drawing, empty for none.
    QByteArray xml(const QString& drawing);

    /// Relations of the new sheet, to which a drawing may be added.
    RelationList& relations() { return m_newRelations; }

private:
    bool readElement(PartReader& reader, QString* error);
    void copyColumns(PartReader& reader);
    bool areFree(int first, int last) const;
    void copyConditions(PartReader& reader);
    void copyCondition(PartReader& reader);
    bool copyScale(PartReader& reader, int colours);
    void copyLinks(PartReader& reader);
    void copyLink(const PartReader& reader);
    void copyPage(PartReader& reader);
    void readDrawing(const PartReader& reader);

    CellRebuild& m_cells;
    const StyleRebuild& m_styles;
    const PartRelations& m_relations;
    RelationList m_newRelations;
    QString m_drawingPart;
    QSet<QString> m_seen;     ///< elements that a sheet has once
    QMap<int, int> m_columns; ///< last column of each range by its first
    int m_linkCount = 0;      ///< links to addresses
    XmlOutput m_out;          ///< children of the sheet
};
