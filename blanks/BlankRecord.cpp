#include "blanks/BlankRecord.h"

#include <algorithm>
#include <limits>

int mmToPixels(int millimetres)
{
    // kept: not 96 / 25.4, and truncated. Every stored blank is laid out in these units.
    constexpr double unitsPerMillimetre = 3.7795;
    return truncated(millimetres * unitsPerMillimetre);
}

int truncated(double length)
{
    // Stored numbers may be any; beyond the range of int a conversion is undefined.
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::max(lowest, std::min(length, highest)));
}

QString paperFormatName(int code)
{
    switch (code) {
    case PaperFormat::a4:
        return "A4";
    case PaperFormat::a5:
        return "A5";
    case PaperFormat::customMm:
        return "CustomMM";
    default:
        return "Unknown";
    }
}

QString shownBlankName(const QString& name, const QVariant& id)
{
    return name.isEmpty() ? "Бланк " + id.toString() : name;
}
