#include <QtTest>

#include "support/PdfMeasure.h"
#include "support/PrintProgram.h"
#include "support/PrintQueue.h"
#include "support/Process.h"

namespace {

constexpr int clean = 0;
constexpr int withFindings = 1;
constexpr int failure = 2;

const QString russianLocale = "ru_RU.UTF-8";

/// Runs a Python expression over what the program wrote as JSON, `j`; the result as text.
QString fromJson(const QByteArray& json, const QString& expression)
{
    const QString script = "import json, sys\n"
                           "j = json.loads(sys.stdin.buffer.read().decode('utf-8'))\n"
                           "sys.stdout.buffer.write(str((" +
                           expression + ")).encode('utf-8'))\n";
    return QString::fromUtf8(runProcess(ZELVORA_PYTHON, {"-c", script}, json).out);
}

/// A directory with a blank "Пробный" that spoils one of three documents.
class SpoiledDirectory : public PrintDirectory
{
public:
    SpoiledDirectory()
    {
        addBlank({blankItem(0, "#LNAME", QRectF(100, 100, 200, 40)),
                  blankItem(0, "Дата: #BIRTH_DATE.", QRectF(100, 200, 300, 40))},
                 {{"NAME", "Пробный"}, {"BACKGROUND_IMG", "нет.png"}});
        exec("UPDATE docs SET LNAME = 'A&amp;B', BIRTH_DATE = '', FNAME = 'Анна', "
             "BLANK_SER = 'ВГ', BLANK_NO = '42' WHERE ID = 2");
    }

    ProcessResult check(const QStringList& more, const QString& locale = "C.UTF-8") const
    {
        return print(QStringList{"--check", "--blank", "Пробный"} + more, locale);
    }
};

} // namespace

/// zelvora-print --check.
class tst_PrintCheck : public QObject
{
    Q_OBJECT

private slots:
    void nothingFound();
    void wordsInEnglish();
    void wordsInRussian();
    void amountsInTheUsersNotation();
    void json();
    void jsonOfCleanDocuments();
    void nothingForATerminal();
    void ofTheBlankOnce();
    void emptyValues();
    void margins();
    void whatCannotBeChecked();
    void printsNothing();
    void summaryBeforeABatch();
    void noSummaryOfOneDocument();
    void strictLeavesOutWhatHasFindings();
    void strictMindsErrorsOfTheBlank();
    void strictOnOneDocument();
    void marginsOfAPrinter();
    void unknownPrinter();
};

void tst_PrintCheck::nothingFound()
{
    const PrintDirectory directory;
    const ProcessResult result = directory.print({"--check", "--id", "1-3", "--blank", "Альбом"});
    QCOMPARE(result.exitCode, clean);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(QString::fromUtf8(result.out), QString("Documents checked: 3, findings: 0\n"));
    const ProcessResult russian =
        directory.print({"--check", "--id", "1", "--blank", "Альбом"}, russianLocale);
    QCOMPARE(QString::fromUtf8(russian.out), QString("Проверено документов: 1, замечаний: 0\n"));
}

void tst_PrintCheck::wordsInEnglish()
{
    const SpoiledDirectory directory;
    const ProcessResult result = directory.check({"--id", "1-3"});
    QCOMPARE(result.exitCode, withFindings);
    QCOMPARE(result.err, QByteArray());
    const QString document = "Document 2, A&amp;B Анна, form no. ВГ 42; blank “Пробный”; ";
    QCOMPARE(QString::fromUtf8(result.out),
             "Blank “Пробный”: the background can't be loaded: нет.png\n"
             "Blank “Пробный”; frame 2 “Дата: #BIRTH_DATE.” (26.5; 52.9 mm): the last character "
             "“.” is not printed\n" +
                 document +
                 "frame 1 “#LNAME” (26.5; 26.5 mm): the value of the tag #LNAME does not print as "
                 "it stands: “A&amp;B”\n" +
                 document +
                 "frame 2 “Дата: #BIRTH_DATE.” (26.5; 52.9 mm): the tag #BIRTH_DATE has no date: "
                 "“0  0” is printed\n"
                 "Documents checked: 3, findings: 4\n");
}

void tst_PrintCheck::wordsInRussian()
{
    const SpoiledDirectory directory;
    const ProcessResult result = directory.check({"--id", "2"}, russianLocale);
    QCOMPARE(result.exitCode, withFindings);
    const QStringList lines = QString::fromUtf8(result.out).split('\n');
    QCOMPARE(lines.size(), 6);
    QCOMPARE(lines[0], QString("Бланк «Пробный»: фон не загружается: нет.png"));
    QCOMPARE(lines[1],
             QString("Документ 2, A&amp;B Анна, бланк № ВГ 42; бланк «Пробный»; рамка 1 «#LNAME» "
                     "(26,5; 26,5 мм): значение метки #LNAME напечатается не так, как записано: "
                     "«A&amp;B»"));
    QCOMPARE(lines[4], QString("Проверено документов: 1, замечаний: 4"));
}

