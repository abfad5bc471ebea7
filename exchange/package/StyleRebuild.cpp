#include "exchange/package/StyleRebuild.h"

#include "exchange/package/PackageLimits.h"
#include "exchange/package/PartReader.h"
#include "exchange/package/PartRule.h"

namespace {

constexpr int numberMost = 65535;      // identifier of a number format
constexpr int builtInNumberMost = 163; // above it a workbook's own ones begin
constexpr int fontSizeMost = 409;      // points

ElementRule colourRule(const char* name)
{
    return {name,
            name,
            {{"rgb", ValueKind::Hexadecimal},
             {"indexed", ValueKind::Whole, 0, 255},
             {"theme", ValueKind::Whole, 0, 255},
             {"tint", ValueKind::Number}}};
}

ElementRule valueRule(const char* name, AttributeRule value)
{
    return {name, name, {value}};
}

/// What stands in a font; its name has another element in runs of a text.
QVector<ElementRule> fontRules(const char* name)
{
    QVector<ElementRule> rules = {
        valueRule(name, {"val"}),
        valueRule("charset", {"val", ValueKind::Whole, 0, 255}),
        valueRule("family", {"val", ValueKind::Whole, 0, 255}),
        valueRule("sz", {"val", ValueKind::Rounded, 1, fontSizeMost, true}),
        valueRule("u", {"val", ValueKind::Style}),
        valueRule("vertAlign", {"val"}),
        valueRule("scheme", {"val"}),
        colourRule("color")};
    for (const char* property : {"b", "i", "strike", "outline", "shadow"}) {
        rules.append(valueRule(property, {"val", ValueKind::Switch}));
    }
    return rules;
}

const ElementRule& fontRule()
{
    static const ElementRule rule{"font", "font", {}, fontRules("name")};
    return rule;
}

const ElementRule& fillRule()
{
    static const ElementRule rule{"fill",
                                  "fill",
                                  {},
                                  {{"patternFill",
                                    "patternFill",
                                    {{"patternType"}},
                                    {colourRule("fgColor"), colourRule("bgColor")}}}};
    return rule;
}

const ElementRule& borderRule()
{
    const auto side = [](const char* name, const char* written) {
        return ElementRule{name, written, {{"style"}}, {colourRule("color")}};
    };
    static const ElementRule rule{
        "border",
        "border",
        {{"diagonalUp", ValueKind::OnFlag}, {"diagonalDown", ValueKind::OnFlag}},
        {side("left", "left"), side("start", "left"), side("right", "right"), side("end", "right"),
         side("top", "top"), side("bottom", "bottom"), side("diagonal", "diagonal")}};
    return rule;
}

const ElementRule& numberRule()
{
    static const ElementRule rule{"numFmt",
                                  "numFmt",
                                  {{"numFmtId", ValueKind::Whole, 0, numberMost, true},
                                   {"formatCode", ValueKind::Text, 0, 0, true}}};
    return rule;
}

const ElementRule& differenceRule()
{
    static const ElementRule rule{
        "dxf", "dxf", {}, {fontRule(), numberRule(), fillRule(), borderRule()}};
    return rule;
}

const ElementRule& alignmentRule()
{
    static const ElementRule rule{"alignment",
                                  "alignment",
                                  {{"horizontal"},
                                   {"vertical"},
                                   {"indent", ValueKind::Rounded, 0, 255},
                                   {"textRotation", ValueKind::Whole, 0, 255},
                                   {"wrapText", ValueKind::OnFlag},
                                   {"shrinkToFit", ValueKind::OnFlag}}};
    return rule;
}

const ElementRule& coloursRule()
{
    static const ElementRule rule{"indexedColors",
                                  "indexedColors",
                                  {},
                                  {{"rgbColor", "rgbColor", {{"rgb", ValueKind::Hexadecimal}}}}};
    return rule;
}

/// Writes a list of elements, if there are any.
void writeList(const char* name, XmlOutput& elements, XmlOutput& out)
{
    if (elements.bytes().isEmpty()) {
        return;
    }
    out.start(name);
    out.raw(elements.bytes());
    out.end(name);
}

} // namespace

const QVector<ElementRule>& runFontRules()
{
    static const QVector<ElementRule> rules = fontRules("rFont");
    return rules;
}

