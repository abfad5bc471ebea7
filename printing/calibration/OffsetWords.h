#pragma once

#include <QLocale>
#include <QString>

#include "printing/calibration/PrintOffsets.h"
#include "translations/Translation.h"

/// Says what an offset does on paper, in Russian or else in English, with numbers as the locale
/// writes them.
class OffsetWords
{
public:
    enum class Axis
    {
        X, ///< to the right, to the left
        Y  ///< down, up
    };

    explicit OffsetWords(const QLocale& locale);

    /// "Смещение печати X: 2 мм — сдвинет печать на 1,85 мм влево, остаток 0,15 мм вправо".
    QString inWords(const PrintOffsets::Offset& offset, Axis axis) const;

private:
    QString way(double millimetres, Axis axis) const;
    QString hundredths(double millimetres) const;

    Translation m_translation;
};
