#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QVector>

#include "batch/PlannedSheet.h"
#include "preflight/Finding.h"
#include "printing/BatchObserver.h"
#include "printing/SheetOutcome.h"

/// What the check knows of the sheets that are to be printed. A run looks at those that have not
/// been looked at or have changed since, and serves the window's events between two pages.
class SheetChecks : public QObject, private BatchObserver
{
    Q_OBJECT

public:
    /// What is known of one sheet.
    struct Result
    {
        bool isChecked = false;
        SheetOutcome::Reason reason = SheetOutcome::Reason::None; ///< why it can't be looked at
        QByteArray signature;                                     ///< of what was looked at
        QVector<Finding> findings;                                ///< errors first

        bool isClean() const { return reason == SheetOutcome::Reason::None && findings.isEmpty(); }
        bool hasErrors() const;
    };

    using QObject::QObject;

    /// What is known of a sheet that was among the last ones stays. Not to be called while a run is
    /// going on.
    void setSheets(const QVector<PlannedSheet>& sheets);

    /// Takes the margins of a printer into account; empty for none. What was checked with others is
    /// forgotten.
    void setPrinter(const QString& name);

    /// Brings all results up to date. False if the user stopped it or something that all sheets
    /// need can't be read, see problem().
    bool run();

    /// Ends a run before its next sheet.
    void stop() { m_stops = true; }

    bool isRunning() const { return m_isRunning; }

    /// Why the last run ended early; empty if the user stopped it, or it did not.
    const QString& problem() const { return m_problem; }

    const QVector<PlannedSheet>& sheets() const { return m_sheets; }
    const Result& result(int sheet) const { return m_results[sheet]; }

    /// How many sheets have been checked.
    int checkedCount() const;

signals:
    /// A run is at this sheet.
    void progressed(int sheet, int count);

    /// The result of a sheet is up to date.
    void sheetSettled(int sheet);

private:
    bool goesOn(int sheet, int count) override;
    void sheetChecked(int sheet, PageCheck& check) override;
    void sheetNotChecked(int sheet, const SheetOutcome& outcome) override;

    bool runAll();

    QVector<PlannedSheet> m_sheets;
    QVector<Result> m_results; // one a sheet
    QString m_printer;
    QString m_problem;
    QElapsedTimer m_sinceEvents; // were served last
    bool m_isRunning = false;
    bool m_stops = false;
};
