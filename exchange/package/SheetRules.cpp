#include "exchange/package/SheetRules.h"

#include <QSet>
#include <QStringList>

namespace {

const ElementRule viewsRule{"sheetViews",
                            "sheetViews",
                            {},
                            {{"sheetView",
                              "sheetView",
                              {{"windowProtection", ValueKind::OnFlag},
                               {"showFormulas", ValueKind::OnFlag},
                               {"rightToLeft", ValueKind::OnFlag},
                               {"tabSelected", ValueKind::OnFlag},
                               {"showGridLines", ValueKind::OffFlag},
                               {"showRowColHeaders", ValueKind::OffFlag},
                               {"showZeros", ValueKind::OffFlag},
                               {"showRuler", ValueKind::OffFlag},
                               {"showOutlineSymbols", ValueKind::OffFlag},
                               {"showWhiteSpace", ValueKind::OffFlag}}}}};

const ElementRule sizesRule{"sheetFormatPr",
                            "sheetFormatPr",
                            {{"baseColWidth", ValueKind::Whole, 0, 255},
                             {"defaultColWidth", ValueKind::Number},
                             {"defaultRowHeight", ValueKind::Number},
                             {"customHeight", ValueKind::OnFlag},
                             {"zeroHeight", ValueKind::OnFlag},
                             {"outlineLevelCol", ValueKind::Whole, 0, 7},
                             {"outlineLevelRow", ValueKind::Whole, 0, 7}}};

const ElementRule mergedRule{"mergeCells",
                             "mergeCells",
                             {},
                             {{"mergeCell", "mergeCell", {{"ref", ValueKind::Areas, 0, 0, true}}}}};

const ElementRule validationsRule{
    "dataValidations",
    "dataValidations",
    {},
    {{"dataValidation",
      "dataValidation",
      {{"sqref", ValueKind::Areas, 0, 0, true},
       {"type"},
       {"errorStyle"},
       {"operator"},
       {"allowBlank", ValueKind::OnFlag},
       {"showInputMessage", ValueKind::OnFlag},
       {"showErrorMessage", ValueKind::OnFlag},
       {"errorTitle"},
       {"error"},
       {"promptTitle"},
       {"prompt"}},
      {{"formula1", "formula1", {}, {}, true}, {"formula2", "formula2", {}, {}, true}}}}};

const ElementRule marginsRule{"pageMargins",
                              "pageMargins",
                              {{"left", ValueKind::Number},
                               {"right", ValueKind::Number},
                               {"top", ValueKind::Number},
                               {"bottom", ValueKind::Number},
                               {"header", ValueKind::Number},
                               {"footer", ValueKind::Number}}};

const ElementRule headerRule{
    "headerFooter",
    "headerFooter",
    {},
    {{"oddHeader", "oddHeader", {}, {}, true}, {"oddFooter", "oddFooter", {}, {}, true}}};

const ElementRule endRule{"cfvo", "cfvo", {{"type"}, {"val"}, {"gte", ValueKind::OffFlag}}};

const ElementRule shadeRule{"color",
                            "color",
                            {{"rgb", ValueKind::Hexadecimal},
                             {"indexed", ValueKind::Whole, 0, 255},
                             {"theme", ValueKind::Whole, 0, 255},
                             {"tint", ValueKind::Number}}};

const ElementRule linkRule{"hyperlink", "hyperlink", {{"location"}, {"display"}, {"tooltip"}}};

const ElementRule pageRule{"pageSetup",
                           "pageSetup",
                           {{"paperSize", ValueKind::Whole},
                            {"scale", ValueKind::Whole, 1, 1000},
                            {"firstPageNumber", ValueKind::Whole},
                            {"orientation"},
                            {"useFirstPageNumber"},
                            {"horizontalDpi", ValueKind::Whole},
                            {"verticalDpi", ValueKind::Whole},
                            {"copies", ValueKind::Whole}}};

} // namespace

const ElementRule* SheetRules::ofSheet(const QString& name)
{
    for (const ElementRule* rule :
         {&viewsRule, &sizesRule, &mergedRule, &validationsRule, &marginsRule, &headerRule})
    {
        if (name == QLatin1String(rule->name)) {
            return rule;
        }
    }
    return nullptr;
}

ElementRule SheetRules::column(int formats)
{
    return {"col",
            "col",
            {{"width", ValueKind::Number},
             {"customWidth", ValueKind::OnFlag},
             {"style", ValueKind::Whole, 0, formats - 1},
             {"hidden", ValueKind::OnFlag},
             {"collapsed", ValueKind::OnFlag},
             {"outlineLevel", ValueKind::Whole, 1, 7}}};
}

ElementRule SheetRules::condition(int differences)
{
    return {"cfRule",
            "cfRule",
            {{"type"},
             {"dxfId", ValueKind::Whole, 0, differences - 1},
             {"priority", ValueKind::Whole},
             {"stopIfTrue", ValueKind::OnFlag},
             {"aboveAverage", ValueKind::OffFlag},
             {"percent", ValueKind::OnFlag},
             {"bottom", ValueKind::OnFlag},
             {"operator"},
             {"text"},
             {"timePeriod"},
             {"rank", ValueKind::Whole},
             {"stdDev", ValueKind::Whole},
             {"equalAverage", ValueKind::OnFlag}},
            {{"formula", "formula", {}, {}, true}}};
}

bool SheetRules::isKnownCondition(const QString& type)
{
    static const QStringList types = {
        "cellIs",         "expression",        "top10",          "aboveAverage",
        "containsText",   "notContainsText",   "beginsWith",     "endsWith",
        "containsBlanks", "notContainsBlanks", "containsErrors", "notContainsErrors",
        "timePeriod",     "duplicateValues",   "uniqueValues",   "dataBar",
        "colorScale"};
    return types.contains(type);
}

const ElementRule& SheetRules::scaleEnd()
{
    return endRule;
}

const ElementRule& SheetRules::scaleColour()
{
    return shadeRule;
}

const ElementRule& SheetRules::link()
{
    return linkRule;
}

const ElementRule& SheetRules::page()
{
    return pageRule;
}
