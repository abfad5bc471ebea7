#include "printing/calibration/PrintOffsets.h"

#include <QRegularExpression>

#include <cmath>

#include "blanks/BlankRecord.h"

PrintOffsets::PrintOffsets(double unitLength)
    : m_unitLength(unitLength)
{
}

PrintOffsets::Offset PrintOffsets::offsetFor(double readOff) const
{
    constexpr double noise = 1e-9; // below this two remainders are equal
    Offset best = effectOf(0, readOff);
    for (int size = 1; size <= highest; ++size) {
        for (const int value : {size, -size}) {
            const Offset candidate = effectOf(value, readOff);
            if (std::abs(candidate.remaining) < std::abs(best.remaining) - noise) {
                best = candidate;
            }
        }
    }
    return best;
}

PrintOffsets::Offset PrintOffsets::effectOf(int value, double readOff) const
{
    const double moved = -mmToPixels(value) * m_unitLength;
    return {value, moved, readOff + moved};
}

std::optional<double> PrintOffsets::millimetres(const QString& text)
{
    static const QRegularExpression number("^\\s*[+-]?(\\d+([.,]\\d*)?|[.,]\\d+)\\s*$");
    QString plain = text;
    plain.replace(QChar(0x2212), '-'); // the minus sign of typesetters
    if (!number.match(plain).hasMatch()) {
        return std::nullopt;
    }
    return plain.replace(',', '.').toDouble();
}
