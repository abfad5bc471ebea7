#include "printing/PrintBatch.h"

#include <algorithm>

#include "printing/BatchObserver.h"

using State = SheetOutcome::State;
using Reason = SheetOutcome::Reason;

PrintBatch::PrintBatch(const QVector<PrintSheet>& sheets, const PrintTarget& target,
                       BatchObserver& observer, std::shared_ptr<PageSet> pages)
    : m_sheets(sheets)
    , m_outcomes(sheets.size())
    , m_output(target)
    , m_observer(observer)
    , m_page(std::move(pages))
{
}

bool PrintBatch::begin()
{
    return m_output.open();
}

int PrintBatch::next() const
{
    return m_end != End::Whole || m_next >= m_sheets.size() ? -1 : m_next;
}

SheetOutcome PrintBatch::printNext()
{
    const int sheet = next();
    if (sheet < 0) {
        return SheetOutcome();
    }
    ++m_next;
    return print(sheet);
}

void PrintBatch::skipNext()
{
    const int sheet = next();
    if (sheet < 0) {
        return;
    }
    ++m_next;
    SheetOutcome outcome;
    outcome.state = State::Skipped;
    settle(sheet, outcome);
}

void PrintBatch::spoil(int sheet)
{
    m_outcomes[sheet].markSpoilt();
}

SheetOutcome PrintBatch::reprint(int sheet)
{
    return m_end == End::Whole ? print(sheet) : m_outcomes[sheet];
}

bool PrintBatch::printAll()
{
    while (next() >= 0) {
        if (!m_observer.goesOn(next(), m_sheets.size())) {
            return false;
        }
        printNext();
    }
    return true;
}

bool PrintBatch::run()
{
    printAll();
    return finish();
}

bool PrintBatch::finish()
{
    if (next() >= 0) {
        m_end = End::Stopped;
    }
    if (!m_output.isOneFile()) {
        return m_end == End::Whole;
    }
    if (m_end != End::Whole || count(State::Printed) == 0) {
        discard(State::NotPrinted, Reason::None);
        m_output.discard(); // now: a window keeps the results of a batch for long
        return m_end == End::Whole;
    }
    if (!m_output.finish()) {
        m_end = End::FileRefused;
        discard(State::Failed, Reason::FileRefused);
        return false;
    }
    m_observer.fileWritten(m_output.path());
    return true;
}

int PrintBatch::count(State state) const
{
    return static_cast<int>(
        std::count_if(m_outcomes.cbegin(), m_outcomes.cend(),
                      [state](const SheetOutcome& outcome) { return outcome.state == state; }));
}

QVector<PrintSheet> PrintBatch::unprinted() const
{
    QVector<PrintSheet> sheets;
    for (int sheet = 0; sheet < m_sheets.size(); ++sheet) {
        if (m_outcomes[sheet].state != State::Printed) {
            sheets.append(m_sheets[sheet]);
        }
    }
    return sheets;
}

SheetOutcome PrintBatch::print(int sheet)
{
    const PrintSheet& wanted = m_sheets[sheet];
    SheetOutcome outcome;
    if (m_heldBack.contains(sheet)) {
        outcome.state = State::HeldBack;
        outcome.reason = Reason::Findings;
    } else if (wanted.blank.id.isNull() || !m_page.build(wanted)) {
        outcome = SheetOutcome::withoutPage(wanted);
    } else {
        outcome = m_output.print(wanted, m_page);
    }
    settle(sheet, outcome);
    return m_outcomes[sheet];
}

void PrintBatch::settle(int sheet, SheetOutcome outcome)
{
    outcome.spoilt = m_outcomes[sheet].spoilt;
    m_outcomes[sheet] = outcome;
    if (m_output.isOneFile() && outcome.reason == Reason::FileRefused) {
        m_end = End::FileFull; // for the rest too
    } else if (!m_output.isOneFile() && outcome.state == State::Printed && !outcome.file.isEmpty())
    {
        m_observer.fileWritten(outcome.file);
    }
    m_observer.sheetDone(sheet, m_outcomes[sheet]);
}

void PrintBatch::discard(State state, Reason reason)
{
    for (SheetOutcome& outcome : m_outcomes) {
        if (outcome.state == State::Printed) {
            outcome.state = state;
            outcome.reason = reason;
        }
    }
}
