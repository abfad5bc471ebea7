#include "exchange/package/DrawingRules.h"

#include "exchange/package/XmlOutput.h"

namespace {

const char* const pictureNamespace = "http://schemas.openxmlformats.org/drawingml/2006/main";
const char* const relationsNamespace =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships";

/// An element whose text is taken as it is; the library reads a number from it.
ElementRule textRule(const char* name, const char* written)
{
    return {name, written, {}, {}, true};
}

ElementRule cornerRule(const char* name, const char* written)
{
    return {name,
            written,
            {},
            {textRule("col", "xdr:col"), textRule("colOff", "xdr:colOff"),
             textRule("row", "xdr:row"), textRule("rowOff", "xdr:rowOff")},
            false,
            true};
}

ElementRule pairRule(const char* name, const char* written, const char* first, const char* second)
{
    return {name,
            written,
            {{first, ValueKind::Whole, INT_MIN, INT_MAX, true},
             {second, ValueKind::Whole, INT_MIN, INT_MAX, true}}};
}

ElementRule valueRule(const char* name, const char* written, ValueKind kind = ValueKind::Text)
{
    return {name, written, {{"val", kind, 0, INT_MAX, true}}};
}

ElementRule referenceRule(const char* name, const char* written)
{
    return {name,
            written,
            {{"idx", ValueKind::Text, 0, 0, true}},
            {valueRule("schemeClr", "a:schemeClr")},
            false,
            true};
}

ElementRule lineRule()
{
    const QVector<AttributeRule> end = {{"type"}, {"w"}, {"len"}};
    return {"cxnSp",
            "xdr:cxnSp",
            {},
            {{"nvCxnSpPr",
              "xdr:nvCxnSpPr",
              {},
              {{"cNvPr", "xdr:cNvPr", {{"id", ValueKind::Whole}, {"name"}}}}},
             {"spPr",
              "xdr:spPr",
              {{"bwMode"}},
              {{"xfrm",
                "a:xfrm",
                {{"flipV", ValueKind::OnFlag}},
                {pairRule("off", "a:off", "x", "y"), pairRule("ext", "a:ext", "cx", "cy")}},
               {"prstGeom", "a:prstGeom", {{"prst", ValueKind::Text, 0, 0, true}}},
               {"ln",
                "a:ln",
                {{"w", ValueKind::Whole}, {"cap"}, {"cmpd"}, {"algn"}},
                {{"headEnd", "a:headEnd", end}, {"tailEnd", "a:tailEnd", end}}}}},
             {"style",
              "xdr:style",
              {},
              {referenceRule("lnRef", "a:lnRef"), referenceRule("fillRef", "a:fillRef"),
               referenceRule("effectRef", "a:effectRef"), referenceRule("fontRef", "a:fontRef")}}}};
}

/// A text with its first run of each line, as the library takes it.
ElementRule titleRule()
{
    return {"title",
            "c:title",
            {},
            {{"tx",
              "c:tx",
              {},
              {{"rich",
                "c:rich",
                {},
                {{"p", "a:p", {}, {{"r", "a:r", {}, {textRule("t", "a:t")}, false, true}}}}}}}}};
}

/// Where a series has its numbers or texts.
ElementRule sourceRule(const char* name, const char* written)
{
    return {name,
            written,
            {},
            {{"numRef", "c:numRef", {}, {textRule("f", "c:f")}},
             {"strRef", "c:strRef", {}, {textRule("f", "c:f")}}}};
}

ElementRule plotRule(const char* name, const char* written)
{
    return {name,
            written,
            {},
            {{"ser",
              "c:ser",
              {},
              {sourceRule("tx", "c:tx"), sourceRule("cat", "c:cat"), sourceRule("val", "c:val"),
               sourceRule("xVal", "c:xVal"), sourceRule("yVal", "c:yVal")}}}};
}

ElementRule axisRule(const char* name, const char* written)
{
    return {name,
            written,
            {},
            {valueRule("axId", "c:axId", ValueKind::Whole),
             valueRule("axPos", "c:axPos"),
             {"majorGridlines", "c:majorGridlines"},
             {"minorGridlines", "c:minorGridlines"},
             titleRule(),
             valueRule("crossAx", "c:crossAx", ValueKind::Whole)}};
}

ElementRule layoutRule()
{
    QVector<ElementRule> children = {valueRule("xMode", "c:xMode"),
                                     valueRule("yMode", "c:yMode"),
                                     valueRule("wMode", "c:wMode"),
                                     valueRule("hMode", "c:hMode"),
                                     valueRule("x", "c:x", ValueKind::Number),
                                     valueRule("y", "c:y", ValueKind::Number),
                                     valueRule("w", "c:w", ValueKind::Number),
                                     valueRule("h", "c:h", ValueKind::Number)};
    return {"layout", "c:layout", {}, {{"manualLayout", "c:manualLayout", {}, children}}};
}

/// Kinds of charts that the library both reads and writes whole.
QVector<ElementRule> plotRules()
{
    return {plotRule("areaChart", "c:areaChart"),       plotRule("area3DChart", "c:area3DChart"),
            plotRule("lineChart", "c:lineChart"),       plotRule("line3DChart", "c:line3DChart"),
            plotRule("scatterChart", "c:scatterChart"), plotRule("pieChart", "c:pieChart"),
            plotRule("pie3DChart", "c:pie3DChart"),     plotRule("barChart", "c:barChart"),
            plotRule("bar3DChart", "c:bar3DChart")};
}

/// True if each axis has what the library writes of every axis.
bool hasWholeAxes(const QByteArray& chart)
{
    int axes = 0;
    for (const char* axis : {"<c:catAx", "<c:dateAx", "<c:serAx", "<c:valAx"}) {
        axes += chart.count(axis);
    }
    int placed = 0;
    for (const char* side : {"l", "r", "t", "b"}) {
        placed += chart.count(QByteArray("<c:axPos val=\"") + side + '"');
    }
    return placed == axes && chart.count("<c:axId") == axes && chart.count("<c:crossAx") == axes;
}

ElementRule chartRule()
{
    QVector<ElementRule> plotArea = plotRules();
    plotArea.prepend(layoutRule());
    plotArea += {axisRule("catAx", "c:catAx"), axisRule("dateAx", "c:dateAx"),
                 axisRule("serAx", "c:serAx"), axisRule("valAx", "c:valAx")};
    return {"chart",
            "c:chart",
            {},
            {titleRule(),
             {"plotArea", "c:plotArea", {}, plotArea},
             {"legend",
              "c:legend",
              {},
              {valueRule("legendPos", "c:legendPos"), valueRule("overlay", "c:overlay")}}}};
}

} // namespace

