#pragma once

#include <QSizeF>
#include <QString>

#include "render/page/BlankPaper.h"

class QPainter;
class QPrinter;

/// The test sheet that shows how far a printer's paper path is off: millimetre scales along all
/// four edges, each counted from the nearer edge of the paper, marks at 10 mm in the corners, a
/// cross in the centre and, in Russian, what to read off with a ruler. The print offsets of a blank
/// do not move it.
class CalibrationSheet
{
public:
    enum class Result
    {
        Printed,
        PaperTooSmall, ///< a side is shorter than smallestSide
        PrinterRefused
    };

    /// Paper with a shorter side has no room for the scales and the text, in millimetres.
    static constexpr double smallestSide = 60;

    /// The sheet for the paper of the blank with this name.
    CalibrationSheet(const BlankPaper& paper, const QString& blankName);

    /// Sets the paper, without margins, on the printer, begins the painter and paints the sheet.
    Result print(QPrinter& printer, QPainter& painter) const;

    /// Paints the sheet with its top left corner at the painter's origin. The painter's unit is the
    /// millimetre, and `sheet` the size of the paper in it, of at least smallestSide each way.
    void paint(QPainter& painter, const QSizeF& sheet) const;

private:
    BlankPaper m_paper;
    QString m_blankName;
};
