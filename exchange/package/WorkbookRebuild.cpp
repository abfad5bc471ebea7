#include "exchange/package/WorkbookRebuild.h"

#include <algorithm>

#include "exchange/package/PackageLimits.h"
#include "exchange/package/PartReader.h"
#include "exchange/package/SheetRebuild.h"
#include "exchange/package/WorkbookParts.h"

namespace {

bool tell(QString* error, const QString& reason)
{
    if (error) {
        *error = reason;
    }
    return false;
}

} // namespace

WorkbookRebuild::WorkbookRebuild()
    : m_drawings(m_package, m_copy)
    , m_budget{PackageLimits::cells, PackageLimits::characters, PackageLimits::places}
{
}

std::optional<QByteArray> WorkbookRebuild::rebuild(const QByteArray& file, QString* error)
{
    if (!m_package.open(file, error) || !readWorkbook(error) || !readLists(error)) {
        return {};
    }
    for (Sheet& sheet : m_sheets) {
        if (!(sheet.isChart ? addChartSheet(sheet, error) : addSheet(sheet, error))) {
            return {};
        }
    }
    for (const QString& link : qAsConst(m_links)) {
        if (!addLink(link, error)) {
            return {};
        }
    }
    if (m_workSheetCount == 0) {
        tell(error, "no sheet with cells");
        return {};
    }
    if (!addTheme(error)) {
        return {};
    }
    addProperties();
    addWorkbook();
    return m_copy.finish();
}

bool WorkbookRebuild::readWorkbook(QString* error)
{
    const auto root = PartRelations::of(QString(), m_package, error);
    if (!root) {
        return false;
    }
    m_rootRelations = *root;
    const PartRelation* workbook = m_rootRelations.first("officeDocument");
    if (!workbook) {
        return tell(error, "no workbook");
    }
    m_part = workbook->target;
    const auto relations = PartRelations::of(m_part, m_package, error);
    const std::optional<QByteArray> bytes = m_package.read(m_part, error);
    if (!relations || !bytes) {
        return false;
    }
    m_relations = *relations;
    PartReader reader(*bytes);
    bool isDone = reader.enter("workbook");
    while (isDone && reader.nextChild()) {
        isDone = readWorkbookElement(reader, error);
    }
    if (!reader.isWellToTheEnd()) {
        return tell(error, m_part + ": " + reader.error());
    }
    return isDone;
}

bool WorkbookRebuild::readWorkbookElement(PartReader& reader, QString* error)
{
    const bool isSheets = reader.is("sheets");
    if (reader.is("workbookPr")) {
        m_isFrom1904 = reader.flag("date1904");
        reader.skip();
    } else if (isSheets || reader.is("definedNames") || reader.is("externalReferences")) {
        bool isDone = true;
        while (isDone && reader.nextChild()) {
            if (reader.is("definedName")) {
                readName(reader);
                continue;
            }
            if (reader.is("externalReference")) {
                m_links.append(reader.relation());
                if (m_links.size() > PackageLimits::books) {
                    return tell(error, "too many links to workbooks");
                }
            }
            isDone = !reader.is("sheet") || !isSheets || readSheet(reader, error);
            reader.skip();
        }
        return isDone;
    } else {
        reader.skip();
    }
    return true;
}

/// A sheet that is missing would make the next one the first, which is the one that is worked on.
/// Dialogs and macros are no sheets with cells.
bool WorkbookRebuild::readSheet(const PartReader& reader, QString* error)
{
    const PartRelation* relation = m_relations.byId(reader.relation());
    const QString name = reader.attribute("name").toString();
    if (!relation || relation->isExternal || !m_package.contains(relation->target)) {
        return tell(error, "no part of the sheet " + name);
    }
    if (m_sheetByPosition.size() >= PackageLimits::sheets) {
        return tell(error, "too many sheets");
    }
    const bool isChart = relation->kind == QLatin1String("chartsheet");
    m_sheetByPosition.append(-1);
    if (!isChart && relation->kind != QLatin1String("worksheet")) {
        return true;
    }
    const QString state = reader.attribute("state").toString();
    const bool isHidden = state == QLatin1String("hidden") || state == QLatin1String("veryHidden");
    m_sheetByPosition.last() = m_sheets.size();
    m_sheets.append(
        {uniqueName(name), isHidden ? state : QString(), relation->target, isChart, -1});
    return true;
}

