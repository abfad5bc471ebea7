#include "exchange/package/PartRule.h"

#include <cmath>
#include <optional>

#include "exchange/CellName.h"
#include "exchange/package/XmlOutput.h"

namespace {

constexpr int colourDigits = 8;

std::optional<double> numberOf(const QStringRef& text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional<double>(number) : std::nullopt;
}

bool isWithin(double number, const AttributeRule& rule)
{
    return number >= rule.least && number <= rule.most;
}

bool isColour(const QStringRef& text)
{
    bool isNumber = false;
    text.toUInt(&isNumber, 16);
    return isNumber && (text.size() == 6 || text.size() == colourDigits);
}

/// The value as it is written down; nothing if it is not what the rule asks for.
std::optional<QString> valueBy(const AttributeRule& rule, const QStringRef& text)
{
    switch (rule.kind) {
    case ValueKind::Text:
    case ValueKind::Style:
        return text.toString();
    case ValueKind::OnFlag:
        return flagOf(text) ? std::optional<QString>("1") : std::nullopt;
    case ValueKind::OffFlag:
        return flagOf(text, true) ? std::nullopt : std::optional<QString>("0");
    case ValueKind::Switch:
        return {};
    case ValueKind::Hexadecimal:
        // A colour of six digits is opaque.
        return isColour(text)
                   ? std::optional<QString>(text.toString().rightJustified(colourDigits, 'F'))
                   : std::nullopt;
    case ValueKind::Areas: {
        const QString areas = areasFromNames(text);
        return areas.isEmpty() ? std::nullopt : std::optional<QString>(areas);
    }
    case ValueKind::Whole:
    case ValueKind::Rounded:
    case ValueKind::Number:
        break;
    }
    const std::optional<double> number = numberOf(text);
    if (!number || (rule.kind != ValueKind::Number && !isWithin(*number, rule)) ||
        (rule.kind == ValueKind::Whole && *number != std::floor(*number)))
    {
        return {};
    }
    return rule.kind == ValueKind::Number ? text.trimmed().toString()
                                          : QString::number(qRound64(*number));
}

/// False if an attribute says that the element shall not be there.
bool isWanted(const PartReader& reader, const ElementRule& rule)
{
    for (const AttributeRule& attribute : rule.attributes) {
        const QStringRef text = reader.attribute(attribute.name);
        if (attribute.isRequired && (text.isNull() || !valueBy(attribute, text))) {
            return false;
        }
        if ((attribute.kind == ValueKind::Switch && !flagOf(text, true)) ||
            (attribute.kind == ValueKind::Style && text == QLatin1String("none")))
        {
            return false;
        }
    }
    return true;
}

const ElementRule* ruleFor(const PartReader& reader, const QVector<ElementRule>& rules)
{
    for (const ElementRule& rule : rules) {
        if (reader.is(rule.name)) {
            return &rule;
        }
    }
    return nullptr;
}

} // namespace

void copyAttributes(const PartReader& reader, const ElementRule& rule, XmlOutput& out)
{
    for (const AttributeRule& attribute : rule.attributes) {
        const QStringRef text = reader.attribute(attribute.name);
        const std::optional<QString> value =
            text.isNull() ? std::nullopt : valueBy(attribute, text);
        if (value) {
            out.attribute(attribute.name, *value);
        }
    }
}

bool copyElement(PartReader& reader, const ElementRule& rule, XmlOutput& out)
{
    if (!isWanted(reader, rule)) {
        reader.skip();
        return false;
    }
    const int mark = out.mark();
    out.start(rule.written);
    copyAttributes(reader, rule, out);
    if (rule.hasText) {
        out.text(reader.text());
    } else if (copyChildren(reader, rule.children, out) == 0 && rule.needsChild) {
        out.truncate(mark);
        return false;
    }
    out.end(rule.written);
    return true;
}

int copyChildren(PartReader& reader, const QVector<ElementRule>& rules, XmlOutput& out)
{
    int copied = 0;
    while (reader.nextChild()) {
        const ElementRule* rule = ruleFor(reader, rules);
        if (!rule) {
            reader.skip();
        } else if (copyElement(reader, *rule, out)) {
            ++copied;
        }
    }
    return copied;
}
