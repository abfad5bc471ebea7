#include "tools/PrintWords.h"

#include <QStringList>

#include "preflight/CheckSummary.h"
#include "preflight/FindingWords.h"
#include "printing/PrintSheet.h"
#include "printing/SheetOutcome.h"
#include "tools/UserLanguage.h"

namespace {

QString badCondition(const QString& reason)
{
    return inUserLanguage("условие не понято: ", "the condition is not understood: ") + reason;
}

} // namespace

QString documentPrefix(const PrintDocument& document)
{
    return inUserLanguage("документ ", "document ") + document.id.toString() + ": ";
}

QString inWords(const DocumentSelection::Problem& problem)
{
    switch (problem.kind) {
    case DocumentSelection::Problem::Kind::Unreadable:
        return inUserLanguage("не удалось прочитать документы: ", "can't read the documents: ") +
               problem.detail;
    case DocumentSelection::Problem::Kind::BadCondition:
        return badCondition(problem.detail);
    case DocumentSelection::Problem::Kind::NotOneExpression:
        return badCondition(inUserLanguage("это не одно выражение", "it is no one expression"));
    case DocumentSelection::Problem::Kind::NoSuchForm:
        return inUserLanguage("нет формы ", "there is no form ") + problem.detail;
    case DocumentSelection::Problem::Kind::None:
        break;
    }
    return QString();
}

QString inWords(const PrintSheet& sheet, const SheetOutcome& outcome, const QString& wantedBlank)
{
    const QString document = documentPrefix(sheet.document);
    switch (outcome.reason) {
    case SheetOutcome::Reason::NoBlanks:
        return document + inUserLanguage("для него нет бланков", "no blank prints it");
    case SheetOutcome::Reason::NoSuchBlank:
        return document + inUserLanguage("нет бланка ", "it has no blank ") + wantedBlank;
    case SheetOutcome::Reason::Unreadable:
        return document + inUserLanguage("не удалось прочитать его или бланк",
                                         "it or its blank can't be read");
    case SheetOutcome::Reason::FileRefused:
        return unwritableFile(outcome.file);
    case SheetOutcome::Reason::PrinterRefused:
        return inUserLanguage("принтер не принял документ ", "the printer refused document ") +
               sheet.document.id.toString();
    case SheetOutcome::Reason::PrinterGone:
        return inUserLanguage("принтер пропал, возможно, не напечатан документ ",
                              "the printer has gone, perhaps not printed is document ") +
               sheet.document.id.toString();
    case SheetOutcome::Reason::Findings:
        return inUserLanguage("есть замечания, не печатается документ ",
                              "there are findings, not printed is document ") +
               sheet.document.id.toString();
    case SheetOutcome::Reason::None:
        break;
    }
    return QString();
}

QString inWords(const CheckSummary& summary)
{
    return inUserLanguage("Проверено документов: %1, замечаний: %2",
                          "Documents checked: %1, findings: %2")
        .arg(summary.documents())
        .arg(summary.findings());
}

QString kindsInWords(const CheckSummary& summary)
{
    const FindingWords words;
    QStringList parts;
    for (auto it = summary.kinds().cbegin(); it != summary.kinds().cend(); ++it) {
        parts << words.caption(it.key()) + QString::fromUtf8(" — ") + QString::number(it.value());
    }
    return parts.join(", ");
}

QString unwritableFile(const QString& path)
{
    return inUserLanguage("не удалось записать файл ", "can't write the file ") + path;
}
