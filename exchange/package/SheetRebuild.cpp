#include "exchange/package/SheetRebuild.h"

#include <iterator>

#include "exchange/CellName.h"
#include "exchange/package/PackageLimits.h"
#include "exchange/package/PartReader.h"
#include "exchange/package/SheetRules.h"
#include "exchange/package/StyleRebuild.h"

namespace {

void tell(QString* error, const QString& reason)
{
    if (error) {
        *error = reason;
    }
}

} // namespace

SheetRebuild::SheetRebuild(CellRebuild& cells, const StyleRebuild& styles,
                           const PartRelations& relations)
    : m_cells(cells)
    , m_styles(styles)
    , m_relations(relations)
{
}

bool SheetRebuild::read(const QByteArray& part, QString* error)
{
    PartReader reader(part);
    bool isDone = reader.enter("worksheet");
    while (isDone && reader.nextChild()) {
        isDone = readElement(reader, error);
    }
    if (!reader.isWell() || (isDone && !reader.isWellToTheEnd())) {
        tell(error, reader.error());
        return false;
    }
    return isDone;
}

QByteArray SheetRebuild::xml(const QString& drawing)
{
    XmlOutput out;
    out.start("worksheet");
    out.attribute("xmlns", "http://schemas.openxmlformats.org/spreadsheetml/2006/main");
    out.attribute("xmlns:r", "http://schemas.openxmlformats.org/officeDocument/2006/relationships");
    if (!m_cells.dimension().isEmpty()) {
        // The library saves nothing outside of it, so it is taken from the cells themselves.
        out.start("dimension");
        out.attribute("ref", m_cells.dimension());
        out.end("dimension");
    }
    out.raw(m_out.bytes());
    if (!drawing.isEmpty()) {
        out.start("drawing");
        out.attribute("r:id", drawing);
        out.end("drawing");
    }
    out.end("worksheet");
    return out.bytes();
}

bool SheetRebuild::readElement(PartReader& reader, QString* error)
{
    const QString name = reader.name().toString();
    if (reader.vocabulary() != Vocabulary::Sheet) {
        reader.skip();
        return true;
    }
    if (name == QLatin1String("conditionalFormatting")) {
        copyConditions(reader);
        return true;
    }
    if (m_seen.contains(name)) {
        reader.skip();
        return true;
    }
    m_seen.insert(name);
    if (name == QLatin1String("sheetData")) {
        m_out.start("sheetData");
        const bool isDone = m_cells.copyRows(reader, m_out, error);
        m_out.end("sheetData");
        return isDone;
    }
    if (name == QLatin1String("cols")) {
        copyColumns(reader);
    } else if (name == QLatin1String("hyperlinks")) {
        copyLinks(reader);
    } else if (name == QLatin1String("pageSetup")) {
        copyPage(reader);
    } else if (name == QLatin1String("drawing")) {
        readDrawing(reader);
        reader.skip();
    } else if (const ElementRule* rule = SheetRules::ofSheet(name)) {
        copyElement(reader, *rule, m_out);
    } else {
        reader.skip();
    }
    return true;
}

/// Columns that overlap are none.
void SheetRebuild::copyColumns(PartReader& reader)
{
    const ElementRule rule = SheetRules::column(m_styles.formats());
    m_out.start("cols");
    while (reader.nextChild()) {
        const int first = reader.whole("min", 1, PackageLimits::columns, 0);
        // Some programs count one column too many at the end of a sheet.
        const int last = qMin(reader.whole("max", 1, INT_MAX, 0), PackageLimits::columns);
        if (reader.is("col") && first > 0 && first <= last && areFree(first, last)) {
            m_columns.insert(first, last);
            m_out.start("col");
            m_out.attribute("min", first);
            m_out.attribute("max", last);
            copyAttributes(reader, rule, m_out);
            m_out.end("col");
        }
        reader.skip();
    }
    m_out.end("cols");
}

/// True if no range of columns met so far has one of these.
bool SheetRebuild::areFree(int first, int last) const
{
    const auto next = m_columns.upperBound(last);
    return next == m_columns.cbegin() || std::prev(next).value() < first;
}

