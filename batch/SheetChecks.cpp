#include "batch/SheetChecks.h"

#include <QCoreApplication>

#include <algorithm>

#include "batch/BatchDatabase.h"
#include "batch/SheetSignature.h"
#include "preflight/PageCheck.h"
#include "printing/BatchCheck.h"

namespace {

/// What makes two sheets the same one to the check.
QString keyOf(const PrintSheet& sheet)
{
    return sheet.document.id.toString() + '/' + sheet.blank.id.toString() +
           (sheet.withBackground ? "/b" : "");
}

} // namespace

bool SheetChecks::Result::hasErrors() const
{
    // They come first.
    return reason != SheetOutcome::Reason::None ||
           (!findings.isEmpty() && findings.first().severity == Finding::Severity::Error);
}

void SheetChecks::setSheets(const QVector<PlannedSheet>& sheets)
{
    QHash<QString, Result> known;
    for (int i = 0; i < m_sheets.size(); ++i) {
        known[keyOf(m_sheets[i].sheet)] = m_results[i];
    }
    m_sheets = sheets;
    m_results.clear();
    m_results.reserve(sheets.size());
    for (const PlannedSheet& sheet : sheets) {
        m_results << known.value(keyOf(sheet.sheet));
    }
}

void SheetChecks::setPrinter(const QString& name)
{
    if (name == m_printer) {
        return;
    }
    m_printer = name;
    m_results.fill(Result());
}

bool SheetChecks::run()
{
    m_isRunning = true;
    m_stops = false;
    m_problem.clear();
    m_sinceEvents.start();
    const bool isWhole = runAll();
    m_isRunning = false;
    return isWhole;
}

bool SheetChecks::runAll()
{
    BatchCheck check(printSheets(m_sheets), *this);
    if (!m_printer.isEmpty() && !check.pageCheck().setPrinter(m_printer)) {
        m_problem = "Принтера «" + m_printer + "» больше нет. Выберите другой на шаге «Печать».";
        return false;
    }
    SheetSignature signatures;
    for (int sheet = 0; sheet < m_sheets.size(); ++sheet) {
        if (!goesOn(sheet, m_sheets.size())) {
            return false;
        }
        Result& result = m_results[sheet];
        const QByteArray signature = signatures.of(m_sheets[sheet].sheet);
        const bool isKnown = result.isChecked && result.signature == signature;
        if (!isKnown) {
            result = Result();
            result.signature = signature;
            check.checkSheet(sheet);
        }
        if (!m_problem.isEmpty()) {
            return false;
        }
        emit sheetSettled(sheet);
    }
    emit progressed(m_sheets.size(), m_sheets.size());
    return true;
}

int SheetChecks::checkedCount() const
{
    return static_cast<int>(std::count_if(m_results.cbegin(), m_results.cend(),
                                          [](const Result& result) { return result.isChecked; }));
}

bool SheetChecks::goesOn(int sheet, int count)
{
    constexpr int often = 15; // milliseconds
    if (m_sinceEvents.elapsed() >= often) {
        emit progressed(sheet, count);
        QCoreApplication::processEvents();
        m_sinceEvents.start();
    }
    return !m_stops;
}

void SheetChecks::sheetChecked(int sheet, PageCheck& check)
{
    Result& result = m_results[sheet];
    result.isChecked = true;
    result.findings = check.findings();
    std::stable_partition(
        result.findings.begin(), result.findings.end(),
        [](const Finding& finding) { return finding.severity == Finding::Severity::Error; });
}

void SheetChecks::sheetNotChecked(int sheet, const SheetOutcome& outcome)
{
    Result& result = m_results[sheet];
    result.reason = outcome.reason;
    result.isChecked = true;
    if (outcome.reason == SheetOutcome::Reason::Unreadable &&
        !BatchDatabase::isReadable(&m_problem)) {
        result = Result(); // nothing is wrong with the sheet itself
    }
}
