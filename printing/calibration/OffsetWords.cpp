#include "printing/calibration/OffsetWords.h"

#include <cmath>

#include "preflight/LengthText.h"

OffsetWords::OffsetWords(const QLocale& locale)
    : m_locale(locale)
{
    m_locale.setNumberOptions(QLocale::OmitGroupSeparator); // to be typed in again
}

QString OffsetWords::inWords(const PrintOffsets::Offset& offset, Axis axis) const
{
    constexpr double nothing = 0.005; // would be written as 0.00
    const QString setting = axis == Axis::X ? "Смещение печати X" : "Смещение печати Y";
    const QString moved = offset.value == 0
                              ? either("печать не сдвинется", "moves nothing")
                              : either("сдвинет печать на %1 мм %2", "moves the print %1 mm %2")
                                    .arg(hundredths(offset.moved), way(offset.moved, axis));
    const QString remaining =
        std::abs(offset.remaining) < nothing
            ? either("остатка нет", "nothing remains")
            : either("остаток %1 мм %2", "%1 mm %2 remains")
                  .arg(hundredths(offset.remaining), way(offset.remaining, axis));
    return either("%1: %2 мм — %3, %4", "%1: %2 mm: %3, %4")
        .arg(setting, QString::number(offset.value), moved, remaining);
}

QString OffsetWords::either(const QString& russian, const QString& english) const
{
    return m_locale.language() == QLocale::Russian ? russian : english;
}

QString OffsetWords::way(double millimetres, Axis axis) const
{
    if (axis == Axis::X) {
        return millimetres > 0 ? either("вправо", "right") : either("влево", "left");
    }
    return millimetres > 0 ? either("вниз", "down") : either("вверх", "up");
}

QString OffsetWords::hundredths(double millimetres) const
{
    return lengthText(std::abs(millimetres), 2, m_locale);
}
