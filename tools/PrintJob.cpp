#include "tools/PrintJob.h"

#include <QDir>
#include <QFile>
#include <QPrinterInfo>
#include <QTextStream>

#include "tools/BlankChoice.h"
#include "tools/UserLanguage.h"

namespace {

std::unique_ptr<QPrinter> pdfPrinter(const QString& path)
{
    auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(path);
    return printer;
}

/// The printer's engine does not tell of a full disk: a file that lacks its end is no document.
bool isWholePdf(const QString& path)
{
    QFile file(path);
    constexpr int tail = 16;
    return file.open(QIODevice::ReadOnly) && file.size() > tail && file.seek(file.size() - tail) &&
           file.readAll().contains("%%EOF");
}

} // namespace

PrintJob::PrintJob(const PrintOptions& options, QTextStream& out, QTextStream& err)
    : m_options(options)
    , m_out(out)
    , m_err(err)
    , m_names(options.namePattern())
    , m_preview(QVariant())
{
    m_preview.setBackgroundPrinted(options.withBackground());
}

JobResult PrintJob::run()
{
    if (!selectDocuments() || !prepareTarget()) {
        return JobResult::NotDone;
    }
    int printed = 0;
    for (const PrintDocument& document : m_selection.documents()) {
        printed += print(document) ? 1 : 0;
    }
    const bool isCommonFile = m_options.target() == PrintOptions::Target::OneFile;
    if (isCommonFile && printed > 0) {
        m_commonPainter.end();
        if (!finishFile(m_options.output())) {
            return JobResult::NotDone;
        }
    }
    if (printed == 0) {
        return JobResult::NotDone;
    }
    const bool isAll =
        printed == m_selection.documents().size() && m_selection.unknownIds().isEmpty();
    return isAll ? JobResult::Done : JobResult::SomeFailed;
}

bool PrintJob::selectDocuments()
{
    if (!m_selection.load(m_options.selection())) {
        report(m_selection.error());
        return false;
    }
    for (const qint64 id : m_selection.unknownIds()) {
        report(inUserLanguage("нет документа ", "there is no document ") + QString::number(id));
    }
    if (m_selection.documents().isEmpty() && m_selection.unknownIds().isEmpty()) {
        report(inUserLanguage("таких документов нет", "there are no such documents"));
    }
    return !m_selection.documents().isEmpty();
}

bool PrintJob::prepareTarget()
{
    switch (m_options.target()) {
    case PrintOptions::Target::OneFile:
        m_commonPrinter = pdfPrinter(m_options.output());
        return true;
    case PrintOptions::Target::FilePerDocument:
        if (!QDir().mkpath(m_options.output())) {
            report(inUserLanguage("не удалось создать каталог ", "can't make the folder ") +
                   m_options.output());
            return false;
        }
        return true;
    case PrintOptions::Target::Printer:
        if (!QPrinterInfo::availablePrinterNames().contains(m_options.printer())) {
            report(inUserLanguage("нет принтера ", "there is no printer ") + m_options.printer());
            return false;
        }
        return true;
    }
    return false;
}

bool PrintJob::print(const PrintDocument& document)
{
    if (!buildPage(document)) {
        return false;
    }
    switch (m_options.target()) {
    case PrintOptions::Target::OneFile:
        if (m_preview.printPage(*m_commonPrinter, m_commonPainter)) {
            return true;
        }
        report(inUserLanguage("не удалось записать файл ", "can't write the file ") +
               m_options.output());
        return false;
    case PrintOptions::Target::FilePerDocument:
        return printToFile(document);
    case PrintOptions::Target::Printer:
        return printToPrinter(document);
    }
    return false;
}

bool PrintJob::buildPage(const PrintDocument& document)
{
    const QString name = inUserLanguage("документ ", "document ") + document.id.toString() + ": ";
    const BlankChoice blank = chooseBlank(m_preview, document.id, m_options.blank());
    if (blank.id.isNull()) {
        report(name + blank.problem);
        return false;
    }
    if (!m_preview.buildScene(m_preview.pageScene(), document.id, blank.id)) {
        report(name + inUserLanguage("не удалось прочитать его или бланк",
                                     "it or its blank can't be read"));
        return false;
    }
    return true;
}

bool PrintJob::printToFile(const PrintDocument& document)
{
    const QString path = QDir(m_options.output()).filePath(m_names.nameFor(document));
    const std::unique_ptr<QPrinter> printer = pdfPrinter(path);
    m_preview.printTo(*printer);
    return finishFile(path);
}

bool PrintJob::printToPrinter(const PrintDocument& document)
{
    QPrinter printer(QPrinterInfo::printerInfo(m_options.printer()), QPrinter::HighResolution);
    printer.setDocName("Zelvora " + document.id.toString());
    QPainter painter;
    if (m_preview.printPage(printer, painter)) {
        return true;
    }
    report(inUserLanguage("принтер не принял документ ", "the printer refused document ") +
           document.id.toString());
    return false;
}

bool PrintJob::finishFile(const QString& path)
{
    if (!isWholePdf(path)) {
        report(inUserLanguage("не удалось записать файл ", "can't write the file ") + path);
        return false;
    }
    m_out << path << '\n';
    return true;
}

void PrintJob::report(const QString& message)
{
    m_err << "zelvora-print: " << message << '\n';
}