void WorkbookRebuild::readName(PartReader& reader)
{
    Name name;
    name.name = reader.attribute("name").toString();
    name.comment = reader.attribute("comment").toString();
    const bool isOfSheet = !reader.attribute("localSheetId").isNull();
    const int sheet = reader.whole("localSheetId", 0, m_sheetByPosition.size() - 1, -1);
    name.formula = reader.text();
    const bool isKnown = sheet >= 0 && m_sheetByPosition[sheet] >= 0;
    if (!name.name.isEmpty() && (!isOfSheet || isKnown)) {
        name.sheet = isOfSheet ? m_sheetByPosition[sheet] : -1;
        m_names.append(name);
    }
}

/// Reads the lists that cells point into.
bool WorkbookRebuild::readLists(QString* error)
{
    QByteArray bytes;
    if (!readPart("styles", bytes, error) || (!bytes.isEmpty() && !m_styles.read(bytes, error))) {
        return false;
    }
    bytes.clear();
    return readPart("sharedStrings", bytes, error) &&
           (bytes.isEmpty() || m_texts.read(bytes, error));
}

/// Reads the workbook's part of a kind, which may be missing.
bool WorkbookRebuild::readPart(const char* kind, QByteArray& bytes, QString* error)
{
    const PartRelation* relation = m_relations.first(kind);
    if (!relation || !m_package.contains(relation->target)) {
        return true;
    }
    const std::optional<QByteArray> read = m_package.read(relation->target, error);
    bytes = read.value_or(QByteArray());
    return read.has_value();
}

bool WorkbookRebuild::addSheet(Sheet& sheet, QString* error)
{
    const auto relations = PartRelations::of(sheet.part, m_package, error);
    const std::optional<QByteArray> bytes = m_package.read(sheet.part, error);
    if (!relations || !bytes) {
        return false;
    }
    CellRebuild cells(m_texts, m_budget, m_styles.formats(), m_isFrom1904);
    SheetRebuild copy(cells, m_styles, *relations);
    QString reason;
    if (!copy.read(*bytes, &reason)) {
        return tell(error, sheet.part + ": " + reason);
    }
    QString drawing;
    if (!copy.drawingPart().isEmpty()) {
        const std::optional<QString> name = m_drawings.add(copy.drawingPart(), error);
        if (!name) {
            return false;
        }
        drawing = name->isEmpty() ? QString() : copy.relations().add("drawing", "../" + *name);
    }
    const QString file = QString("sheet%1.xml").arg(++m_workSheetCount);
    m_copy.add("xl/worksheets/" + file, copy.xml(drawing));
    if (!copy.relations().isEmpty()) {
        m_copy.add("xl/worksheets/_rels/" + file + ".rels", copy.relations().xml());
    }
    listSheet(sheet, m_newRelations.add("worksheet", "worksheets/" + file));
    return true;
}

/// A sheet of a chart is left out without its chart.
bool WorkbookRebuild::addChartSheet(Sheet& sheet, QString* error)
{
    const auto relations = PartRelations::of(sheet.part, m_package, error);
    if (!relations) {
        return false;
    }
    const PartRelation* relation = relations->first("drawing");
    const std::optional<QString> drawing =
        relation ? m_drawings.add(relation->target, error) : QString();
    if (!drawing || drawing->isEmpty()) {
        return drawing.has_value();
    }
    const QString file = QString("sheet%1.xml").arg(++m_chartSheetCount);
    RelationList newRelations;
    const QString id = newRelations.add("drawing", "../" + *drawing);
    m_copy.add("xl/chartsheets/" + file, WorkbookParts::chartSheet(id));
    m_copy.add("xl/chartsheets/_rels/" + file + ".rels", newRelations.xml());
    listSheet(sheet, m_newRelations.add("chartsheet", "chartsheets/" + file));
    return true;
}

void WorkbookRebuild::listSheet(Sheet& sheet, const QString& relation)
{
    sheet.place = m_workSheetCount + m_chartSheetCount - 1;
    m_sheetList.start("sheet");
    m_sheetList.attribute("name", sheet.name);
    m_sheetList.attribute("sheetId", sheet.place + 1);
    if (!sheet.state.isEmpty()) {
        m_sheetList.attribute("state", sheet.state);
    }
    m_sheetList.attribute("r:id", relation);
    m_sheetList.end("sheet");
}

