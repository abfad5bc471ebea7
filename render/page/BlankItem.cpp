#include "render/page/BlankItem.h"

#include <QWidget>

#include "blanks/BlankRecord.h"
#include "blanks/FontFamily.h"

namespace {

double lengthOf(const QJsonObject& item, const char* key)
{
    return qBound(-double(QWIDGETSIZE_MAX), item[QLatin1String(key)].toDouble(0),
                  double(QWIDGETSIZE_MAX));
}

QRectF geometryOf(const QJsonObject& item)
{
    return {lengthOf(item, "pos_x"), lengthOf(item, "pos_y"), lengthOf(item, "size_w"),
            lengthOf(item, "size_h")};
}

/// kept: single precision throughout. Only so is "1,15" 115 per cent, as printed sheets have it.
float lineSpacingOf(const QJsonObject& item)
{
    constexpr float smallest = 0.1F;
    constexpr float largest = 1000.0F;
    const float spacing = item["line_spacing"].toString().replace(',', '.').toFloat();
    return spacing >= smallest ? qMin(spacing, largest) : 1.0F;
}

bool hasStrokeOf(const QJsonObject& item)
{
    return item["f_cut"].toInt(0) == 1;
}

Qt::Alignment alignmentOf(const QJsonObject& item)
{
    Qt::Alignment horizontal = Qt::AlignHCenter;
    switch (item["h_align"].toInt(HorizontalAlign::center)) {
    case HorizontalAlign::left:
        horizontal = Qt::AlignLeft;
        break;
    case HorizontalAlign::right:
        horizontal = Qt::AlignRight;
        break;
    default:
        break;
    }
    switch (hasStrokeOf(item) ? VerticalAlign::top : item["v_align"].toInt(VerticalAlign::center)) {
    case VerticalAlign::top:
        return horizontal | Qt::AlignTop;
    case VerticalAlign::bottom:
        return horizontal | Qt::AlignBottom;
    default:
        return horizontal | Qt::AlignVCenter;
    }
}

} // namespace

BlankItem::BlankItem(const QJsonObject& object)
    : json(object)
    , kind(object["type"].toInt(BlankItemKind::text))
    , value(object["value"].toString())
    , geometry(geometryOf(object))
    , lineSpacing(lineSpacingOf(object))
    , hasStroke(hasStrokeOf(object))
    , alignment(alignmentOf(object))
    , firstRow(qMax(object["row_from"].toInt(1), 1))
    , columnWidths(object["columns_width"].toArray())
{
}

QFont BlankItem::font(const QFont& blankFont) const
{
    constexpr int sizeOfBlank = 6; // sizes up to this one mean the blank's own
    QFont font = blankFont;
    const QString family = json["font"].toString();
    if (!family.isEmpty()) {
        font.setFamily(searchableFamily(family));
    }
    const int pointSize = json["font_size"].toInt(0);
    if (pointSize > sizeOfBlank) {
        font.setPointSize(pointSize);
    }
    return font;
}

int BlankItem::lastRow(int rows) const
{
    return qBound(0, json["row_to"].toInt(rows), rows);
}
