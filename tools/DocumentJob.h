#pragma once

#include <QString>
#include <QVariant>

#include <functional>

#include "tools/DocumentSelection.h"
#include "tools/PrintOptions.h"
#include "tools/ProgressLine.h"

class PageCheck;
class PrinPreviewDialog;
class QTextStream;

/// What every job over chosen documents begins with: it chooses them and their blanks, and reports
/// on `err` what can't be done and, if that is a terminal, how far it has come.
class DocumentJob
{
public:
    DocumentJob(const PrintOptions& options, QTextStream& out, QTextStream& err);

protected:
    /// Reads the documents that the options choose; false if there are none.
    bool selectDocuments();

    /// Works on one document after the other and shows the progress; false if the user interrupted
    /// it.
    bool forEachDocument(const std::function<void(const PrintDocument&)>& work);

    /// The blank of a document; null, after a report, if there is none.
    QVariant blankOf(const PrintDocument& document, PrinPreviewDialog& preview);

    /// Makes the folder for a file a document if there is none; false, after a report, if it can't.
    bool makeFolder();

    void reportUnreadable(const PrintDocument& document);
    void reportUnwritable(const QString& path);
    void reportNoPrinter();

    /// Lets the check mind what the options say of background and printer; false, after a report,
    /// if there is no such printer.
    bool prepare(PageCheck& check);

    /// Checks the document on the blank that the options choose; false, after a report, if it can't
    /// be done.
    bool checkPage(const PrintDocument& document, PageCheck& check);

    void report(const QString& message);

    const PrintOptions& m_options;
    QTextStream& m_out;
    QTextStream& m_err;
    ProgressLine m_progress;
    DocumentSelection m_selection;
};