/// Formulas count the other workbooks that they take values from: none may be left out.
bool WorkbookRebuild::addLink(const QString& relation, QString* error)
{
    const PartRelation* link = m_relations.byId(relation);
    RelationList newRelations;
    QByteArray part;
    if (link && !link->isExternal && m_package.contains(link->target)) {
        const auto relations = PartRelations::of(link->target, m_package, error);
        const std::optional<QByteArray> bytes = m_package.read(link->target, error);
        if (!relations || !bytes) {
            return false;
        }
        PartReader reader(*bytes);
        part = WorkbookParts::link(reader, *relations, newRelations);
        if (!reader.isWellToTheEnd()) {
            return tell(error, link->target + ": " + reader.error());
        }
    } else {
        part = WorkbookParts::brokenLink(newRelations);
    }
    const QString file = QString("externalLink%1.xml").arg(++m_linkCount);
    m_copy.add("xl/externalLinks/" + file, part);
    m_copy.add("xl/externalLinks/_rels/" + file + ".rels", newRelations.xml());
    m_linkList.start("externalReference");
    m_linkList.attribute("r:id", m_newRelations.add("externalLink", "externalLinks/" + file));
    m_linkList.end("externalReference");
    return true;
}

bool WorkbookRebuild::addTheme(QString* error)
{
    QByteArray bytes;
    if (!readPart("theme", bytes, error)) {
        return false;
    }
    if (bytes.isEmpty()) {
        return true;
    }
    const std::optional<QByteArray> theme = WorkbookParts::theme(bytes, error);
    if (theme) {
        m_copy.add("xl/theme/theme1.xml", *theme);
        m_newRelations.add("theme", "theme/theme1.xml");
    }
    return theme.has_value();
}

/// Title, author and the like. They are no reason to refuse a workbook.
void WorkbookRebuild::addProperties()
{
    RelationList rootRelations;
    rootRelations.add("officeDocument", "xl/workbook.xml");
    for (const char* kind : {"core-properties", "extended-properties"}) {
        const PartRelation* relation = m_rootRelations.first(kind);
        const std::optional<QByteArray> bytes =
            relation ? m_package.read(relation->target, nullptr) : std::nullopt;
        const std::optional<QByteArray> copy =
            bytes ? WorkbookParts::properties(*bytes, kind) : std::nullopt;
        if (copy) {
            const QString part = QString("docProps/%1.xml").arg(kind);
            m_copy.add(part, *copy);
            rootRelations.add(kind, part);
        }
    }
    m_copy.add("_rels/.rels", rootRelations.xml());
    m_copy.add("[Content_Types].xml", WorkbookParts::contentTypes());
}

void WorkbookRebuild::addWorkbook()
{
    XmlOutput out;
    out.start("workbook");
    out.attribute("xmlns", "http://schemas.openxmlformats.org/spreadsheetml/2006/main");
    out.attribute("xmlns:r", "http://schemas.openxmlformats.org/officeDocument/2006/relationships");
    out.start("workbookPr");
    if (m_isFrom1904) {
        out.attribute("date1904", "1");
    }
    out.end("workbookPr");
    out.start("sheets");
    out.raw(m_sheetList.bytes());
    out.end("sheets");
    out.start("externalReferences");
    out.raw(m_linkList.bytes());
    out.end("externalReferences");
    writeNames(out);
    out.end("workbook");
    m_copy.add("xl/workbook.xml", out.bytes());
    m_copy.add("xl/styles.xml", m_styles.xml());
    m_newRelations.add("styles", "styles.xml");
    m_copy.add("xl/sharedStrings.xml", m_texts.xml());
    m_newRelations.add("sharedStrings", "sharedStrings.xml");
    m_copy.add("xl/_rels/workbook.xml.rels", m_newRelations.xml());
}

void WorkbookRebuild::writeNames(XmlOutput& out) const
{
    out.start("definedNames");
    for (const Name& name : m_names) {
        if (name.sheet >= 0 && m_sheets[name.sheet].place < 0) {
            continue;
        }
        out.start("definedName");
        out.attribute("name", name.name);
        if (!name.comment.isEmpty()) {
            out.attribute("comment", name.comment);
        }
        if (name.sheet >= 0) {
            out.attribute("localSheetId", m_sheets[name.sheet].place);
        }
        out.text(name.formula);
        out.end("definedName");
    }
    out.end("definedNames");
}

/// Two sheets of one name would be found as one.
QString WorkbookRebuild::uniqueName(const QString& wanted) const
{
    const auto isTaken = [this](const QString& name) {
        return std::any_of(m_sheets.cbegin(), m_sheets.cend(), [&name](const Sheet& sheet) {
            return sheet.name.compare(name, Qt::CaseInsensitive) == 0;
        });
    };
    const QString base = wanted.isEmpty() ? QStringLiteral("Sheet") : wanted;
    QString name = base;
    for (int i = m_sheets.size() + 1; isTaken(name); ++i) {
        name = QString("%1 (%2)").arg(base).arg(i);
    }
    return name;
}
