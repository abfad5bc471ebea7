#include <QtTest>

#include "tools/PrintOptions.h"

using Action = PrintOptions::Action;
using Target = PrintOptions::Target;

Q_DECLARE_METATYPE(Action)

namespace {

PrintOptions parsed(const QStringList& arguments)
{
    PrintOptions options;
    if (!options.parse(arguments)) {
        QTest::qFail(qPrintable(options.error()), __FILE__, __LINE__);
    }
    return options;
}

/// The ranges of an `--id` list as "first-last" each.
QString idsOf(const QString& list)
{
    QStringList ranges;
    const QVector<DocumentFilter::IdRange> ids = parsed({"--check", "--id", list}).selection().ids;
    for (const DocumentFilter::IdRange& range : ids) {
        ranges << QString("%1-%2").arg(range.first).arg(range.last);
    }
    return ranges.join(' ');
}

} // namespace

/// The command line of zelvora-print.
class tst_PrintOptions : public QObject
{
    Q_OBJECT

private slots:
    void wrongOptions_data();
    void wrongOptions();
    void actions_data();
    void actions();
    void ids();
    void filters();
    void emptyFilterIsNone();
    void targets();
    void manner();
    void margins();
    void offsets();
    void helpComesFirst();
    void helpFitsATerminal();
};

void tst_PrintOptions::wrongOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    const auto row = [](const char* arguments, const char* message) {
        QTest::newRow(arguments) << QString(arguments).split(' ', Qt::SkipEmptyParts) << message;
    };
    row("", "which documents? --id, a filter or --all is needed");
    row("--id 1 --all --output x.pdf", "--id does not go with --all");
    row("--id 1 --group 9 --output x.pdf", "--id does not go with --group");
    row("--where 1 --id 1 --output x.pdf", "--id does not go with --where");
    row("--all", "one of --output and --printer is needed");
    row("--all --output x.pdf --printer p", "one of --output and --printer is needed");
    row("--all --output=", "no file or folder is named");
    row("--all --printer=", "no printer is named");
    row("--all --color", "unknown option: color");
    row("--all --output", "wrong options: ");
    row("--all x.pdf", "unexpected argument: x.pdf");
    for (const char* list : {"1;", "1,", ",1", "a", "-3", "3-", "5-3", "1-2-3", "1.5",
                             "9223372036854775808", "1-9223372036854775808", "1--2"})
    {
        const QString part = QString(list).contains(',') ? QString() : QString(list);
        QTest::addRow("--id %s", list) << QStringList{"--id", list, "--output", "x.pdf"}
                                       << "neither an ID nor a range of IDs: " + part;
    }
    QTest::newRow("no ID") << QStringList{"--id", "", "--output", "x.pdf"}
                           << "neither an ID nor a range of IDs: ";
    row("--from 25.06.2021 --output x.pdf", "no date of the form yyyy-MM-dd: 25.06.2021");
    row("--to 2021-02-30 --output x.pdf", "no date of the form yyyy-MM-dd: 2021-02-30");
    row("--all --output x.pdf --name a", "--name goes with a folder only");
    row("--all --printer p --name a", "--name goes with a folder only");
    row("--all --output x --name {#LNAME", "the braces of the name pattern do not match: {#LNAME");
    for (const char* copies : {"0", "100", "-1", "two", "1.5"}) {
        QTest::addRow("%s copies", copies)
            << QStringList{"--all", "--printer", "p", "--copies", copies}
            << QString("--copies is no number from 1 to 99: ") + copies;
    }
    row("--proof --all --output x --resolution 35", "--resolution is no number from 36 to 1200");
    row("--proof --all --output x --resolution 1201", "--resolution is no number from 36 to 1200");
    for (const char* margins : {"", "a", "-1", "1,2", "1,2,3", "1,2,3,4,5", "1,,3,4", "inf", "nan"})
    {
        QTest::addRow("margins %s", margins)
            << QStringList{"--check", "--all", "--margins", margins}
            << QString("the margins are neither one nor four numbers of millimetres: ") + margins;
    }
    const char* const onlyOne =
        "only one of --check, --proof, --calibration and --offsets is possible";
    row("--check --proof --all", onlyOne);
    row("--calibration --offsets 1 2", onlyOne);
    row("--check --offsets 1 2 --all", onlyOne);
    row("--check --all --output x", "out of place here: --output");
    row("--check --all --copies 2", "out of place here: --copies");
    row("--check --all --strict", "out of place here: --strict");
    row("--all --output x --json", "out of place here: --json");
    row("--all --output x --resolution 300", "out of place here: --resolution");
    row("--proof --all --output x --name a", "out of place here: --name");
    row("--proof --all", "--output is needed");
    row("--calibration --output x.pdf", "--blank is needed");
    row("--calibration --blank 1", "one of --output and --printer is needed");
    row("--calibration --blank 1 --output folder", "this is no .pdf file: folder");
    row("--calibration --blank 1 --output x.pdf --all", "out of place here: --all");
    row("--offsets 1 2 --id 1", "out of place here: --id");
    const char* const twoNumbers = "--offsets needs two numbers, in millimetres";
    row("--offsets", twoNumbers);
    row("--offsets 1", twoNumbers);
    row("--offsets 1 --blank", twoNumbers);
    row("--offsets 1 nan", twoNumbers);
    row("--offsets 1 2 3", "unexpected argument: 3");
    row("--offsets 1 2 --offsets 3 4", "--offsets is given twice");
    row("--id 1 --id 2 --output x.pdf", "given twice: --id");
    row("--all --output x.pdf --output y.pdf", "given twice: --output");
    row("--all --output x.pdf --blank 1 --blank=2", "given twice: --blank");
    row("--all --printer p --copies 1 --copies 2", "given twice: --copies");
    row("--id 1 --output x.pdf --blank=", "no blank is named");
    row("--offsets 1 2 --blank=", "no blank is named");
    row("--id 1 --output x.pdf --org-data=", "no value is given to --org-data");
    row("--check --id 1 --dir=", "no value is given to --dir");
    row("--id 1 --output x.png", "this is no .pdf file: x.png");
    row("--proof --id 1 --output x.PDF", "this is no .png file: x.PDF");
    row("--calibration --blank 1 --output x.png", "this is no .pdf file: x.png");
}

