#pragma once

#include <QCoreApplication>

#include <memory>

#include "preflight/CheckSummary.h"
#include "tools/DocumentJob.h"
#include "tools/JobResult.h"

class BatchCheck;
class PrintBatch;

/// Prints the chosen documents. The database must be open. A document that cannot be printed is
/// reported and does not stop the rest; a file that cannot be finished leaves an older one of its
/// name as it was. Of a batch of several documents it tells on `out` how many findings the check of
/// their pages has, before a printer gets the first sheet or a common file its name. Finished files
/// are named on `out`, failures on `err`.
class PrintJob : public DocumentJob
{
    Q_DECLARE_TR_FUNCTIONS(PrintJob)

public:
    PrintJob(const PrintOptions& options, QTextStream& out, QTextStream& err);
    ~PrintJob() override;

    JobResult run();

private:
    bool checkBeforehand(BatchCheck& check);
    void tellFindings();

    JobResult print();
    void reportNoTarget();
    void reportInterruption(int printed);

    bool goesOn(int sheet, int count) override;
    void sheetChecked(int sheet, PageCheck& check) override;
    void sheetNotChecked(int sheet, const SheetOutcome& outcome) override;
    void sheetDone(int sheet, const SheetOutcome& outcome) override;
    void fileWritten(const QString& path) override;

    CheckSummary m_summary;
    std::unique_ptr<PrintBatch> m_batch;
    std::unique_ptr<BatchCheck>
        m_checkOfNext; // looks at each sheet before its turn; null: none does
};
