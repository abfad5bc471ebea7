#include "tools/PrintToolJob.h"

#include <QPrinterInfo>
#include <QTextStream>

#include "app/TerminalText.h"
#include "tools/Interruption.h"
#include "tools/UserLanguage.h"

PrintToolJob::PrintToolJob(const PrintOptions& options, QTextStream& out, QTextStream& err)
    : m_options(options)
    , m_out(out)
    , m_err(err)
    , m_progress(err, !options.isQuiet() && ProgressLine::hasTerminal())
{
}

bool PrintToolJob::hasPrinter()
{
    if (QPrinterInfo::availablePrinterNames().contains(m_options.printer())) {
        return true;
    }
    reportNoPrinter();
    return false;
}

void PrintToolJob::beginWork()
{
    // A sheet on its way to a printer may be a numbered form.
    constexpr int onPaper = 30;
    constexpr int inFile = 5;
    const bool isPrinter = m_options.target() == PrintOptions::Target::Printer;
    watchForInterruption(std::chrono::seconds(isPrinter ? onPaper : inFile));
}

void PrintToolJob::tellFile(const QString& path)
{
    m_progress.clear();
    m_out << onOneLine(path) << '\n';
    flushOutput(m_out);
}

void PrintToolJob::report(const QString& message)
{
    m_progress.clear();
    m_err << "zelvora-print: " << onOneLine(message) << '\n';
    m_err.flush();
}

void PrintToolJob::reportUnwritable(const QString& path)
{
    report(tr("can't write the file %1").arg(path));
}

void PrintToolJob::reportNoPrinter()
{
    const QStringList printers = QPrinterInfo::availablePrinterNames();
    report(printers.isEmpty() ? tr("there is no printer %1").arg(m_options.printer())
                              : tr("there is no printer %1, there are: %2")
                                    .arg(m_options.printer(), printers.join(", ")));
}
