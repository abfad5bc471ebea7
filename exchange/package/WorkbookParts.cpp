#include "exchange/package/WorkbookParts.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include "exchange/package/MarkupScan.h"
#include "exchange/package/PartReader.h"
#include "exchange/package/PartRelations.h"
#include "exchange/package/PartRule.h"
#include "exchange/package/XmlOutput.h"

namespace {

const char* const sheetNamespace = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
const char* const relationsNamespace =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
const char* const themeNamespace = "http://schemas.openxmlformats.org/drawingml/2006/main";
const char* const themeStrictNamespace = "http://purl.oclc.org/ooxml/drawingml/main";

/// What of another workbook is kept for formulas.
const QVector<ElementRule>& linkRules()
{
    static const ElementRule value{"v", "v", {}, {}, true};
    static const ElementRule cell{"cell", "cell", {{"r"}, {"t"}}, {value}};
    static const ElementRule row{"row", "row", {{"r", ValueKind::Whole, 1}}, {cell}};
    static const QVector<ElementRule> rules = {
        {"sheetNames", "sheetNames", {}, {{"sheetName", "sheetName", {{"val"}}}}},
        {"definedNames",
         "definedNames",
         {},
         {{"definedName", "definedName", {{"name"}, {"refersTo"}, {"sheetId", ValueKind::Whole}}}}},
        {"sheetDataSet",
         "sheetDataSet",
         {},
         {{"sheetData",
           "sheetData",
           {{"sheetId", ValueKind::Whole}, {"refreshError", ValueKind::OnFlag}},
           {row}}}}};
    return rules;
}

const QVector<ElementRule>& propertyRules(bool isCore)
{
    const auto rule = [](const char* name, const char* written) {
        return ElementRule{name, written, {}, {}, true};
    };
    static const QVector<ElementRule> core = {
        rule("title", "dc:title"),       rule("subject", "dc:subject"),
        rule("creator", "dc:creator"),   rule("description", "dc:description"),
        rule("keywords", "cp:keywords"), rule("created", "dcterms:created"),
        rule("category", "cp:category"), rule("contentStatus", "cp:contentStatus")};
    static const QVector<ElementRule> extended = {rule("Manager", "Manager"),
                                                  rule("Company", "Company")};
    return isCore ? core : extended;
}

/// Begins a link to a workbook at an address.
void startLink(const QString& address, RelationList& newRelations, XmlOutput& out)
{
    out.start("externalLink");
    out.attribute("xmlns", sheetNamespace);
    out.attribute("xmlns:r", relationsNamespace);
    out.start("externalBook");
    out.attribute("r:id", newRelations.add("externalLinkPath", address, true));
}

} // namespace

QByteArray WorkbookParts::contentTypes()
{
    XmlOutput out;
    out.start("Types");
    out.attribute("xmlns", "http://schemas.openxmlformats.org/package/2006/content-types");
    const auto add = [&out](const char* extension, const char* type) {
        out.start("Default");
        out.attribute("Extension", extension);
        out.attribute("ContentType", type);
        out.end("Default");
    };
    add("rels", "application/vnd.openxmlformats-package.relationships+xml");
    add("xml", "application/xml");
    add("png", "image/png");
    add("jpeg", "image/jpeg");
    add("gif", "image/gif");
    add("bmp", "image/bmp");
    add("tiff", "image/tiff");
    add("emf", "image/x-emf");
    add("wmf", "image/x-wmf");
    out.end("Types");
    return out.bytes();
}

QByteArray WorkbookParts::chartSheet(const QString& drawing)
{
    XmlOutput out;
    out.start("chartsheet");
    out.attribute("xmlns", sheetNamespace);
    out.attribute("xmlns:r", relationsNamespace);
    out.start("drawing");
    out.attribute("r:id", drawing);
    out.end("drawing");
    out.end("chartsheet");
    return out.bytes();
}

QByteArray WorkbookParts::link(PartReader& reader, const PartRelations& relations,
                               RelationList& newRelations)
{
    if (!reader.enter("externalLink") || !reader.nextChild() || !reader.is("externalBook")) {
        return brokenLink(newRelations);
    }
    const PartRelation* address = relations.byId(reader.relation());
    XmlOutput out;
    startLink(address ? address->target : QStringLiteral("missing.xlsx"), newRelations, out);
    copyChildren(reader, linkRules(), out);
    out.end("externalBook");
    out.end("externalLink");
    return out.bytes();
}

QByteArray WorkbookParts::brokenLink(RelationList& newRelations)
{
    XmlOutput out;
    startLink("missing.xlsx", newRelations, out);
    out.end("externalBook");
    out.end("externalLink");
    return out.bytes();
}

std::optional<QByteArray> WorkbookParts::theme(const QByteArray& part, QString* error)
{
    QByteArray text = utf8Markup(part);
    if (!isBoundedMarkup(text, error)) {
        return {};
    }
    text.replace(themeStrictNamespace, themeNamespace);
    QByteArray copy;
    QXmlStreamReader reader(QString::fromUtf8(text));
    QXmlStreamWriter writer(&copy);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::Invalid) {
            writer.writeCurrentToken(reader);
        }
    }
    if (!reader.hasError()) {
        return copy;
    }
    if (error) {
        *error = "theme: " + reader.errorString();
    }
    return {};
}

std::optional<QByteArray> WorkbookParts::properties(const QByteArray& part, const QString& kind)
{
    const bool isCore = kind == QLatin1String("core-properties");
    const char* const root = isCore ? "cp:coreProperties" : "Properties";
    PartReader reader(part);
    XmlOutput out;
    out.start(root);
    if (isCore) {
        out.attribute("xmlns:cp",
                      "http://schemas.openxmlformats.org/package/2006/metadata/core-properties");
        out.attribute("xmlns:dc", "http://purl.org/dc/elements/1.1/");
        out.attribute("xmlns:dcterms", "http://purl.org/dc/terms/");
    }
    if (reader.enter(isCore ? "coreProperties" : "Properties", Vocabulary::Properties)) {
        copyChildren(reader, propertyRules(isCore), out);
    }
    out.end(root);
    return reader.isWellToTheEnd() ? std::optional<QByteArray>(out.bytes()) : std::nullopt;
}