void tst_PrintCheck::amountsInTheUsersNotation()
{
    PrintDirectory directory;
    directory.addBlank({blankItem(0, "ТЕКСТ", QRectF(-50, 100, 600, 40), {{"h_align", 1}})},
                       {{"NAME", "Край"}});
    const QStringList arguments = {"--check", "--id", "1", "--blank", "Край"};
    // 50 units of 297/1122 mm are 13.24 mm.
    const ProcessResult russian = directory.print(arguments, russianLocale);
    QVERIFY(QString::fromUtf8(russian.out)
                .contains("рамка 1 «ТЕКСТ» (-13,2; 26,5 мм): выходит за край листа слева на 13,2 "
                          "мм, но только пустой частью\n"));
    const ProcessResult english = directory.print(arguments);
    QVERIFY(QString::fromUtf8(english.out)
                .contains("goes 13.2 mm beyond the edge of the page on the left, with its empty "
                          "part only\n"));
}

void tst_PrintCheck::json()
{
    const SpoiledDirectory directory;
    const ProcessResult result = directory.check({"--id", "1-3", "--json"}, russianLocale);
    QCOMPARE(result.exitCode, withFindings);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(fromJson(result.out, "sorted(j)"), QString("['checked', 'documents', 'findings']"));
    QCOMPARE(fromJson(result.out, "j['documents'], j['checked'], len(j['findings'])"),
             QString("(3, 3, 4)"));
    QCOMPARE(fromJson(result.out, "[f['kind'] for f in j['findings']]"),
             QString("['background-missing', 'tail-dropped', 'value-read-as-markup', "
                     "'date-missing']"));
    QCOMPARE(fromJson(result.out, "[f['severity'] for f in j['findings']]"),
             QString("['warning', 'warning', 'error', 'error']"));
    QCOMPARE(fromJson(result.out, "'document' in j['findings'][0], 'item' in j['findings'][0]"),
             QString("(False, False)"));
    const QString markup = "j['findings'][2]";
    QCOMPARE(fromJson(result.out, markup + "['document']"),
             QString("{'blankNumber': '42', 'blankSeries': 'ВГ', 'id': 2, 'name': 'Анна', "
                     "'surname': 'A&amp;B'}"));
    QCOMPARE(fromJson(result.out, markup + "['blank']['name']"), QString("Пробный"));
    QCOMPARE(fromJson(result.out, markup + "['item']['number'], " + markup + "['item']['text']"),
             QString("(1, '#LNAME')"));
    QCOMPARE(fromJson(result.out, "abs(" + markup + "['item']['x'] - 100 * 297 / 1122) < 0.001"),
             QString("True"));
    QCOMPARE(
        fromJson(result.out, "abs(" + markup + "['item']['height'] - 40 * 297 / 1122) < 0.001"),
        QString("True"));
    QCOMPARE(fromJson(result.out, markup + "['tag'], " + markup + "['text']"),
             QString("('#LNAME', 'A&amp;B')"));
}

void tst_PrintCheck::jsonOfCleanDocuments()
{
    const PrintDirectory directory;
    const ProcessResult result =
        directory.print({"--check", "--json", "--id", "1-3", "--blank", "Альбом"});
    QCOMPARE(result.exitCode, clean);
    QCOMPARE(fromJson(result.out, "j == {'documents': 3, 'checked': 3, 'findings': []}"),
             QString("True"));
}

void tst_PrintCheck::nothingForATerminal()
{
    PrintDirectory directory;
    directory.exec("UPDATE blanks SET NAME = 'A' || char(27) || '[2J' || char(155) || '2J'");
    directory.exec("UPDATE docs SET LNAME = '<b>' || char(27) || '[2J' || char(155) || '2J'");
    const auto isHarmless = [](const QByteArray& text) {
        return !text.contains('\x1b') && !text.contains("\xc2\x9b") && text.contains("2J");
    };
    const ProcessResult words = directory.print({"--check", "--id", "1"});
    QVERIFY2(isHarmless(words.out), words.out.constData());
    const ProcessResult json = directory.print({"--check", "--json", "--id", "1"});
    QVERIFY2(isHarmless(json.out), json.out.constData());
    QCOMPARE(fromJson(json.out, "j['findings'][0]['blank']['name'] == 'A\\x1b[2J\\x9b2J'"),
             QString("True"));
    const ProcessResult unknown = directory.print({"--check", "--all", "--blank", "B\x1b[2J"});
    QVERIFY2(isHarmless(unknown.err), unknown.err.constData());
    const ProcessResult option = directory.print({"--che\x1b[2Jck"});
    QVERIFY2(isHarmless(option.err), option.err.constData());
    const QString file = directory.path("sheet\x1b[2J.pdf");
    const ProcessResult printed = directory.print({"--id", "1", "--output", file});
    QVERIFY2(isHarmless(printed.out), printed.out.constData());
    QVERIFY(QFile::exists(file));
}

