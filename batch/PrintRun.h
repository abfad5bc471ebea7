#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QVector>

#include <functional>
#include <optional>

#include "batch/DatabaseWatch.h"
#include "batch/PlannedSheet.h"
#include "printing/BatchObserver.h"
#include "printing/PrintBatch.h"

class BatchJournal;

/// What is to be printed, where and how.
struct PrintPlan
{
    QVector<PlannedSheet> sheets; ///< in the order in which they are printed
    PrintTarget target;
    bool bySheet = false;        ///< the user lays in each sheet and says when it is printed
    bool pausesForPaper = false; ///< waits for other paper before a sheet of another blank
};

/// Prints a plan through PrintBatch while the window stays alive: one sheet at each return to the
/// event loop, or one at each word of the user. Each sheet is in the journal before it is sent.
class PrintRun : public QObject, private BatchObserver
{
    Q_OBJECT

public:
    enum class State
    {
        Printing,
        AwaitsSheet, ///< the paper of current() is to be laid in
        AwaitsPaper, ///< the paper of current() and those behind it is to be laid in
        AwaitsData,  ///< another program holds the database
        AwaitsEnd,   ///< all sheets had their turn; the last one can still be repeated
        Ended
    };

    /// Why it ended.
    enum class Ending
    {
        Whole,
        Stopped, ///< on the user's wish
        FileFull,
        FileRefused,
        PrinterRefused,
        PrinterGone,
        JournalRefused,
        DatabaseBusy,
        DatabaseReplaced,
        DatabaseUnreadable,
        NotChecked ///< what has changed in the database could not be checked
    };

    /// Says what the sheets are in the database as it is now, checked; nothing if it can't.
    using Refresh = std::function<std::optional<QVector<PlannedSheet>>()>;

    /// The journal, and the plan's printer if there is one, have to live as long as the run.
    PrintRun(const PrintPlan& plan, BatchJournal& journal, QObject* parent = nullptr);
    ~PrintRun() override;

    /// To be set before begin(). Called when others have changed the database.
    void setRefresh(const Refresh& refresh) { m_refresh = refresh; }

    /// Makes the target ready and begins. False if nothing can be printed there.
    bool begin();

    State state() const { return m_state; }
    Ending ending() const { return m_ending; }

    /// What went wrong, as the system words it.
    QString problem() const { return m_problem; }

    /// The sheet whose turn it is, by its index in the plan; -1 if there is none.
    int current() const { return m_current; }

    /// Whether it is printed again, since its paper was spoilt.
    bool isRepeat() const { return m_current >= 0 && m_current < m_dealt; }

    /// How many sheets have had their turn.
    int dealt() const { return m_dealt; }

    /// How many sheets of the current one's blank follow from it on.
    int sheetsOnThisPaper() const;

    bool isBySheet() const { return m_plan.bySheet; }
    const QVector<PlannedSheet>& sheets() const { return m_plan.sheets; }
    const QVector<SheetOutcome>& outcomes() const { return m_batch.outcomes(); }

    /// Whether the sheet before can be printed again.
    bool canRepeat() const;

    /// Prints the sheet that is laid in. If its number has meanwhile changed in the database, it
    /// asks for the other one instead. With no sheet left, ends the run.
    void printSheet();

    /// Passes over the sheet that is to be laid in; one that was to be repeated stays spoilt.
    void skipSheet();

    /// Marks the sheet before as spoilt and asks for new paper for it.
    void repeatSheet();

    /// The other paper is laid in.
    void goOn();

    /// Ends the run before the next sheet.
    void stop();

signals:
    void sheetChanged(int sheet);
    void stateChanged();

private:
    bool goesOn(int sheet, int count) override;

    void setState(State state);
    void advance();
    void tick();
    void waitForDatabase();
    void refresh();
    void takeOver(const QVector<PlannedSheet>& now);
    void print();
    void goOnAfter(const SheetOutcome& outcome);
    bool note(int sheet, const QString& event);
    void noteFile();
    void end(Ending ending);
    bool isPrinter() const { return m_plan.target.kind == PrintTarget::Kind::Printer; }

    PrintPlan m_plan;
    BatchJournal& m_journal;
    PrintBatch m_batch;
    DatabaseWatch m_database;
    Refresh m_refresh;
    QTimer m_timer;
    QElapsedTimer m_waiting; // for the database
    State m_state = State::Printing;
    Ending m_ending = Ending::Whole;
    QString m_problem;
    QString m_paperLaidIn; // blank of the sheet that was printed last
    int m_current = -1;
    int m_dealt = 0;
    int m_last = -1;             // printed last
    bool m_isRefreshing = false; // which may serve events
    bool m_isStopping = false;
};
