#include "blanks/BlankRecord.h"

int mmToPixels(int millimetres)
{
    constexpr double unitsPerMillimetre = 3.7795;
    return static_cast<int>(millimetres * unitsPerMillimetre);
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
