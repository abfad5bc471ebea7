#include "tools/PrintJob.h"

#include <QDir>
#include <QFile>
#include <QPrinterInfo>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QTextStream>

#include "tools/UserLanguage.h"

namespace {

/// Part of a file name: without what some file system does not take.
QString cleaned(QString text)
{
    static const QRegularExpression forbidden("[\\x00-\\x1F\\\\/:*?\"<>|]");
    return text.replace(forbidden, "_").trimmed();
}

std::unique_ptr<QPrinter> pdfPrinter(const QString& path)
{
    auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(path);
    return printer;
}

/// The printer's engine does not tell of a full disk: a file that lacks its end is no document.
bool isWholePdf(const QString& path)
{
    QFile file(path);
    constexpr int tail = 16;
    return file.open(QIODevice::ReadOnly) && file.size() > tail && file.seek(file.size() - tail) &&
           file.readAll().contains("%%EOF");
}

} // namespace

PrintJob::PrintJob(const PrintOptions& options, QTextStream& out, QTextStream& err)
    : m_options(options)
    , m_out(out)
    , m_err(err)
    , m_preview(QVariant())
{
    m_preview.setBackgroundPrinted(options.withBackground());
}

PrintJob::Result PrintJob::run()
{
    if (!selectDocuments() || !prepareTarget()) {
        return Result::NotDone;
    }
    int printed = 0;
    for (const Document& document : qAsConst(m_documents)) {
        printed += print(document) ? 1 : 0;
    }
    const bool isCommonFile = m_options.target() == PrintOptions::Target::OneFile;
    if (isCommonFile && printed > 0) {
        m_commonPainter.end();
        if (!finishFile(m_options.output())) {
            return Result::NotDone;
        }
    }
    if (printed == 0) {
        return Result::NotDone;
    }
    return printed == m_documents.size() ? Result::Done : Result::SomeFailed;
}

bool PrintJob::selectDocuments()
{
    const PrintOptions::Selection& selection = m_options.selection();
    QSqlQuery query;
    query.setForwardOnly(true);
    QString statement = "SELECT ID, LNAME, FNAME FROM docs WHERE ";
    QVariantList values;
    const auto addTerm = [&](bool wanted, const char* term, const QVariant& value) {
        if (wanted) {
            statement += QLatin1String(term);
            values << value;
        }
    };
    if (selection.id.isNull()) {
        statement += "TEMPLATE = 0";
        addTerm(!selection.surname.isEmpty(), " AND LNAME LIKE ?", "%" + selection.surname + "%");
        addTerm(!selection.group.isEmpty(), " AND DOC_GROUP LIKE ?", "%" + selection.group + "%");
        addTerm(selection.type.has_value(), " AND DOC_TYPE = ?", selection.type.value_or(0));
        addTerm(selection.from.isValid(), " AND ISSUE_DATE >= ?",
                selection.from.toString("yyyy-MM-dd"));
        addTerm(selection.to.isValid(), " AND ISSUE_DATE <= ?",
                selection.to.toString("yyyy-MM-dd"));
    } else {
        addTerm(true, "ID = ?", selection.id);
    }
    query.prepare(statement + " ORDER BY ID");
    for (const QVariant& value : qAsConst(values)) {
        query.addBindValue(value);
    }
    if (!query.exec()) {
        report(inUserLanguage("не удалось прочитать документы: ", "can't read the documents: ") +
               query.lastError().text());
        return false;
    }
    while (query.next()) {
        m_documents.append({query.value(0), query.value(1).toString(), query.value(2).toString()});
    }
    if (m_documents.isEmpty()) {
        report(inUserLanguage("таких документов нет", "there are no such documents"));
    }
    return !m_documents.isEmpty();
}

bool PrintJob::prepareTarget()
{
    switch (m_options.target()) {
    case PrintOptions::Target::OneFile:
        m_commonPrinter = pdfPrinter(m_options.output());
        return true;
    case PrintOptions::Target::FilePerDocument:
        if (!QDir().mkpath(m_options.output())) {
            report(inUserLanguage("не удалось создать каталог ", "can't make the folder ") +
                   m_options.output());
            return false;
        }
        return true;
    case PrintOptions::Target::Printer:
        if (!QPrinterInfo::availablePrinterNames().contains(m_options.output())) {
            report(inUserLanguage("нет принтера ", "there is no printer ") + m_options.output());
            return false;
        }
        return true;
    }
    return false;
}

bool PrintJob::print(const Document& document)
{
    if (!buildPage(document)) {
        return false;
    }
    switch (m_options.target()) {
    case PrintOptions::Target::OneFile:
        if (m_preview.printPage(*m_commonPrinter, m_commonPainter)) {
            return true;
        }
        report(inUserLanguage("не удалось записать файл ", "can't write the file ") +
               m_options.output());
        return false;
    case PrintOptions::Target::FilePerDocument:
        return printToFile(document);
    case PrintOptions::Target::Printer:
        return printToPrinter(document);
    }
    return false;
}

bool PrintJob::buildPage(const Document& document)
{
    const QString name = inUserLanguage("документ ", "document ") + document.id.toString() + ": ";
    const QVariant blank = chooseBlank(document.id);
    if (blank.isNull()) {
        report(name +
               (m_options.blank().isEmpty()
                    ? inUserLanguage("для него нет бланков", "no blank prints it")
                    : inUserLanguage("нет бланка ", "it has no blank ") + m_options.blank()));
        return false;
    }
    if (!m_preview.buildScene(m_preview.pageScene(), document.id, blank)) {
        report(name + inUserLanguage("не удалось прочитать его или бланк",
                                     "it or its blank can't be read"));
        return false;
    }
    return true;
}

QVariant PrintJob::chooseBlank(const QVariant& docId)
{
    const PrinPreviewDialog::BlankList blanks = m_preview.loadBlanksForDoc(docId);
    const QString wanted = m_options.blank();
    if (wanted.isEmpty()) {
        return blanks.isEmpty() ? QVariant() : blanks.first().second;
    }
    for (const auto& [name, id] : blanks) {
        if (id.toString() == wanted) {
            return id;
        }
    }
    for (const auto& [name, id] : blanks) {
        if (name == wanted) {
            return id;
        }
    }
    return QVariant();
}

bool PrintJob::printToFile(const Document& document)
{
    const QString name =
        QStringList{document.id.toString(), document.surname, document.name}.join('_');
    const QString path = QDir(m_options.output()).filePath(cleaned(name) + ".pdf");
    const std::unique_ptr<QPrinter> printer = pdfPrinter(path);
    m_preview.printTo(*printer);
    return finishFile(path);
}

bool PrintJob::printToPrinter(const Document& document)
{
    QPrinter printer(QPrinterInfo::printerInfo(m_options.output()), QPrinter::HighResolution);
    printer.setDocName("Zelvora " + document.id.toString());
    QPainter painter;
    if (m_preview.printPage(printer, painter)) {
        return true;
    }
    report(inUserLanguage("принтер не принял документ ", "the printer refused document ") +
           document.id.toString());
    return false;
}

bool PrintJob::finishFile(const QString& path)
{
    if (!isWholePdf(path)) {
        report(inUserLanguage("не удалось записать файл ", "can't write the file ") + path);
        return false;
    }
    m_out << path << '\n';
    return true;
}

void PrintJob::report(const QString& message)
{
    m_err << "zelvora-print: " << message << '\n';
}
