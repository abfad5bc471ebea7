#pragma once

#include <QString>
#include <QVariant>

#include <functional>

#include "printing/DocumentSelection.h"
#include "tools/PrintToolJob.h"

class PageCheck;

/// What every job over chosen documents begins with: it chooses them and their blanks, and reports
/// on `err` what can't be done and, if that is a terminal, how far it has come.
class DocumentJob : public PrintToolJob
{
public:
    using PrintToolJob::PrintToolJob;

protected:
    /// Reads the documents that the options choose; false if there are none.
    bool selectDocuments();

    /// Works on one document after the other and shows the progress; false if the user interrupted
    /// it.
    bool forEachDocument(const std::function<void(const PrintDocument&)>& work);

    /// The blank of a document; null, after a report, if there is none.
    QVariant blankOf(const PrintDocument& document);

    /// Makes the folder for a file a document if there is none; false, after a report, if it can't.
    bool makeFolder();

    void reportUnreadable(const PrintDocument& document);

    /// Lets the check mind what the options say of background and printer; false, after a report,
    /// if there is no such printer.
    bool prepare(PageCheck& check);

    /// Checks the document on the blank that the options choose; false, after a report, if it can't
    /// be done.
    bool checkPage(const PrintDocument& document, PageCheck& check);

    DocumentSelection m_selection;
};
