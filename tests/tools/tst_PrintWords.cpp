#include <QtTest>

#include "preflight/CheckSummary.h"
#include "printing/PrintSheet.h"
#include "printing/SheetOutcome.h"
#include "tools/PrintWords.h"

Q_DECLARE_METATYPE(SheetOutcome::Reason)
Q_DECLARE_METATYPE(DocumentSelection::Problem)

/// What the printing program says, in English as the tests' environment has it.
class tst_PrintWords : public QObject
{
    Q_OBJECT

private slots:
    void reasons_data();
    void reasons();
    void problems_data();
    void problems();
    void summary();
};

void tst_PrintWords::reasons_data()
{
    using Reason = SheetOutcome::Reason;
    QTest::addColumn<SheetOutcome::Reason>("reason");
    QTest::addColumn<QString>("words");
    QTest::newRow("none") << Reason::None << "";
    QTest::newRow("no blanks") << Reason::NoBlanks << "document 5: no blank prints it";
    QTest::newRow("no such blank") << Reason::NoSuchBlank << "document 5: it has no blank Титул";
    QTest::newRow("unreadable") << Reason::Unreadable
                                << "document 5: it or its blank can't be read";
    QTest::newRow("file") << Reason::FileRefused << "can't write the file out/x.pdf";
    QTest::newRow("printer") << Reason::PrinterRefused << "the printer refused document 5";
    QTest::newRow("printer gone") << Reason::PrinterGone
                                  << "the printer has gone, perhaps not printed is document 5";
    QTest::newRow("findings") << Reason::Findings
                              << "there are findings, not printed is document 5";
}

void tst_PrintWords::reasons()
{
    QFETCH(SheetOutcome::Reason, reason);
    PrintSheet sheet;
    sheet.document.id = 5;
    SheetOutcome outcome;
    outcome.reason = reason;
    outcome.file = "out/x.pdf";
    QTEST(inWords(sheet, outcome, "Титул"), "words");
}

void tst_PrintWords::problems_data()
{
    using Problem = DocumentSelection::Problem;
    QTest::addColumn<DocumentSelection::Problem>("problem");
    QTest::addColumn<QString>("words");
    QTest::newRow("none") << Problem() << "";
    QTest::newRow("unreadable") << Problem{Problem::Kind::Unreadable, "why"}
                                << "can't read the documents: why";
    QTest::newRow("condition") << Problem{Problem::Kind::BadCondition, "why"}
                               << "the condition is not understood: why";
    QTest::newRow("several") << Problem{Problem::Kind::NotOneExpression, ""}
                             << "the condition is not understood: it is no one expression";
    QTest::newRow("form") << Problem{Problem::Kind::NoSuchForm, "Аттестат"}
                          << "there is no form Аттестат";
}

void tst_PrintWords::problems()
{
    QFETCH(DocumentSelection::Problem, problem);
    QTEST(inWords(problem), "words");
}

void tst_PrintWords::summary()
{
    CheckSummary summary;
    QCOMPARE(inWords(summary), QString("Documents checked: 0, findings: 0"));
    QCOMPARE(kindsInWords(summary), QString());
    Finding tag;
    tag.kind = Finding::Kind::TagNotExpanded;
    tag.document.id = 1;
    Finding frames;
    frames.kind = Finding::Kind::PageWithoutFrames;
    summary.add({tag, tag, frames});
    QCOMPARE(inWords(summary), QString("Documents checked: 1, findings: 3"));
    QCOMPARE(kindsInWords(summary), QString("tag not replaced — 2, blank without frames — 1"));
}

QTEST_GUILESS_MAIN(tst_PrintWords)
#include "tst_PrintWords.moc"
