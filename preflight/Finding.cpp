#include "preflight/Finding.h"

#include <QJsonArray>

#include <cmath>

namespace {

struct KindName
{
    Finding::Kind kind;
    const char* name;
};

constexpr KindName kindNames[] = {
    {Finding::Kind::TextTooHigh, "text-too-high"},
    {Finding::Kind::TextTooWide, "text-too-wide"},
    {Finding::Kind::TableRowsCut, "table-rows-cut"},
    {Finding::Kind::TableRowsLeftOut, "table-rows-left-out"},
    {Finding::Kind::TableCellCut, "table-cell-cut"},
    {Finding::Kind::TableColumnCut, "table-column-cut"},
    {Finding::Kind::TableOutsideFrame, "table-outside-frame"},
    {Finding::Kind::OutsidePage, "outside-page"},
    {Finding::Kind::OutsidePrintable, "outside-printable-area"},
    {Finding::Kind::TagNotExpanded, "tag-not-expanded"},
    {Finding::Kind::DateMissing, "date-missing"},
    {Finding::Kind::TagEmpty, "tag-empty"},
    {Finding::Kind::TailDropped, "tail-dropped"},
    {Finding::Kind::ValueReadAsMarkup, "value-read-as-markup"},
    {Finding::Kind::TextNotWhole, "text-not-whole"},
    {Finding::Kind::FontReplaced, "font-replaced"},
    {Finding::Kind::QrModuleTooSmall, "qr-module-too-small"},
    {Finding::Kind::QrRefused, "qr-refused"},
    {Finding::Kind::QrTextCut, "qr-text-cut"},
    {Finding::Kind::BackgroundMissing, "background-missing"},
    {Finding::Kind::BackgroundOutside, "background-outside"},
    {Finding::Kind::PaperUnknown, "paper-unknown"},
    {Finding::Kind::PageTooLarge, "page-too-large"},
    {Finding::Kind::PageWithoutArea, "page-without-area"},
    {Finding::Kind::PageWithoutFrames, "page-without-frames"},
};

QString sideKey(Finding::Side side)
{
    switch (side) {
    case Finding::Side::Left:
        return "left";
    case Finding::Side::Top:
        return "top";
    case Finding::Side::Right:
        return "right";
    case Finding::Side::Bottom:
        return "bottom";
    case Finding::Side::None:
        break;
    }
    return QString();
}

double rounded(double millimetres)
{
    constexpr double steps = 1000; // a millimetre
    const double inSteps = millimetres * steps;
    return std::isfinite(inSteps) ? std::round(inSteps) / steps : millimetres;
}

QJsonArray toArray(const QVector<int>& numbers)
{
    QJsonArray array;
    for (const int number : numbers) {
        array.append(number);
    }
    return array;
}

} // namespace

QJsonObject Finding::toJson() const
{
    QJsonObject json = {
        {"kind", kindName(kind)},
        {"severity", severity == Severity::Error ? "error" : "warning"},
        {"blank", QJsonObject{{"id", QJsonValue::fromVariant(blank.id)}, {"name", blank.name}}}};
    if (!isOfBlank()) {
        json["document"] = QJsonObject{{"id", QJsonValue::fromVariant(document.id)},
                                       {"surname", document.surname},
                                       {"name", document.name},
                                       {"blankSeries", document.blankSeries},
                                       {"blankNumber", document.blankNumber}};
    }
    if (item > 0) {
        json["item"] = QJsonObject{{"number", item},
                                   {"text", itemText},
                                   {"x", rounded(place.x())},
                                   {"y", rounded(place.y())},
                                   {"width", rounded(place.width())},
                                   {"height", rounded(place.height())}};
    }
    const auto add = [&json](const char* key, bool isKnown, const QJsonValue& value) {
        if (isKnown) {
            json[QLatin1String(key)] = value;
        }
    };
    add("side", side != Side::None, sideKey(side));
    add("amount", amount > 0, rounded(amount));
    add("lostInk", lostInk > 0, rounded(lostInk));
    add("rows", !rows.isEmpty(), toArray(rows));
    add("partRows", !partRows.isEmpty(), toArray(partRows));
    add("column", column > 0, column);
    add("tag", !tag.isEmpty(), tag);
    add("text", !text.isEmpty(), text);
    add("printed", !printed.isEmpty(), printed);
    return json;
}

QString Finding::kindName(Kind kind)
{
    for (const KindName& name : kindNames) {
        if (name.kind == kind) {
            return QLatin1String(name.name);
        }
    }
    return QString();
}
