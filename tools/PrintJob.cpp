#include "tools/PrintJob.h"

#include <QTextStream>

#include <algorithm>

#include "printing/BatchCheck.h"
#include "printing/PrintBatch.h"
#include "tools/PrintWords.h"
#include "tools/UserLanguage.h"

namespace {

/// Whether a finding spoils this very sheet. A warning about the blank, such as a font that another
/// one stands in for, is there for all its documents, and known. A value may well be empty: not
/// everyone has a patronymic.
bool holdsBack(const Finding& finding)
{
    if (finding.kind == Finding::Kind::TagEmpty) {
        return false;
    }
    return !finding.isOfBlank() || finding.severity == Finding::Severity::Error;
}

} // namespace

PrintJob::PrintJob(const PrintOptions& options, QTextStream& out, QTextStream& err)
    : DocumentJob(options, out, err)
{
}

PrintJob::~PrintJob() = default;

JobResult PrintJob::run()
{
    if (!selectDocuments()) {
        return JobResult::NotDone;
    }
    const auto pages = std::make_shared<PageSet>();
    m_batch = std::make_unique<PrintBatch>(m_sheets, m_options.printTarget(), *this, pages);
    if (!m_batch->begin()) {
        reportNoTarget();
        return JobResult::NotDone;
    }
    if (m_sheets.size() < 2 && !m_options.isStrict()) {
        return print();
    }
    auto check = std::make_unique<BatchCheck>(m_sheets, *this, pages);
    if (!prepare(check->pageCheck())) {
        return JobResult::NotDone;
    }
    // A common file gets its name only at the end: each of its pages is checked just before it is
    // printed, and laid out once. Elsewhere the check comes before the first sheet leaves.
    if (m_options.target() == PrintOptions::Target::OneFile) {
        m_checkOfNext = std::move(check);
        return print();
    }
    return checkBeforehand(*check) ? print() : JobResult::NotDone;
}

void PrintJob::reportNoTarget()
{
    switch (m_options.target()) {
    case PrintOptions::Target::OneFile:
        reportUnwritable(m_options.output());
        break;
    case PrintOptions::Target::FilePerDocument:
        reportNoFolder();
        break;
    case PrintOptions::Target::Printer:
        reportNoPrinter();
        break;
    }
}

bool PrintJob::checkBeforehand(BatchCheck& check)
{
    const bool isWhole = check.run();
    m_progress.clear();
    if (!isWhole) {
        reportInterruption(0);
        return false;
    }
    tellFindings();
    return true;
}

void PrintJob::tellFindings()
{
    m_out << inWords(m_summary);
    if (m_summary.findings() > 0) {
        m_out << " (" << kindsInWords(m_summary) << ')';
    }
    m_out << '\n';
    flushOutput(m_out);
}

JobResult PrintJob::print()
{
    const bool hadAllTheirTurn = m_batch->printAll();
    m_progress.clear();
    if (hadAllTheirTurn && m_checkOfNext) {
        tellFindings();
    }
    const bool isWhole = m_batch->finish();
    const int printed = m_batch->count(SheetOutcome::State::Printed);
    switch (m_batch->end()) {
    case PrintBatch::End::Stopped:
        reportInterruption(printed);
        break;
    case PrintBatch::End::FileRefused:
        reportUnwritable(m_options.output());
        break;
    default:
        break;
    }
    if (printed == 0) {
        return JobResult::NotDone;
    }
    return isWhole && printed == m_sheets.size() && allKnown() ? JobResult::Done
                                                               : JobResult::SomeFailed;
}

void PrintJob::reportInterruption(int printed)
{
    report(tr("interrupted; documents printed: %n", nullptr, printed));
}

bool PrintJob::goesOn(int sheet, int count)
{
    if (!DocumentJob::goesOn(sheet, count)) {
        return false;
    }
    if (m_checkOfNext) {
        m_checkOfNext->checkSheet(sheet);
    }
    return true;
}

void PrintJob::sheetChecked(int sheet, PageCheck& check)
{
    const QVector<Finding>& findings = check.findings();
    m_summary.add(findings);
    if (m_options.isStrict() && std::any_of(findings.cbegin(), findings.cend(), holdsBack)) {
        m_batch->holdBack(sheet);
    }
}

void PrintJob::sheetNotChecked(int /*sheet*/, const SheetOutcome& /*outcome*/)
{
    // The printing will say why.
}

void PrintJob::sheetDone(int sheet, const SheetOutcome& outcome)
{
    if (outcome.state != SheetOutcome::State::Printed) {
        report(sheet, outcome);
    }
}

void PrintJob::fileWritten(const QString& path)
{
    tellFile(path);
}
