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

JobResult PrintJob::run()
{
    if (!selectDocuments()) {
        return JobResult::NotDone;
    }
    PrintBatch batch(m_sheets, m_options.printTarget(), *this);
    if (!batch.begin()) {
        reportNoTarget();
        return JobResult::NotDone;
    }
    return checkBeforehand() ? print(batch) : JobResult::NotDone;
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

bool PrintJob::checkBeforehand()
{
    if (m_sheets.size() < 2 && !m_options.isStrict()) {
        return true;
    }
    BatchCheck check(m_sheets, *this);
    if (!prepare(check.pageCheck())) {
        return false;
    }
    const bool isWhole = check.run();
    m_progress.clear();
    if (!isWhole) {
        reportInterruption(0);
        return false;
    }
    m_out << inWords(m_summary);
    if (m_summary.findings() > 0) {
        m_out << " (" << kindsInWords(m_summary) << ')';
    }
    m_out << '\n';
    m_out.flush();
    return true;
}

JobResult PrintJob::print(PrintBatch& batch)
{
    for (const int sheet : qAsConst(m_withFindings)) {
        batch.holdBack(sheet);
    }
    const bool isWhole = batch.run();
    m_progress.clear();
    const int printed = batch.count(SheetOutcome::State::Printed);
    switch (batch.end()) {
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
    report(inUserLanguage("прервано; напечатано документов: ", "interrupted; documents printed: ") +
           QString::number(printed));
}

void PrintJob::sheetChecked(int sheet, PageCheck& check)
{
    const QVector<Finding>& findings = check.findings();
    m_summary.add(findings);
    if (m_options.isStrict() && std::any_of(findings.cbegin(), findings.cend(), holdsBack)) {
        m_withFindings << sheet;
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
