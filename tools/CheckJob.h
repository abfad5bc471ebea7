#pragma once

#include <QCoreApplication>

#include "preflight/CheckSummary.h"
#include "preflight/FindingWords.h"
#include "tools/DocumentJob.h"
#include "tools/JobResult.h"

/// Looks at the pages of the chosen documents before they are printed and writes what it finds on
/// `out` as it goes, in words or as one JSON object; what can't be checked is reported on `err`.
/// The database must be open.
class CheckJob : public DocumentJob
{
    Q_DECLARE_TR_FUNCTIONS(CheckJob)

public:
    using DocumentJob::DocumentJob;

    /// Done: every document was checked and nothing was found.
    JobResult run();

private:
    void writeHead();
    void write(const Finding& finding);
    void writeTail();

    void sheetChecked(int sheet, PageCheck& check) override;

    FindingWords m_words;
    CheckSummary m_summary;
    bool m_isFirst = true; // no finding was written yet
};
