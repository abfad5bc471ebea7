#pragma once

#include <QPainter>
#include <QPrinter>
#include <QString>

#include <memory>

#include "render/PrinPreviewDialog.h"
#include "tools/DocumentSelection.h"
#include "tools/FileNamePattern.h"
#include "tools/JobResult.h"
#include "tools/PrintOptions.h"

class QTextStream;

/// Prints the chosen documents through the page and the printing of the application's own preview.
/// The database must be open. A document that cannot be printed is reported and does not stop the
/// rest.
class PrintJob
{
public:
    /// Finished files are named on `out`, failures on `err`.
    PrintJob(const PrintOptions& options, QTextStream& out, QTextStream& err);

    JobResult run();

private:
    bool selectDocuments();
    bool prepareTarget();
    bool print(const PrintDocument& document);
    bool buildPage(const PrintDocument& document);
    bool printToFile(const PrintDocument& document);
    bool printToPrinter(const PrintDocument& document);
    bool finishFile(const QString& path);
    void report(const QString& message);

    const PrintOptions& m_options;
    QTextStream& m_out;
    QTextStream& m_err;
    DocumentSelection m_selection;
    FileNamePattern m_names;
    PrinPreviewDialog m_preview;
    std::unique_ptr<QPrinter> m_commonPrinter; // of the one file for all
    QPainter m_commonPainter;
};