const ElementRule* DrawingRules::anchor(const QString& name)
{
    static const QVector<ElementRule> rules = {
        {"twoCellAnchor",
         "xdr:twoCellAnchor",
         {{"editAs"}},
         {cornerRule("from", "xdr:from"), cornerRule("to", "xdr:to")}},
        {"oneCellAnchor",
         "xdr:oneCellAnchor",
         {},
         {cornerRule("from", "xdr:from"), pairRule("ext", "xdr:ext", "cx", "cy")}},
        {"absoluteAnchor",
         "xdr:absoluteAnchor",
         {},
         {pairRule("pos", "xdr:pos", "x", "y"), pairRule("ext", "xdr:ext", "cx", "cy")}}};
    for (const ElementRule& rule : rules) {
        if (name == QLatin1String(rule.name)) {
            return &rule;
        }
    }
    return nullptr;
}

void DrawingRules::writeNamespaces(XmlOutput& out)
{
    out.attribute("xmlns:xdr",
                  "http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing");
    out.attribute("xmlns:a", pictureNamespace);
    out.attribute("xmlns:c", "http://schemas.openxmlformats.org/drawingml/2006/chart");
    out.attribute("xmlns:r", relationsNamespace);
}

void DrawingRules::writePicture(const QString& relation, XmlOutput& out)
{
    out.start("xdr:pic");
    out.start("xdr:blipFill");
    out.start("a:blip");
    out.attribute("r:embed", relation);
    out.end("a:blip");
    out.end("xdr:blipFill");
    out.end("xdr:pic");
}

void DrawingRules::writeChartFrame(const QString& relation, XmlOutput& out)
{
    out.start("xdr:graphicFrame");
    out.start("c:chart");
    out.attribute("r:id", relation);
    out.end("c:chart");
    out.end("xdr:graphicFrame");
}

void DrawingRules::copyLine(PartReader& reader, XmlOutput& out)
{
    static const ElementRule rule = lineRule();
    const int mark = out.mark();
    copyElement(reader, rule, out);
    for (const char* needed :
         {"<xdr:cNvPr", "<a:prstGeom", "<a:lnRef", "<a:fillRef", "<a:effectRef", "<a:fontRef"})
    {
        if (!out.bytes().contains(needed)) {
            out.truncate(mark);
            return;
        }
    }
}

bool DrawingRules::copyChart(PartReader& reader, XmlOutput& out)
{
    static const ElementRule rule = chartRule();
    static const QVector<ElementRule> plots = plotRules();
    out.start("c:chartSpace");
    writeNamespaces(out);
    const bool isChart = reader.enter("chartSpace", Vocabulary::Chart);
    if (isChart) {
        copyChildren(reader, {rule}, out);
    }
    out.end("c:chartSpace");
    int kinds = 0;
    for (const ElementRule& plot : plots) {
        kinds += out.bytes().contains('<' + QByteArray(plot.written)) ? 1 : 0;
    }
    return kinds == 1 && out.bytes().contains("<c:ser") && hasWholeAxes(out.bytes());
}
