#include "printing/BatchOutput.h"

#include <QDir>
#include <QFileInfo>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>

#include "printing/PdfFile.h"
#include "printing/SheetPage.h"

namespace {

/// Asks for this one alone: a list of all printers may take long to come.
bool isThere(const QString& printer)
{
    return !QPrinterInfo::printerInfo(printer).isNull();
}

bool isThere(const QPrinter& printer)
{
    return printer.outputFormat() == QPrinter::PdfFormat || isThere(printer.printerName());
}

bool isPrinted(const SheetOutcome& outcome)
{
    return outcome.state == SheetOutcome::State::Printed;
}

} // namespace

BatchOutput::BatchOutput(const PrintTarget& target)
    : m_target(target)
    , m_names(target.namePattern)
{
    for (const QString& name : target.namesInUse) {
        m_names.reserve(name);
    }
}

BatchOutput::~BatchOutput() = default;

bool BatchOutput::open()
{
    switch (m_target.kind) {
    case PrintTarget::Kind::OneFile:
        removeLeftovers(QFileInfo(m_target.place).path());
        m_commonFile = std::make_unique<PdfFile>(m_target.place);
        return m_commonFile->open();
    case PrintTarget::Kind::FilePerDocument:
        removeLeftovers(m_target.place);
        return QDir().mkpath(m_target.place) && canWriteInto(m_target.place);
    case PrintTarget::Kind::Printer:
        break;
    }
    if (m_target.printer) {
        m_plainLayout = m_target.printer->pageLayout();
        return m_target.printer->isValid() && isThere(*m_target.printer);
    }
    return QPrinterInfo::availablePrinterNames().contains(m_target.place);
}

SheetOutcome BatchOutput::print(const PrintSheet& sheet, SheetPage& page)
{
    switch (m_target.kind) {
    case PrintTarget::Kind::OneFile:
        return addCopies(*m_commonFile, sheet, page);
    case PrintTarget::Kind::FilePerDocument:
        return printToFile(sheet, page);
    case PrintTarget::Kind::Printer:
        break;
    }
    return printToPrinter(sheet, page);
}

bool BatchOutput::finish()
{
    const bool isWhole = !m_commonFile || m_commonFile->commit();
    m_commonFile.reset();
    return isWhole;
}

void BatchOutput::discard()
{
    m_commonFile.reset();
}

SheetOutcome BatchOutput::addCopies(PdfFile& file, const PrintSheet& sheet, SheetPage& page)
{
    for (int copy = 0; copy < sheet.copies; ++copy) {
        const bool isAdded = file.addPage(
            [&page](QPrinter& printer, QPainter& painter) { return page.print(printer, painter); });
        if (!isAdded) {
            return SheetOutcome::failed(SheetOutcome::Reason::FileRefused, file.path());
        }
    }
    return SheetOutcome::printed(file.path());
}

SheetOutcome BatchOutput::printToFile(const PrintSheet& sheet, SheetPage& page)
{
    const std::optional<QString> name =
        sheet.fileName.isEmpty() ? m_names.nameFor(sheet.document) : sheet.fileName;
    if (!name) {
        return SheetOutcome::failed(SheetOutcome::Reason::Unreadable);
    }
    PdfFile file(QDir(m_target.place).filePath(*name), TargetFile::Links::Replace);
    if (!file.open()) {
        return SheetOutcome::failed(SheetOutcome::Reason::FileRefused, file.path());
    }
    SheetOutcome outcome = addCopies(file, sheet, page);
    if (isPrinted(outcome) && !file.commit()) {
        return SheetOutcome::failed(SheetOutcome::Reason::FileRefused, file.path());
    }
    return outcome;
}

SheetOutcome BatchOutput::printToPrinter(const PrintSheet& sheet, SheetPage& page)
{
    std::unique_ptr<QPrinter> named;
    QPrinter* printer = m_target.printer;
    // The toolkit does not tell of a queue that takes no job: it must be there before and after.
    if (printer ? !isThere(*printer) : !isThere(m_target.place)) {
        return SheetOutcome::failed(SheetOutcome::Reason::PrinterGone);
    }
    if (printer) {
        // A blank without a paper of its own gets the printer's, not that of the sheet before.
        printer->setPageLayout(m_plainLayout);
    } else {
        named = std::make_unique<QPrinter>(QPrinterInfo::printerInfo(m_target.place),
                                           QPrinter::HighResolution);
        printer = named.get();
    }
    printer->setDocName("Zelvora " + sheet.document.id.toString());
    printer->setCopyCount(sheet.copies);
    QPainter painter;
    if (!page.print(*printer, painter)) {
        return SheetOutcome::failed(SheetOutcome::Reason::PrinterRefused);
    }
    painter.end(); // sends the job
    return isThere(*printer) ? SheetOutcome::printed(QString())
                             : SheetOutcome::failed(SheetOutcome::Reason::PrinterGone);
}
