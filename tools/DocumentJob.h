#pragma once

#include <QCoreApplication>
#include <QVector>

#include "printing/BatchObserver.h"
#include "printing/DocumentSelection.h"
#include "printing/PrintSheet.h"
#include "printing/SheetOutcome.h"
#include "tools/PrintToolJob.h"

class PageCheck;

/// What every job over chosen documents begins with: it chooses them and their blanks, and reports
/// on `err` what can't be done and, if that is a terminal, how far it has come.
class DocumentJob : public PrintToolJob, public BatchObserver
{
    Q_DECLARE_TR_FUNCTIONS(DocumentJob)

public:
    using PrintToolJob::PrintToolJob;

protected:
    /// Reads the documents that the options choose, and makes a sheet of each; false if there are
    /// none.
    bool selectDocuments();

    /// Makes the folder for a file a document if there is none; false, after a report, if it can't
    /// or the folder takes no files.
    bool makeFolder();
    void reportNoFolder();

    /// Lets the check mind what the options say of the printer; false, after a report, if there is
    /// no such printer.
    bool prepare(PageCheck& check);

    /// Shows the progress; false if the user interrupted the program.
    bool goesOn(int sheet, int count) override;

    /// Reports why not.
    void sheetNotChecked(int sheet, const SheetOutcome& outcome) override;

    void report(int sheet, const SheetOutcome& outcome);
    using PrintToolJob::report;

    /// Whether all that the options name are documents.
    bool allKnown() const { return m_selection.unknownIds().isEmpty(); }

    QVector<PrintSheet> m_sheets; // one a document, in their order

private:
    DocumentSelection m_selection;
};
