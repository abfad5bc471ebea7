#pragma once

#include <QVector>

#include "batch/PlannedSheet.h"
#include "batch/SheetOrder.h"
#include "printing/PrintTarget.h"
#include "printing/SheetOutcome.h"

/// The sheets of a batch in the order of printing, with what became of each over all its runs. Rows
/// count from 0.
class SheetResults
{
public:
    /// Begins with these sheets, in the order of the list; nothing is printed.
    void begin(const QVector<PlannedSheet>& listed, const SheetOrder& order);

    /// The sheets that it began with, as they are now.
    const QVector<PlannedSheet>& listed() const { return m_listed; }

    /// Takes what is new about the same sheets; outcomes stay. False if they are others.
    bool takeOver(const QVector<PlannedSheet>& listed);

    int count() const { return m_sheets.size(); }
    const QVector<PlannedSheet>& sheets() const { return m_sheets; }
    const QVector<SheetOutcome>& outcomes() const { return m_outcomes; }
    bool isPrinted(int row) const;
    QVector<int> allRows() const;
    QVector<int> unprintedRows() const;

    /// Whether one of the rows can be printed at all.
    bool isAnyPrintable(const QVector<int>& rows) const;

    /// The sheets of the rows for the target, which learns the names that other files have. Printed
    /// again, a sheet goes into the file that it had.
    QVector<PlannedSheet> sheetsFor(const QVector<int>& rows, PrintTarget& target) const;

    /// A run begins with these rows.
    void beginRun(const QVector<int>& rows);
    int rowOfRun(int sheet) const { return m_rows[sheet]; }
    const QVector<int>& rowsOfRun() const { return m_rows; }

    /// Takes what a sheet of the run is and became.
    void take(int sheet, const PlannedSheet& planned, const SheetOutcome& outcome);

    void markSpoilt(int row) { m_outcomes[row].markSpoilt(); }

private:
    QVector<PlannedSheet> m_listed;
    QVector<PlannedSheet> m_sheets;
    QVector<SheetOutcome> m_outcomes;
    QVector<int> m_rows;         // of the run's sheets
    QVector<int> m_spoiltBefore; // prints of the run's sheets, before the run
};