void SheetRebuild::copyConditions(PartReader& reader)
{
    const QString areas = areasFromNames(reader.attribute("sqref"));
    if (areas.isEmpty()) {
        reader.skip();
        return;
    }
    const int mark = m_out.mark();
    m_out.start("conditionalFormatting");
    m_out.attribute("sqref", areas);
    const int empty = m_out.mark();
    while (reader.nextChild()) {
        if (reader.is("cfRule")) {
            copyCondition(reader);
        } else {
            reader.skip();
        }
    }
    const bool isEmpty = m_out.mark() == empty;
    m_out.end("conditionalFormatting");
    if (isEmpty) {
        m_out.truncate(mark);
    }
}

/// Rules of a type that the library does not know, or without what their type needs, would come out
/// of it broken.
void SheetRebuild::copyCondition(PartReader& reader)
{
    const ElementRule rule = SheetRules::condition(m_styles.differences());
    const QString type = reader.attribute("type").toString();
    if (!SheetRules::isKnownCondition(type)) {
        reader.skip();
        return;
    }
    const int mark = m_out.mark();
    m_out.start("cfRule");
    copyAttributes(reader, rule, m_out);
    bool isWhole = type != QLatin1String("dataBar") && type != QLatin1String("colorScale");
    while (reader.nextChild()) {
        if (reader.is("formula")) {
            copyElement(reader, rule.children.first(), m_out);
        } else if (reader.is("dataBar")) {
            isWhole = copyScale(reader, 1) && type == QLatin1String("dataBar");
        } else if (reader.is("colorScale")) {
            isWhole = copyScale(reader, 2) && type == QLatin1String("colorScale");
        } else {
            reader.skip();
        }
    }
    m_out.end("cfRule");
    if (!isWhole) {
        m_out.truncate(mark);
    }
}

/// The library keeps the two ends of a scale. Returns false if they or a colour are missing.
bool SheetRebuild::copyScale(PartReader& reader, int colours)
{
    const QByteArray name = reader.name().toUtf8();
    const bool hidesValue = !reader.flag("showValue", true);
    QVector<QByteArray> ends;
    QVector<QByteArray> shades;
    while (reader.nextChild()) {
        XmlOutput out;
        const bool isEnd = reader.is("cfvo");
        if (!isEnd && !reader.is("color")) {
            reader.skip();
        } else if (copyElement(reader, isEnd ? SheetRules::scaleEnd() : SheetRules::scaleColour(),
                               out)) {
            (isEnd ? ends : shades).append(out.bytes());
        }
    }
    if (ends.size() < 2 || shades.size() < colours) {
        return false;
    }
    m_out.start(name.constData());
    if (hidesValue) {
        m_out.attribute("showValue", "0");
    }
    m_out.raw(ends.first());
    m_out.raw(ends.last());
    m_out.raw(shades.first());
    if (colours > 1) {
        m_out.raw(shades.last());
    }
    m_out.end(name.constData());
    return true;
}

void SheetRebuild::copyLinks(PartReader& reader)
{
    m_out.start("hyperlinks");
    while (reader.nextChild()) {
        if (reader.is("hyperlink")) {
            copyLink(reader);
        }
        reader.skip();
    }
    m_out.end("hyperlinks");
}

/// The library knows links of one cell only: that of an area becomes its first cell's. Links to
/// addresses beyond the limit are left out; no template has so many.
void SheetRebuild::copyLink(const PartReader& reader)
{
    const QString area = areasFromNames(reader.attribute("ref"));
    const PartRelation* target = m_relations.byId(reader.relation());
    if (area.isEmpty() || (!target && reader.attribute("location").isEmpty()) ||
        (target && ++m_linkCount > PackageLimits::links))
    {
        return;
    }
    m_out.start("hyperlink");
    m_out.attribute("ref", area.split(':').first());
    copyAttributes(reader, SheetRules::link(), m_out);
    if (target) {
        m_out.attribute("r:id", m_newRelations.add("hyperlink", target->target, true));
    }
    m_out.end("hyperlink");
}

/// The library saves the page only if it names a printer's settings, which it then leaves out.
void SheetRebuild::copyPage(PartReader& reader)
{
    m_out.start("pageSetup");
    copyAttributes(reader, SheetRules::page(), m_out);
    if (m_relations.byId(reader.relation())) {
        m_out.attribute("r:id", "rIdPrinter");
    }
    m_out.end("pageSetup");
    reader.skip();
}

void SheetRebuild::readDrawing(const PartReader& reader)
{
    const PartRelation* relation = m_relations.byId(reader.relation());
    if (relation && !relation->isExternal && relation->kind == QLatin1String("drawing")) {
        m_drawingPart = relation->target;
    }
}