bool StyleRebuild::read(const QByteArray& part, QString* error)
{
    PartReader reader(part);
    if (reader.enter("styleSheet")) {
        while (reader.nextChild()) {
            readList(reader);
        }
    }
    if (!reader.isWellToTheEnd()) {
        if (error) {
            *error = reader.error();
        }
        return false;
    }
    for (const int count : {m_formats.size(), m_fontCount, m_fillCount, m_borderCount,
                            m_differenceCount, m_ownNumbers.size()})
    {
        if (count <= PackageLimits::formats) {
            continue;
        }
        if (error) {
            *error = "too many formats";
        }
        return false;
    }
    return true;
}

QByteArray StyleRebuild::xml()
{
    XmlOutput out;
    out.start("styleSheet");
    out.attribute("xmlns", "http://schemas.openxmlformats.org/spreadsheetml/2006/main");
    writeList("numFmts", m_numbers, out);
    writeList("fonts", m_fonts, out);
    writeList("fills", m_fills, out);
    writeList("borders", m_borders, out);
    out.start("cellXfs");
    for (const Format& format : qAsConst(m_formats)) {
        writeFormat(format, out);
    }
    out.end("cellXfs");
    writeList("dxfs", m_differences, out);
    writeList("colors", m_colours, out);
    out.end("styleSheet");
    return out.bytes();
}

/// Reads one of the part's lists. No element of a list may be left out: numbers point to them.
void StyleRebuild::readList(PartReader& reader)
{
    if (reader.is("numFmts")) {
        readNumbers(reader);
    } else if (reader.is("fonts")) {
        m_fontCount += copyChildren(reader, {fontRule()}, m_fonts);
    } else if (reader.is("fills")) {
        m_fillCount += copyChildren(reader, {fillRule()}, m_fills);
    } else if (reader.is("borders")) {
        m_borderCount += copyChildren(reader, {borderRule()}, m_borders);
    } else if (reader.is("cellXfs")) {
        readFormats(reader);
    } else if (reader.is("dxfs")) {
        m_differenceCount += copyChildren(reader, {differenceRule()}, m_differences);
    } else if (reader.is("colors")) {
        copyChildren(reader, {coloursRule()}, m_colours);
    } else {
        reader.skip();
    }
}

void StyleRebuild::readNumbers(PartReader& reader)
{
    while (reader.nextChild()) {
        const int id = reader.whole("numFmtId", 0, numberMost, 0);
        if (!reader.is("numFmt")) {
            reader.skip();
        } else if (copyElement(reader, numberRule(), m_numbers)) {
            m_ownNumbers.insert(id);
        }
    }
}

void StyleRebuild::readFormats(PartReader& reader)
{
    while (reader.nextChild()) {
        if (reader.is("xf")) {
            m_formats.append(readFormat(reader));
        } else {
            reader.skip();
        }
    }
}

/// The library passes over parts of a format that are not said to apply. Office programs show them
/// all the same, and not every writer says so.
StyleRebuild::Format StyleRebuild::readFormat(PartReader& reader) const
{
    Format format;
    format.number = reader.whole("numFmtId", 0, numberMost, 0);
    format.font = reader.whole("fontId", 0, INT_MAX, 0);
    format.fill = reader.whole("fillId", 0, INT_MAX, 0);
    format.border = reader.whole("borderId", 0, INT_MAX, 0);
    format.hasNumber = format.number != 0 || reader.flag("applyNumberFormat");
    format.hasFont = format.font != 0 || reader.flag("applyFont");
    format.hasBorder = format.border != 0 || reader.flag("applyBorder");
    while (reader.nextChild()) {
        XmlOutput alignment;
        if (!reader.is("alignment")) {
            reader.skip();
        } else if (copyElement(reader, alignmentRule(), alignment)) {
            format.alignment = alignment.bytes();
        }
    }
    return format;
}

void StyleRebuild::writeFormat(const Format& format, XmlOutput& out) const
{
    const bool isNumberKnown =
        format.number <= builtInNumberMost || m_ownNumbers.contains(format.number);
    out.start("xf");
    out.attribute("numFmtId", isNumberKnown ? format.number : 0);
    out.attribute("fontId", within(format.font, m_fontCount));
    out.attribute("fillId", within(format.fill, m_fillCount));
    out.attribute("borderId", within(format.border, m_borderCount));
    if (format.hasNumber) {
        out.attribute("applyNumberFormat", "1");
    }
    if (format.hasFont) {
        out.attribute("applyFont", "1");
    }
    if (format.hasBorder) {
        out.attribute("applyBorder", "1");
    }
    if (!format.alignment.isEmpty()) {
        out.attribute("applyAlignment", "1");
        out.raw(format.alignment);
    }
    out.end("xf");
}
