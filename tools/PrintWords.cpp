#include "tools/PrintWords.h"

#include <QCoreApplication>
#include <QStringList>

#include "preflight/CheckSummary.h"
#include "preflight/FindingWords.h"
#include "printing/PrintSheet.h"
#include "printing/SheetOutcome.h"

namespace {

/// What this file says, in the language of the user.
class Text
{
    Q_DECLARE_TR_FUNCTIONS(PrintWords)
};

QString badCondition(const QString& reason)
{
    return Text::tr("the condition is not understood: %1").arg(reason);
}

} // namespace

QString inWords(const DocumentSelection::Problem& problem)
{
    switch (problem.kind) {
    case DocumentSelection::Problem::Kind::Unreadable:
        return Text::tr("can't read the documents: %1").arg(problem.detail);
    case DocumentSelection::Problem::Kind::BadCondition:
        return badCondition(problem.detail);
    case DocumentSelection::Problem::Kind::NotOneExpression:
        return badCondition(Text::tr("it is no one expression"));
    case DocumentSelection::Problem::Kind::NoSuchForm:
        return Text::tr("there is no form %1").arg(problem.detail);
    case DocumentSelection::Problem::Kind::None:
        break;
    }
    return QString();
}

QString inWords(const PrintSheet& sheet, const SheetOutcome& outcome, const QString& wantedBlank)
{
    const QString document = sheet.document.id.toString();
    switch (outcome.reason) {
    case SheetOutcome::Reason::NoBlanks:
        return Text::tr("document %1: no blank prints it").arg(document);
    case SheetOutcome::Reason::NoSuchBlank:
        return Text::tr("document %1: it has no blank %2").arg(document, wantedBlank);
    case SheetOutcome::Reason::Unreadable:
        return Text::tr("document %1: it or its blank can't be read").arg(document);
    case SheetOutcome::Reason::FileRefused:
        return unwritableFile(outcome.file);
    case SheetOutcome::Reason::PrinterRefused:
        return Text::tr("the printer refused document %1").arg(document);
    case SheetOutcome::Reason::PrinterGone:
        return Text::tr("the printer has gone, perhaps not printed is document %1").arg(document);
    case SheetOutcome::Reason::Findings:
        return Text::tr("there are findings, not printed is document %1").arg(document);
    case SheetOutcome::Reason::None:
        break;
    }
    return QString();
}

QString inWords(const CheckSummary& summary)
{
    return Text::tr("Documents checked: %1, findings: %2")
        .arg(QString::number(summary.documents()), QString::number(summary.findings()));
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
    return Text::tr("can't write the file %1").arg(path);
}
