#pragma once

#include <QPageSize>
#include <QSize>
#include <QSizeF>
#include <QString>

class QPrinter;
class QSqlQuery;

/// The sheet of paper that a blank's row asks the printer for, and the scale at which the page,
/// whose size comes from other columns of the row, is put on it.
class BlankPaper
{
public:
    /// `orientation` and `format` are codes of the columns `PAPER_ORIENTATION` and `PAPER_FORMAT`;
    /// `size` holds `SIZE_WIDTH` and `SIZE_HEIGHT` in millimetres.
    BlankPaper(int orientation, int format, const QSizeF& size);

    /// `SIZE_WIDTH` and `SIZE_HEIGHT` of the current row of `blanks` as they are stored, for the
    /// user: "297 × 210". Whatever is no number counts as 0 elsewhere.
    static QString storedSize(const QSqlQuery& row);

    /// Sets orientation and page size on a printer. An unknown format leaves the printer's page
    /// size and writes a line to the log.
    void setOn(QPrinter& printer) const;

    /// The page in scene units.
    QSize pageSize() const;

    /// Whether the format is one that there is. Another one leaves the printer's page size.
    bool isKnown() const;

    /// The sheet as the printer holds it, width first, in millimetres; of an unknown format the
    /// one that a printer has by itself, A4.
    QSizeF sheetSize() const;

    /// Length of a scene unit on the sheet in millimetres: the page is scaled to fit the sheet, the
    /// same in both directions. 0 if the page has no area.
    double unitLength() const;

private:
    bool isLandscape() const;
    QPageSize printerSize() const;

    int m_orientation;
    int m_format;
    QSizeF m_size;
};
