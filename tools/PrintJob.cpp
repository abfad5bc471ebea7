#include "tools/PrintJob.h"

#include <QDir>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QTextStream>

#include <algorithm>

#include "preflight/PageCheck.h"
#include "printing/BlankChoice.h"
#include "printing/PdfFile.h"
#include "tools/CheckSummary.h"
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
    , m_names(options.namePattern())
    , m_preview(QVariant())
{
    m_preview.setBackgroundPrinted(options.withBackground());
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

bool PrintJob::checkBeforehand()
{
    if (m_selection.documents().size() < 2 && !m_options.isStrict()) {
        return true;
    }
    PageCheck check;
    CheckSummary summary;
    if (!prepare(check)) {
        return false;
    }
    const bool isWhole = forEachDocument([&](const PrintDocument& document) {
        const BlankChoice blank = chooseBlank(check.preview(), document.id, m_options.blank());
        if (blank.id.isNull() || !check.check(document.id, blank.id)) {
            return; // the printing will say why
        }
        const QVector<Finding> findings = check.findings();
        summary.add(findings);
        if (m_options.isStrict() && std::any_of(findings.cbegin(), findings.cend(), holdsBack)) {
            m_withFindings << document.id.toString();
        }
    });
    if (!isWhole) {
        reportInterruption(0);
        return false;
    }
    m_out << summary.words();
    if (summary.findings() > 0) {
        m_out << " (" << summary.kindWords() << ')';
    }
    m_out << '\n';
    m_out.flush();
    return true;
}

int PrintJob::printAll()
{
    int printed = 0;
    const bool isWhole = forEachDocument(
        [&](const PrintDocument& document) { printed += !m_isStopped && print(document) ? 1 : 0; });
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
        return addCopies(*m_commonFile, document);
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
    const QVariant blank = blankOf(document, m_preview);
    if (blank.isNull()) {
        return false;
    }
    if (!m_preview.buildScene(m_preview.pageScene(), document.id, blank)) {
        reportUnreadable(document);
        return false;
    }
    return true;
}

bool PrintJob::addCopies(PdfFile& file, const PrintDocument& document)
{
    for (int copy = 0; copy < m_options.copies(); ++copy) {
        // Printing moves the items of a page, so that each copy needs a new one.
        if (copy > 0 && !buildPage(document)) {
            return false;
        }
        if (!file.addPage(m_preview)) {
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
    return addCopies(file, document) && finishFile(file);
}

bool PrintJob::printToPrinter(const PrintDocument& document)
{
    QPrinter printer(QPrinterInfo::printerInfo(m_options.printer()), QPrinter::HighResolution);
    printer.setDocName("Zelvora " + document.id.toString());
    printer.setCopyCount(m_options.copies());
    QPainter painter;
    if (m_preview.printPage(printer, painter)) {
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