void tst_PrintCheck::ofTheBlankOnce()
{
    const SpoiledDirectory directory;
    const ProcessResult result = directory.check({"--id", "1,3"});
    QCOMPARE(result.exitCode, withFindings);
    QCOMPARE(QString::fromUtf8(result.out).count("нет.png"), 1);
    QCOMPARE(result.out.count('\n'), 3);
    const ProcessResult printed = directory.check({"--id", "1", "--json", "--background"});
    QCOMPARE(fromJson(printed.out, "j['findings'][0]['severity']"), QString("error"));
}

// Of the organisation it is told once, and none of it keeps a document back.
void tst_PrintCheck::emptyValues()
{
    PrintDirectory directory;
    directory.addBlank({blankItem(0, "Пустое: #MNAME #ORG_REGION", QRectF(50, 50, 400, 60))},
                       {{"NAME", "Пустой"}});
    directory.exec("UPDATE docs SET MNAME = ''");
    const QStringList common = {"--id", "1,2", "--blank", "Пустой"};
    const ProcessResult result = directory.print(QStringList{"--check", "--json"} + common);
    QCOMPARE(result.exitCode, withFindings);
    QCOMPARE(fromJson(result.out, "sorted((f['kind'], f['severity'], f['tag'], "
                                  "f.get('document', {}).get('id')) for f in j['findings'] "
                                  "if 'document' in f)"),
             QString("[('tag-empty', 'warning', '#MNAME', 1), ('tag-empty', 'warning', '#MNAME', "
                     "2)]"));
    QCOMPARE(fromJson(result.out, "[(f['kind'], f['severity'], f['tag']) for f in j['findings'] "
                                  "if 'document' not in f]"),
             QString("[('tag-empty', 'warning', '#ORG_REGION')]"));
    QVERIFY(directory.print(QStringList{"--check"} + common)
                .out.contains("the tag #ORG_REGION has no value: nothing is printed"));
    const QString file = directory.path("all.pdf");
    QCOMPARE(directory.print(QStringList{"--strict", "--output", file} + common).exitCode, clean);
    QCOMPARE(PdfMeasure(file).pageCount(), 2);
}

void tst_PrintCheck::margins()
{
    const PrintDirectory directory;
    const QStringList arguments = {"--check", "--id", "1", "--blank", "Альбом"};
    QCOMPARE(directory.print(arguments + QStringList{"--margins", "4"}).exitCode, clean);
    const ProcessResult wide = directory.print(arguments + QStringList{"--margins", "0,40,0,0"});
    QCOMPARE(wide.exitCode, withFindings);
    QVERIFY(wide.out.contains("into the printer's margin at the top"));
}

void tst_PrintCheck::whatCannotBeChecked()
{
    PrintDirectory directory;
    const QVariant homeless = directory.person("Бездомный", "1", "2023-01-01", 77);
    const ProcessResult some =
        directory.print({"--check", "--id", "1,555," + homeless.toString(), "--blank", "Альбом"});
    QCOMPARE(some.exitCode, withFindings);
    QCOMPARE(QString::fromUtf8(some.out), QString("Documents checked: 1, findings: 0\n"));
    QVERIFY(some.err.contains("there is no document 555"));
    QVERIFY(some.err.contains("document " + homeless.toString().toUtf8() + ": "));
    // One of the two is enough.
    for (const QString& other : {QString("555"), homeless.toString()}) {
        QCOMPARE(directory.print({"--check", "--id", "1," + other, "--blank", "Альбом"}).exitCode,
                 withFindings);
    }
    const ProcessResult none = directory.print({"--check", "--json", "--id", homeless.toString()});
    QCOMPARE(none.exitCode, failure);
    QCOMPARE(fromJson(none.out, "j == {'documents': 1, 'checked': 0, 'findings': []}"),
             QString("True"));
    QCOMPARE(directory.print({"--check", "--id", "555"}).exitCode, failure);
}

void tst_PrintCheck::printsNothing()
{
    const SpoiledDirectory directory;
    const QByteArray before = directory.dump();
    const QStringList files = directory.filesIn(".");
    directory.check({"--id", "1-3"});
    QCOMPARE(directory.dump(), before);
    QCOMPARE(directory.filesIn("."), files);
}

