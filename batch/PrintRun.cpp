#include "batch/PrintRun.h"

#include <QHash>
#include <QScopedValueRollback>

#include "batch/BatchJournal.h"
#include "batch/RunWords.h"
#include "batch/SheetOrder.h"

using SheetState = SheetOutcome::State;
using Reason = SheetOutcome::Reason;

namespace {

constexpr int retryMs = 100;
constexpr int patienceMs = 5000; // as long as any other program of this database waits

} // namespace

PrintRun::PrintRun(const PrintPlan& plan, BatchJournal& journal, QObject* parent)
    : QObject(parent)
    , m_plan(plan)
    , m_journal(journal)
    , m_batch(printSheets(plan.sheets), plan.target, *this)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &PrintRun::tick);
    for (int sheet = 0; sheet < m_plan.sheets.size(); ++sheet) {
        if (m_plan.sheets[sheet].isHeldBack) {
            m_batch.holdBack(sheet);
        }
    }
}

PrintRun::~PrintRun() = default;

bool PrintRun::begin()
{
    if (!m_batch.begin()) {
        return false;
    }
    advance();
    return true;
}

bool PrintRun::canRepeat() const
{
    const bool isWaiting = m_state == State::AwaitsSheet || m_state == State::AwaitsEnd;
    return isWaiting && isPrinter() && m_last >= 0 &&
           outcomes()[m_last].state == SheetState::Printed;
}

int PrintRun::sheetsOnThisPaper() const
{
    int count = 0;
    const QVariant blank = m_plan.sheets[m_current].sheet.blank.id;
    for (int sheet = m_current; sheet < m_plan.sheets.size(); ++sheet) {
        count += isPrintable(m_plan.sheets[sheet]) && m_plan.sheets[sheet].sheet.blank.id == blank
                     ? 1
                     : 0;
    }
    return count;
}

void PrintRun::printSheet()
{
    if (m_state == State::AwaitsEnd) {
        end(Ending::Whole);
    } else if (m_state == State::AwaitsSheet) {
        setState(State::Printing);
        m_timer.start(0);
    }
}

void PrintRun::skipSheet()
{
    if (m_state != State::AwaitsSheet) {
        return;
    }
    if (!isRepeat()) {
        m_batch.skipNext();
        ++m_dealt;
        const int skipped = m_current;
        note(skipped, inWords(outcomes()[skipped]));
        emit sheetChanged(skipped);
    }
    advance();
}

void PrintRun::repeatSheet()
{
    if (!canRepeat()) {
        return;
    }
    m_batch.spoil(m_last);
    note(m_last, inWords(outcomes()[m_last]));
    m_current = m_last;
    emit sheetChanged(m_last);
    setState(State::AwaitsSheet);
}

void PrintRun::goOn()
{
    if (m_state == State::AwaitsPaper) {
        setState(State::Printing);
        m_timer.start(0);
    }
}

void PrintRun::stop()
{
    if (m_isRefreshing) {
        m_isStopping = true;
    } else if (m_state == State::AwaitsEnd) {
        end(Ending::Whole);
    } else if (m_state != State::Ended) {
        end(Ending::Stopped);
    }
}

bool PrintRun::goesOn(int /*sheet*/, int /*count*/)
{
    return true; // the window's own loop is between two sheets
}

void PrintRun::setState(State state)
{
    m_state = state;
    emit stateChanged();
}

/// Goes to the next sheet, or to the end.
void PrintRun::advance()
{
    m_current = m_batch.next();
    if (m_current < 0) {
        const bool canEnd = m_batch.end() == PrintBatch::End::Whole;
        setState(State::AwaitsEnd);
        if (!m_plan.bySheet || !canEnd || !canRepeat()) {
            end(Ending::Whole);
        }
        return;
    }
    const QString paper = m_plan.sheets[m_current].sheet.blank.id.toString();
    const bool isSent = isPrintable(m_plan.sheets[m_current]);
    if (isSent && m_plan.bySheet) {
        setState(State::AwaitsSheet);
    } else if (isSent && m_plan.pausesForPaper && !m_paperLaidIn.isEmpty() &&
               m_paperLaidIn != paper) {
        setState(State::AwaitsPaper);
    } else {
        setState(State::Printing);
        m_timer.start(0);
    }
    if (isSent) {
        m_paperLaidIn = paper;
    }
}

void PrintRun::tick()
{
    switch (m_database.look()) {
    case DatabaseWatch::State::Same:
        if (m_waiting.isValid()) {
            m_waiting.invalidate();
            setState(State::Printing);
        }
        print();
        return;
    case DatabaseWatch::State::Changed:
        refresh();
        return;
    case DatabaseWatch::State::Busy:
        waitForDatabase();
        return;
    case DatabaseWatch::State::Replaced:
        end(Ending::DatabaseReplaced);
        return;
    case DatabaseWatch::State::Unreadable:
        end(Ending::DatabaseUnreadable);
        return;
    }
}