void tst_PrintOptions::wrongOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    PrintOptions options;
    QVERIFY(!options.parse(arguments));
    QVERIFY2(options.error().startsWith(message), qPrintable(options.error()));
}

void tst_PrintOptions::actions_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<Action>("action");
    QTest::newRow("print") << "--all --output x.pdf" << Action::Print;
    QTest::newRow("check") << "--check --all" << Action::Check;
    QTest::newRow("proof") << "--proof --all --output x" << Action::Proof;
    QTest::newRow("calibration") << "--blank 1 --calibration --printer p" << Action::Calibration;
    QTest::newRow("offsets") << "--offsets 1 2" << Action::Offsets;
    QTest::newRow("offsets of a blank") << "--blank 1 --offsets 1 2 --quiet" << Action::Offsets;
}

void tst_PrintOptions::actions()
{
    QFETCH(QString, arguments);
    QFETCH(Action, action);
    QCOMPARE(parsed(arguments.split(' ')).action(), action);
}

void tst_PrintOptions::ids()
{
    QCOMPARE(idsOf("5"), QString("5-5"));
    QCOMPARE(idsOf("3,7,10-20"), QString("3-3 7-7 10-20"));
    QCOMPARE(idsOf(" 20 - 21 , 3 "), QString("20-21 3-3"));
    QCOMPARE(idsOf("1-9223372036854775807"), QString("1-9223372036854775807"));
}

void tst_PrintOptions::filters()
{
    const DocumentFilter all = parsed({"--all", "--output", "x"}).selection();
    QVERIFY(all.ids.isEmpty() && all.surname.isEmpty() && all.group.isEmpty() &&
            all.type.isEmpty() && all.condition.isEmpty() && all.from.isNull() && all.to.isNull());
    const DocumentFilter selection =
        parsed({"--surname", "Иван", "--group", "9", "--type", "Аттестат", "--from", "2021-01-02",
                "--to", "2021-12-31", "--where", "DUPLICATE = 1", "--output", "x"})
            .selection();
    QCOMPARE(selection.surname, QString("Иван"));
    QCOMPARE(selection.group, QString("9"));
    QCOMPARE(selection.type, QString("Аттестат"));
    QCOMPARE(selection.from, QDate(2021, 1, 2));
    QCOMPARE(selection.to, QDate(2021, 12, 31));
    QCOMPARE(selection.condition, QString("DUPLICATE = 1"));
}