void tst_PrintCheck::summaryBeforeABatch()
{
    const SpoiledDirectory directory;
    const QString file = directory.path("all.pdf");
    const QStringList arguments = {"--id", "1-3", "--blank", "Пробный", "--output", file};
    const ProcessResult english = directory.print(arguments);
    QCOMPARE(english.exitCode, 0); // findings do not keep a batch from being printed
    QCOMPARE(english.err, QByteArray());
    QCOMPARE(QString::fromUtf8(english.out),
             "Documents checked: 3, findings: 4 (no date — 1, last character not printed — 1, "
             "value read as markup — 1, no background — 1)\n" +
                 file + '\n');
    const ProcessResult russian = directory.print(arguments, russianLocale);
    QVERIFY(QString::fromUtf8(russian.out)
                .startsWith("Проверено документов: 3, замечаний: 4 (нет даты — 1, "));
    QCOMPARE(PdfMeasure(file).pageCount(), 3);
}

void tst_PrintCheck::noSummaryOfOneDocument()
{
    const SpoiledDirectory directory;
    const QString file = directory.path("one.pdf");
    const ProcessResult result =
        directory.print({"--id", "2", "--blank", "Пробный", "--output", file});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(QString::fromUtf8(result.out), file + '\n');
}

void tst_PrintCheck::strictLeavesOutWhatHasFindings()
{
    // The missing background is a warning about the blank, which keeps no document back.
    const SpoiledDirectory directory;
    const QString file = directory.path("all.pdf");
    const ProcessResult result =
        directory.print({"--id", "1-3", "--blank", "Пробный", "--strict", "--output", file});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.err.count('\n'), 1);
    QVERIFY(result.err.contains("not printed is document 2"));
    const PdfMeasure pages(file);
    QCOMPARE(pages.pageCount(), 2);
    QVERIFY(pages.text(1).contains("Иванов"));
    QVERIFY(pages.text(2).contains("Иваненко"));
}

void tst_PrintCheck::strictMindsErrorsOfTheBlank()
{
    const SpoiledDirectory directory;
    const QString file = directory.path("all.pdf");
    const ProcessResult result = directory.print(
        {"--id", "1-3", "--blank", "Пробный", "--strict", "--background", "--output", file});
    QCOMPARE(result.exitCode, failure);
    QCOMPARE(result.err.count("not printed is document"), 3);
    QVERIFY(!QFile::exists(file));
}

void tst_PrintCheck::strictOnOneDocument()
{
    const SpoiledDirectory directory;
    const QString file = directory.path("one.pdf");
    const auto strictly = [&](const QString& id) {
        return directory.print({"--id", id, "--blank", "Пробный", "--strict", "--output", file});
    };
    QCOMPARE(strictly("2").exitCode, failure);
    QVERIFY(!QFile::exists(file));
    QCOMPARE(strictly("1").exitCode, 0);
    QVERIFY(QFile::exists(file));
}

void tst_PrintCheck::marginsOfAPrinter()
{
    PrintDirectory directory;
    const PrintQueue queue; // its printer leaves 12 points free on each side: 4.23 mm
    // 10 units of 297/1122 mm are 2.65 mm, 19 units with the layout's own margin of 9 are 5.03 mm.
    directory.addBlank({blankItem(0, "ТЕКСТ", QRectF(10, 300, 300, 40), {{"h_align", 0}})},
                       {{"NAME", "Край"}, {"PAPER_FORMAT", 0}});
    const auto check = [&](const QStringList& more) {
        return runPrint(QStringList{"--dir", directory.path(), "--check", "--id", "1", "--blank",
                                    "Край", "--printer", PrintQueue::printer} +
                            more,
                        queue.environment(noDisplay("C.UTF-8")));
    };
    const ProcessResult own = check({});
    QVERIFY2(own.out.contains("goes 1.6 mm into the printer's margin on the left, with its empty "
                              "part only"),
             own.out);
    QCOMPARE(own.out.count('\n'), 2);
    QCOMPARE(own.exitCode, withFindings);
    // What is told counts for more than what the printer says.
    QCOMPARE(check({"--margins", "2"}).exitCode, clean);
}

void tst_PrintCheck::unknownPrinter()
{
    const PrintDirectory directory;
    const ProcessResult result = directory.print({"--check", "--id", "1", "--printer", "Нет"});
    QCOMPARE(result.exitCode, failure);
    QCOMPARE(result.out, QByteArray());
    QVERIFY(result.err.contains("there is no printer"));
}

QTEST_MAIN(tst_PrintCheck)
#include "tst_PrintCheck.moc"
