#include "tools/PrintJob.h"

#include <QDir>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QTextStream>

#include <algorithm>

#include "printing/BlankChoice.h"
#include "printing/PdfFile.h"
#include "render/page/PagePrinter.h"
#include "tools/UserLanguage.h"

namespace {

/// Whether a finding spoils this very sheet. A warning about the blank, such as a font that another
/// one stands in for, is there for all its documents, and known.
bool holdsBack(const Finding& finding)
{
    return !finding.isOfBlank() || finding.severity == Finding::Severity::Error;
}

} // namespace

PrintJob::PrintJob(const PrintOptions& options, QTextStream& out, QTextStream& err)
    : DocumentJob(options, out, err)
    , m_names(options.namePattern())
    , m_pages(std::make_shared<PageSet>())
    , m_check(m_pages)
{
}

PrintJob::~PrintJob() = default;

JobResult PrintJob::run()
{
    if (!selectDocuments() || !prepareTarget() || !checkBeforehand()) {
        return JobResult::NotDone;
    }
    const int printed = printAll();
    if (printed == 0) {
        return JobResult::NotDone;
    }
    if (m_commonFile && (m_isStopped || !finishFile(*m_commonFile))) {
        return JobResult::NotDone;
    }
    const bool isAll =
        printed == m_selection.documents().size() && m_selection.unknownIds().isEmpty();
    return isAll ? JobResult::Done : JobResult::SomeFailed;
}

bool PrintJob::prepareTarget()
{
    switch (m_options.target()) {
    case PrintOptions::Target::OneFile:
        m_commonFile = std::make_unique<PdfFile>(m_options.output());
        if (!m_commonFile->open()) {
            reportUnwritable(m_options.output());
            return false;
        }
        return true;
    case PrintOptions::Target::FilePerDocument:
        return makeFolder();
    case PrintOptions::Target::Printer:
        return hasPrinter();
    }
    return false;
}

bool PrintJob::isChecked() const
{
    return m_selection.documents().size() >= 2 || m_options.isStrict();
}

bool PrintJob::checkBeforehand()
{
    if (!isChecked()) {
        return true;
    }
    if (!prepare(m_check)) {
        return false;
    }
    if (m_commonFile) {
        return true; // each page just before it is printed: the file gets its name only at the end
    }
    if (!forEachDocument([this](const PrintDocument& document) { check(document); })) {
        reportInterruption(0);
        return false;
    }
    tellFindings();
    return true;
}

void PrintJob::check(const PrintDocument& document)
{
    const BlankChoice blank = chooseBlank(document.id, m_options.blank());
    if (blank.id.isNull() || !m_check.check(document.id, blank.id)) {
        return; // the printing will say why
    }
    const QVector<Finding>& findings = m_check.findings();
    m_summary.add(findings);
    if (m_options.isStrict() && std::any_of(findings.cbegin(), findings.cend(), holdsBack)) {
        m_withFindings << document.id.toString();
    }
}

void PrintJob::tellFindings()
{
    m_out << m_summary.words();
    if (m_summary.findings() > 0) {
        m_out << " (" << m_summary.kindWords() << ')';
    }
    m_out << '\n';
    m_out.flush();
}

int PrintJob::printAll()
{
    const bool isCheckedNow = m_commonFile && isChecked();
    int printed = 0;
    const bool isWhole = forEachDocument([&](const PrintDocument& document) {
        if (isCheckedNow) {
            check(document);
        }
        printed += !m_isStopped && print(document) ? 1 : 0;
    });
    if (isWhole && isCheckedNow) {
        tellFindings();
    }
    if (!isWhole && !m_isStopped) {
        reportInterruption(m_commonFile ? 0 : printed);
        m_isStopped = true;
    }
    return printed;
}

bool PrintJob::print(const PrintDocument& document)
{
    if (!buildPage(document)) {
        return false;
    }
    switch (m_options.target()) {
    case PrintOptions::Target::OneFile:
        return addCopies(*m_commonFile);
    case PrintOptions::Target::FilePerDocument:
        return printToFile(document);
    case PrintOptions::Target::Printer:
        return printToPrinter(document);
    }
    return false;
}

bool PrintJob::buildPage(const PrintDocument& document)
{
    if (m_withFindings.contains(document.id.toString())) {
        report(inUserLanguage("есть замечания, не печатается документ ",
                              "there are findings, not printed is document ") +
               document.id.toString());
        return false;
    }
    const QVariant blank = blankOf(document);
    if (blank.isNull()) {
        return false;
    }
    m_page = m_pages->build(document.id, blank);
    if (!m_page) {
        reportUnreadable(document);
    }
    return m_page != nullptr;
}

bool PrintJob::printPage(QPrinter& printer, QPainter& painter)
{
    m_page->restore(); // printing a copy has moved it
    PagePrinter page(*m_page);
    page.setBackgroundPrinted(m_options.withBackground());
    return page.print(printer, painter);
}

bool PrintJob::addCopies(PdfFile& file)
{
    for (int copy = 0; copy < m_options.copies(); ++copy) {
        if (!file.addPage([this](QPrinter& printer, QPainter& painter) {
                return printPage(printer, painter);
            }))
        {
            reportUnwritable(file.path());
            m_isStopped = m_commonFile != nullptr;
            return false;
        }
    }
    return true;
}

bool PrintJob::printToFile(const PrintDocument& document)
{
    PdfFile file(QDir(m_options.output()).filePath(m_names.nameFor(document)));
    if (!file.open()) {
        reportUnwritable(file.path());
        return false;
    }
    return addCopies(file) && finishFile(file);
}

bool PrintJob::printToPrinter(const PrintDocument& document)
{
    QPrinter printer(QPrinterInfo::printerInfo(m_options.printer()), QPrinter::HighResolution);
    printer.setDocName("Zelvora " + document.id.toString());
    printer.setCopyCount(m_options.copies());
    QPainter painter;
    if (printPage(printer, painter)) {
        return true;
    }
    report(inUserLanguage("принтер не принял документ ", "the printer refused document ") +
           document.id.toString());
    return false;
}

bool PrintJob::finishFile(PdfFile& file)
{
    if (!file.commit()) {
        reportUnwritable(file.path());
        return false;
    }
    tellFile(file.path());
    return true;
}

void PrintJob::reportInterruption(int printed)
{
    report(inUserLanguage("прервано; напечатано документов: ", "interrupted; documents printed: ") +
           QString::number(printed));
}