// "--surname $name" with an unset variable must not print everybody.
void tst_PrintOptions::emptyFilterIsNone()
{
    for (const char* filter : {"--surname", "--group", "--type", "--from", "--to", "--where"}) {
        PrintOptions options;
        QVERIFY2(!options.parse({filter, "", "--output", "x.pdf"}), filter);
        QVERIFY2(options.error().startsWith("which documents?"), qPrintable(options.error()));
        parsed({"--all", filter, "", "--output", "x.pdf"});
    }
}

void tst_PrintOptions::targets()
{
    const QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir("folder.pdf"));
    QCOMPARE(parsed({"--all", "--output", "x.PDF"}).target(), Target::OneFile);
    QCOMPARE(parsed({"--all", "--output", "x"}).target(), Target::FilePerDocument);
    QCOMPARE(parsed({"--all", "--output", dir.filePath("folder.pdf")}).target(),
             Target::FilePerDocument);
    QCOMPARE(parsed({"--all", "--printer", "p"}).target(), Target::Printer);
    QCOMPARE(parsed({"--all", "--printer", "p"}).printer(), QString("p"));
    QCOMPARE(parsed({"--proof", "--all", "--output", "x.png"}).target(), Target::OneFile);
    QCOMPARE(parsed({"--proof", "--all", "--output", "x"}).target(), Target::FilePerDocument);
    QCOMPARE(parsed({"--proof", "--all", "--output", dir.filePath("folder.pdf")}).target(),
             Target::FilePerDocument);
    QCOMPARE(parsed({"--calibration", "--blank", "1", "--output", "x.pdf"}).target(),
             Target::OneFile);
    QCOMPARE(parsed({"--check", "--all", "--printer", "p"}).printer(), QString("p"));
}

void tst_PrintOptions::manner()
{
    const PrintOptions plain = parsed({"--all", "--output", "x"});
    QCOMPARE(plain.copies(), 1);
    QVERIFY(!plain.withBackground() && !plain.isStrict() && !plain.isQuiet() && !plain.asJson());
    QVERIFY(plain.namePattern().isEmpty() && plain.blank().isEmpty());
    const PrintOptions full =
        parsed({"--all", "--output", "x", "--copies", "99", "--background", "--strict", "--quiet",
                "--name", "{#LNAME}", "--blank", "Альбом", "--dir", "d", "--org-data", "o"});
    QCOMPARE(full.copies(), 99);
    QVERIFY(full.withBackground() && full.isStrict() && full.isQuiet());
    QCOMPARE(full.namePattern(), QString("{#LNAME}"));
    QCOMPARE(full.blank(), QString("Альбом"));
    QCOMPARE(full.directory(), QString("d"));
    QCOMPARE(full.organisationFile(), QString("o"));
    QVERIFY(parsed({"--check", "--all", "--json"}).asJson());
    QCOMPARE(parsed({"--proof", "--all", "--output", "x"}).resolution(), 150);
    QCOMPARE(parsed({"--proof", "--all", "--output", "x", "--resolution", "300"}).resolution(),
             300);
}

void tst_PrintOptions::margins()
{
    QVERIFY(!parsed({"--check", "--all"}).margins());
    QCOMPARE(*parsed({"--check", "--all", "--margins", "4.5"}).margins(),
             QMarginsF(4.5, 4.5, 4.5, 4.5));
    QCOMPARE(*parsed({"--check", "--all", "--margins", "1,2,3,4.5"}).margins(),
             QMarginsF(1, 2, 3, 4.5));
}

void tst_PrintOptions::offsets()
{
    QCOMPARE(parsed({"--offsets", "-3", "2.5"}).readOffsets(), QPointF(-3, 2.5));
    QCOMPARE(parsed({"--dir", "d", "--offsets", "1,5", "-0,5"}).readOffsets(), QPointF(1.5, -0.5));
}

void tst_PrintOptions::helpComesFirst()
{
    for (const char* help : {"--help", "-h"}) {
        QVERIFY(parsed({"--id", "x", help, "--color"}).helpWanted());
    }
}

void tst_PrintOptions::helpFitsATerminal()
{
    const QStringList lines = PrintOptions::helpText().split('\n');
    QVERIFY(lines.size() > 40);
    for (const QString& line : lines) {
        QVERIFY2(line.size() <= 96, qPrintable(line));
    }
}

QTEST_MAIN(tst_PrintOptions)
#include "tst_PrintOptions.moc"
