#pragma once

#include <QSet>
#include <QString>

#include <memory>

#include "preflight/PageCheck.h"
#include "printing/FileNamePattern.h"
#include "render/page/PageSet.h"
#include "tools/CheckSummary.h"
#include "tools/DocumentJob.h"
#include "tools/JobResult.h"

class PdfFile;
class QPainter;
class QPrinter;
class QTextStream;

/// Prints the chosen documents on the very pages that the application's preview shows and prints.
/// The database must be open. A document that cannot be printed is reported and does not stop the
/// rest; a file that cannot be finished leaves an older one of its name as it was. Before a batch
/// of several documents, or before the file with all of them is finished, it tells on `out` how
/// many findings the check of their pages has.
class PrintJob : public DocumentJob
{
public:
    /// Finished files are named on `out`, failures on `err`.
    PrintJob(const PrintOptions& options, QTextStream& out, QTextStream& err);
    ~PrintJob();

    JobResult run();

private:
    bool prepareTarget();
    bool isChecked() const;
    bool checkBeforehand();
    void check(const PrintDocument& document);
    void tellFindings();
    int printAll();
    bool print(const PrintDocument& document);
    bool buildPage(const PrintDocument& document);
    bool printPage(QPrinter& printer, QPainter& painter);
    bool addCopies(PdfFile& file);
    bool printToFile(const PrintDocument& document);
    bool printToPrinter(const PrintDocument& document);
    bool finishFile(PdfFile& file);
    void reportInterruption(int printed);

    FileNamePattern m_names;
    std::shared_ptr<PageSet> m_pages;
    PageCheck m_check;
    CheckSummary m_summary;
    PageBuilder* m_page = nullptr;         // to be printed
    QSet<QString> m_withFindings;          // IDs of documents that are not to be printed
    std::unique_ptr<PdfFile> m_commonFile; // with all documents; null for other targets
    bool m_isStopped = false;              // nothing more can or should be printed
};
