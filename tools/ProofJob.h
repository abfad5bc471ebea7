#pragma once

#include <QCoreApplication>

#include <optional>

#include "printing/FileNamePattern.h"
#include "tools/DocumentJob.h"
#include "tools/JobResult.h"

/// Writes a picture of each chosen document's sheet, with what the check finds on it marked: one
/// PNG file, or a file a document in a folder. Finished files are named on `out`. The database must
/// be open.
class ProofJob : public DocumentJob
{
    Q_DECLARE_TR_FUNCTIONS(ProofJob)

public:
    ProofJob(const PrintOptions& options, QTextStream& out, QTextStream& err);

    /// Done: every document has its picture and nothing was found.
    JobResult run();

private:
    bool prepareTarget();
    bool write(int sheet, PageCheck& check);

    /// Where the picture of a sheet goes; nothing if its document can't be read for its name.
    std::optional<QString> pathFor(int sheet);

    void sheetChecked(int sheet, PageCheck& check) override;
    void sheetNotChecked(int sheet, const SheetOutcome& outcome) override;

    FileNamePattern m_names;
    int m_written = 0;
    bool m_isClean = true; // every document has its picture, and nothing was found
};