void PrintRun::waitForDatabase()
{
    if (!m_waiting.isValid()) {
        m_waiting.start();
        setState(State::AwaitsData);
    }
    if (m_waiting.hasExpired(patienceMs)) {
        end(Ending::DatabaseBusy);
    } else {
        m_timer.start(retryMs);
    }
}

/// Others have changed the database since the sheets were checked.
void PrintRun::refresh()
{
    const QString announced = paperOf(m_plan.sheets[m_current]);
    if (m_refresh) {
        const QScopedValueRollback<bool> guard(m_isRefreshing, true);
        const std::optional<QVector<PlannedSheet>> now = m_refresh();
        if (!now) {
            m_isStopping ? end(Ending::Stopped) : end(Ending::NotChecked);
            return;
        }
        takeOver(*now);
    }
    if (m_isStopping) {
        end(Ending::Stopped);
    } else if (!m_database.accept()) {
        waitForDatabase();
    } else if (m_plan.bySheet && isPrintable(m_plan.sheets[m_current]) &&
               paperOf(m_plan.sheets[m_current]) != announced)
    {
        setState(State::AwaitsSheet); // for other paper than lies in the printer
    } else {
        setState(State::Printing);
        m_timer.start(0);
    }
}

void PrintRun::takeOver(const QVector<PlannedSheet>& now)
{
    QHash<QString, const PlannedSheet*> fresh;
    for (const PlannedSheet& planned : now) {
        fresh.insert(sheetKey(planned), &planned);
    }
    for (int sheet = 0; sheet < m_plan.sheets.size(); ++sheet) {
        const PlannedSheet* planned = fresh.value(sheetKey(m_plan.sheets[sheet]));
        if (!planned) {
            continue; // its printing will say why
        }
        m_plan.sheets[sheet] = *planned;
        if (planned->isHeldBack) {
            m_batch.holdBack(sheet);
        }
        emit sheetChanged(sheet);
    }
}

void PrintRun::print()
{
    // Before anything is sent: a power cut must not leave a sheet that nobody knows of.
    if (isPrintable(m_plan.sheets[m_current]) && !note(m_current, "печатается")) {
        m_database.release();
        end(Ending::JournalRefused);
        return;
    }
    const bool isAgain = isRepeat();
    const SheetOutcome outcome = isAgain ? m_batch.reprint(m_current) : m_batch.printNext();
    m_database.release();
    if (!isAgain) {
        ++m_dealt;
    }
    if (outcome.state == SheetState::Printed) {
        m_last = m_current;
    }
    emit sheetChanged(m_current);
    SheetOutcome now = outcome;
    now.spoilt = 0; // has lines of its own
    const bool isInCommonFile =
        m_plan.target.kind == PrintTarget::Kind::OneFile && outcome.state == SheetState::Printed;
    if (!note(m_current, isInCommonFile ? "добавлен в файл" : inWords(now))) {
        end(Ending::JournalRefused);
        return;
    }
    goOnAfter(outcome);
}

/// What one printer does not take, it would not take of the next sheet either.
void PrintRun::goOnAfter(const SheetOutcome& outcome)
{
    if (outcome.reason == Reason::PrinterRefused) {
        end(Ending::PrinterRefused);
    } else if (outcome.reason == Reason::PrinterGone) {
        end(Ending::PrinterGone);
    } else {
        advance();
    }
}

bool PrintRun::note(int sheet, const QString& event)
{
    return m_journal.add(
        entryOf(m_plan.sheets[sheet], outcomes()[sheet].file, m_plan.target, event), &m_problem);
}

/// A common file comes to be at the end alone: until then its sheets are nowhere.
void PrintRun::noteFile()
{
    JournalEntry entry;
    entry.time = QDateTime::currentDateTime();
    entry.place = m_plan.target.place;
    entry.event = m_batch.count(SheetState::Printed) > 0 ? "файл записан" : "файл не записан";
    m_journal.add(entry);
}

void PrintRun::end(Ending ending)
{
    m_timer.stop();
    m_batch.finish();
    m_ending = ending;
    if (m_batch.end() == PrintBatch::End::FileFull) {
        m_ending = Ending::FileFull;
    } else if (m_batch.end() == PrintBatch::End::FileRefused) {
        m_ending = Ending::FileRefused;
    }
    if (m_plan.target.kind == PrintTarget::Kind::OneFile) {
        noteFile();
    }
    setState(State::Ended);
}
