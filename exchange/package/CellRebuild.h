#pragma once

#include <QHash>
#include <QSet>
#include <QString>

#include "exchange/package/XmlOutput.h"

class PartReader;
class SharedTexts;

/// What all sheets of a workbook draw on together.
struct CellBudget
{
    int cells;         ///< that may still come
    qint64 characters; ///< that their texts may still take
    qint64 places;     ///< that rows and columns may still span
};

/// Copies the rows and cells of one sheet.
class CellRebuild
{
public:
    /// `formats` is the number of formats that a cell can have; `isFrom1904` tells from which day
    /// the workbook counts. All must outlive the copying.
    CellRebuild(SharedTexts& texts, CellBudget& budget, int formats, bool isFrom1904);

    /// Copies the children of the element that the reader is at. If a row or cell has a place that
    /// no sheet has, or if there are too many, returns false and puts the reason into `error`.
    bool copyRows(PartReader& reader, XmlOutput& out, QString* error);

    /// The area of all rows and cells that hold something; empty without any.
    QString dimension() const;

private:
    struct Formula
    {
        bool isThere = false;
        QString type; ///< "shared" or "array"; empty for one of its own
        QString area; ///< of an array, or of those that share it
        int group = -1;
        QString text;
    };

    struct Value
    {
        const char* type = ""; ///< as the cell's attribute; empty for none
        QString text;
        int shared = -1; ///< number of the shared text that stands in its place
        bool isThere = false;
    };

    bool copyRow(PartReader& reader, XmlOutput& out);
    void writeRowAttributes(const PartReader& reader, XmlOutput& out);
    bool copyCell(PartReader& reader, XmlOutput& out);
    Formula readFormula(PartReader& reader);
    Value valueOf(const QByteArray& type, const QString& text) const;
    Value sharedText(const QString& number) const;
    Value number(const QString& text, const char* type) const;
    Value date(const QString& text) const;
    void writeCell(int format, const Formula& formula, const Value& value, XmlOutput& out);
    bool fail(const QString& reason);
    void takePlace(int row, int column);

    SharedTexts& m_texts;
    CellBudget& m_budget;
    int m_formats;
    bool m_isFrom1904;

    QString m_error;
    int m_row = 0;    ///< of the cell read last; from 1
    int m_column = 0; ///< of the cell read last; from 1
    int m_filledRows = 0;
    int m_firstRow = 0; ///< 0 without any
    int m_lastRow = 0;
    int m_firstColumn = 0;
    int m_lastColumn = 0;
    QSet<int> m_groups; ///< numbers of the shared formulas met so far
};
