#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QRectF>
#include <QVector>

#include "preflight/Finding.h"
#include "preflight/InkRecorder.h"

class QTableWidget;
struct PageItem;

/// Tells which rows, columns and cells of a table item of a page are cut off, and whether it is
/// printed beyond its frame: the toolkit gives every table at least some height and width.
class TableCheck
{
public:
    /// `item` is a table, which has to stay as it is as long as the check; `unitLength` is that of
    /// a scene unit on paper, millimetres.
    TableCheck(const PageItem& item, double unitLength, InkRecorder& recorder);

    const PrintedInk& printedInk() const { return m_ink; }

    /// Kind, severity, side, amounts, rows and columns alone.
    QVector<Finding> findings() const;

private:
    /// The texts that were painted in a cell.
    const QVector<TextMark>& marksAt(int row, int column) const;

    void sortMarks();
    QString textAt(int row, int column) const;
    bool hasText(int row) const;
    bool isWhollyCut(int row) const;
    QRectF inkOfRow(int row) const;
    void addRows(QVector<Finding>& findings) const;
    void addColumns(QVector<Finding>& findings) const;
    void addCell(QVector<Finding>& findings, int row, int column) const;
    double missingWidth(int row, int column) const;
    double missingHeight(int row, int column) const;
    double roomInColumn(int column) const;

    QRectF m_frame;
    double m_unitLength;
    int m_firstRow; // its number in the document's table
    const QTableWidget* m_table;
    QRectF m_view; // what of the table can be seen, on the page
    PrintedInk m_ink;
    QVector<QVector<TextMark>> m_cells; // row by row
};
