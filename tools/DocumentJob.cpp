#include "tools/DocumentJob.h"

#include <QDir>
#include <QFileInfo>

#include "app/TargetFile.h"
#include "preflight/PageCheck.h"
#include "tools/Interruption.h"
#include "tools/PrintWords.h"

bool DocumentJob::selectDocuments()
{
    if (!m_selection.load(m_options.selection())) {
        report(inWords(m_selection.problem()));
        return false;
    }
    for (const qint64 id : m_selection.unknownIds()) {
        report(tr("there is no document %1").arg(QString::number(id)));
    }
    if (m_selection.documents().isEmpty() && allKnown()) {
        report(tr("there are no such documents"));
    }
    m_sheets = sheetsOf(m_selection.documents(), m_options.blank());
    for (PrintSheet& sheet : m_sheets) {
        sheet.copies = m_options.copies();
        sheet.withBackground = m_options.withBackground();
    }
    beginWork();
    return !m_sheets.isEmpty();
}

bool DocumentJob::makeFolder()
{
    if (QDir().mkpath(m_options.output()) && canWriteInto(m_options.output())) {
        return true;
    }
    reportNoFolder();
    return false;
}

void DocumentJob::reportNoFolder()
{
    const bool isThere = QFileInfo(m_options.output()).isDir();
    report((isThere ? tr("the folder takes no files: %1") : tr("can't make the folder %1"))
               .arg(m_options.output()));
}

bool DocumentJob::prepare(PageCheck& check)
{
    if (m_options.margins()) {
        check.setMargins(*m_options.margins());
        return true;
    }
    if (!m_options.printer().isEmpty() && !check.setPrinter(m_options.printer())) {
        reportNoPrinter();
        return false;
    }
    return true;
}

bool DocumentJob::goesOn(int sheet, int count)
{
    if (isInterrupted()) {
        return false;
    }
    m_progress.show(sheet, count);
    return true;
}

void DocumentJob::sheetNotChecked(int sheet, const SheetOutcome& outcome)
{
    report(sheet, outcome);
}

void DocumentJob::report(int sheet, const SheetOutcome& outcome)
{
    report(inWords(m_sheets[sheet], outcome, m_options.blank()));
}
