#pragma once

#include <QPainter>
#include <QPrinter>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>

#include "render/PrinPreviewDialog.h"
#include "tools/PrintOptions.h"

class QTextStream;

/// Prints the chosen documents through the page and the printing of the application's own preview.
/// The database must be open. A document that cannot be printed is reported and does not stop the
/// rest.
class PrintJob
{
public:
    enum class Result
    {
        Done,
        SomeFailed, ///< at least one document was not printed
        NotDone     ///< nothing could be done at all
    };

    /// Finished files are named on `out`, failures on `err`.
    PrintJob(const PrintOptions& options, QTextStream& out, QTextStream& err);

    Result run();

private:
    struct Document
    {
        QVariant id;
        QString surname;
        QString name;
    };

    bool selectDocuments();
    bool prepareTarget();
    bool print(const Document& document);
    bool buildPage(const Document& document);
    QVariant chooseBlank(const QVariant& docId);
    bool printToFile(const Document& document);
    bool printToPrinter(const Document& document);
    bool finishFile(const QString& path);
    void report(const QString& message);

    const PrintOptions& m_options;
    QTextStream& m_out;
    QTextStream& m_err;
    QVector<Document> m_documents;
    PrinPreviewDialog m_preview;
    std::unique_ptr<QPrinter> m_commonPrinter; // of the one file for all
    QPainter m_commonPainter;
};
