#pragma once

#include <QSet>
#include <QVector>

#include <memory>

#include "printing/BatchOutput.h"
#include "printing/PrintSheet.h"
#include "printing/PrintTarget.h"
#include "printing/SheetOutcome.h"
#include "printing/SheetPage.h"

class BatchObserver;

/// Prints sheets one after the other through the page and the printing of the application's own
/// preview. A sheet that can't be printed does not stop the rest; a file that can't be finished
/// leaves an older one of its name as it was. The database must be open.
///
/// The caller begins, prints all or sheet by sheet as the user wishes, and finishes. Nothing
/// happens between two calls.
class PrintBatch
{
public:
    /// How a batch ended.
    enum class End
    {
        Whole,      ///< every sheet had its turn
        Stopped,    ///< early, on the user's wish
        FileFull,   ///< early: the common file takes no more pages
        FileRefused ///< the common file could not be written as a whole
    };

    /// The observer has to live as long as the batch. The pages may be shared with a check.
    PrintBatch(const QVector<PrintSheet>& sheets, const PrintTarget& target,
               BatchObserver& observer,
               std::shared_ptr<PageSet> pages = std::make_shared<PageSet>());

    /// Leaves out a sheet for its findings.
    void holdBack(int sheet) { m_heldBack << sheet; }

    /// Makes the target ready. False if nothing can be printed there.
    bool begin();

    /// The sheet whose turn it is; -1 if there is none, or if nothing more can be printed.
    int next() const;

    /// Prints the next sheet and tells the observer what became of it.
    SheetOutcome printNext();

    /// Passes over the next sheet.
    void skipNext();

    /// The user says that the paper of a sheet that was printed is spoilt: it counts as not
    /// printed.
    void spoil(int sheet);

    /// Prints a sheet once more, whose turn was before, and tells the observer. Not after finish().
    SheetOutcome reprint(int sheet);

    /// Ends the batch, early or not. A common file gets its name only if every sheet had its turn
    /// and one was printed; otherwise none of them counts as printed. False if it ended early or
    /// the file could not be written, see end().
    bool finish();

    /// Prints all that are left; false if the observer stopped it.
    bool printAll();

    /// Prints all that are left, unless the observer stops it, and finishes. To be called after
    /// begin().
    bool run();

    /// How it ended; Whole as long as it has not.
    End end() const { return m_end; }

    /// What became of each sheet so far.
    const QVector<SheetOutcome>& outcomes() const { return m_outcomes; }
    int count(SheetOutcome::State state) const;

    /// The sheets that are not printed, for a further batch.
    QVector<PrintSheet> unprinted() const;

private:
    SheetOutcome print(int sheet);
    void settle(int sheet, SheetOutcome outcome);
    void discard(SheetOutcome::State state, SheetOutcome::Reason reason);

    QVector<PrintSheet> m_sheets;
    QVector<SheetOutcome> m_outcomes;
    QSet<int> m_heldBack;
    BatchOutput m_output;
    BatchObserver& m_observer;
    SheetPage m_page;
    int m_next = 0;
    End m_end = End::Whole;
};
