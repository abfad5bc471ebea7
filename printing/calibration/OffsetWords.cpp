#include "printing/calibration/OffsetWords.h"

#include <cmath>

#include "preflight/LengthText.h"

OffsetWords::OffsetWords(const QLocale& locale)
    : m_translation(locale)
{
}

QString OffsetWords::inWords(const PrintOffsets::Offset& offset, Axis axis) const
{
    constexpr double nothing = 0.005; // would be written as 0.00
    const Translation& in = m_translation;
    const QString setting = axis == Axis::X ? "Смещение печати X" : "Смещение печати Y";
    const QString moved = offset.value == 0
                              ? in.translate("OffsetWords", "moves nothing")
                              : in.translate("OffsetWords", "moves the print %1 mm %2")
                                    .arg(hundredths(offset.moved), way(offset.moved, axis));
    const QString remaining =
        std::abs(offset.remaining) < nothing
            ? in.translate("OffsetWords", "nothing remains")
            : in.translate("OffsetWords", "%1 mm %2 remains")
                  .arg(hundredths(offset.remaining), way(offset.remaining, axis));
    return in.translate("OffsetWords", "%1: %2 mm: %3, %4")
        .arg(setting, QString::number(offset.value), moved, remaining);
}

QString OffsetWords::way(double millimetres, Axis axis) const
{
    const Translation& in = m_translation;
    if (axis == Axis::X) {
        return millimetres > 0 ? in.translate("OffsetWords", "right")
                               : in.translate("OffsetWords", "left");
    }
    return millimetres > 0 ? in.translate("OffsetWords", "down")
                           : in.translate("OffsetWords", "up");
}

QString OffsetWords::hundredths(double millimetres) const
{
    QLocale locale = m_translation.locale();
    locale.setNumberOptions(QLocale::OmitGroupSeparator); // to be typed in again
    return lengthText(std::abs(millimetres), 2, locale);
}
