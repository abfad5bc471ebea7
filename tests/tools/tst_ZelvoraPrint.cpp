#include <QtTest>

#include <QDir>
#include <QFile>
#include <QPrinter>
#include <QTextStream>

#include "render/PrinPreviewDialog.h"
#include "support/PdfMeasure.h"
#include "support/PrintProgram.h"
#include "tools/PrintTool.h"

namespace {

constexpr int success = 0;
constexpr int someFailed = 1;
constexpr int failure = 2;

} // namespace

/// The companion program that prints documents without a window.
class tst_ZelvoraPrint : public QObject
{
    Q_OBJECT

private slots:
    void helpInTheUsersLanguage();
    void messagesInTheUsersLanguage();
    void oneDocument();
    void samePageAsTheApplications();
    void samePageOnAnyScreen_data();
    void samePageOnAnyScreen();
    void chosenBlank_data();
    void chosenBlank();
    void unknownBlank();
    void background();
    void organisation();
    void organisationThatCannotBeRead_data();
    void organisationThatCannotBeRead();
    void unknownDocument();
    void unknownDocumentsDoNotStopTheRest();
    void filteredDocuments();
    void aFilePerDocument();
    void oneFileForAll();
    void documentWithoutBlankDoesNotStopTheRest();
    void namesFitForFiles();
    void noDatabase();
    void brokenDatabase();
    void unusableDatabase_data();
    void unusableDatabase();
    void outputThatCannotBeWritten_data();
    void outputThatCannotBeWritten();
    void outputThatIsFull();
    void unknownPrinter();
    void databaseStaysAsItWas();
};

void tst_ZelvoraPrint::helpInTheUsersLanguage()
{
    const ProcessResult english = runPrint({"--help"});
    QCOMPARE(english.exitCode, success);
    QVERIFY(english.out.startsWith("Usage:\n  zelvora-print "));
    QVERIFY(english.err.isEmpty());
    const ProcessResult russian = runPrint({"--id", "1", "--help"}, "ru_RU.UTF-8");
    QCOMPARE(russian.exitCode, success);
    QVERIFY(russian.out.startsWith("Использование:\n  zelvora-print "));
    QCOMPARE(runPrint({"-h"}).out, english.out);
    for (const char* option :
         {"--id",       "--all",        "--surname",     "--group",   "--type",    "--from",
          "--to",       "--where",      "--output",      "--name",    "--printer", "--copies",
          "--blank",    "--background", "--margins",     "--strict",  "--check",   "--json",
          "--proof",    "--resolution", "--calibration", "--offsets", "--quiet",   "--dir",
          "--org-data", "--help"})
    {
        QVERIFY2(english.out.contains(option) && russian.out.contains(option), option);
    }
}

void tst_ZelvoraPrint::messagesInTheUsersLanguage()
{
    const PrintDirectory directory;
    const ProcessResult english = directory.print({"--all", "--color"});
    QCOMPARE(english.exitCode, failure);
    QVERIFY(english.out.isEmpty());
    QCOMPARE(english.err, QByteArray("zelvora-print: unknown option: color\n"
                                     "Help: zelvora-print --help\n"));
    const ProcessResult russian = directory.print({"--all", "--color"}, "ru_RU.UTF-8");
    QCOMPARE(QString::fromUtf8(russian.err),
             QString("zelvora-print: неизвестный ключ: color\nСправка: zelvora-print --help\n"));
}

void tst_ZelvoraPrint::oneDocument()
{
    const PrintDirectory directory;
    const QString file = directory.path("one.pdf");
    const ProcessResult result = directory.print({"--id", "1", "--output", file});
    QCOMPARE(result.exitCode, success);
    QCOMPARE(QString::fromUtf8(result.out), file + "\n");
    QVERIFY2(result.err.isEmpty(), result.err);

    const PdfMeasure pdf(file);
    QCOMPARE(pdf.pageCount(), 1);
    QCOMPARE(pdf.text(), QString("Бланк: Иванов"));
    QVERIFY(qAbs(pdf.pageSize().width() - 297) < 0.5);
    // The symbol's dark corner at 604 less 7 units (2 mm), 104 and 11 (-3 mm); 793 units on 210 mm.
    const double unit = 210.0 / 793;
    const QRectF symbol = pdf.ink(QRectF(150, 20, 50, 50));
    QVERIFY(qAbs(symbol.left() - 597 * unit) < 0.3);
    QVERIFY(qAbs(symbol.top() - 115 * unit) < 0.3);
    QVERIFY(qAbs(symbol.width() - 65 * unit) < 0.3);
}

void tst_ZelvoraPrint::samePageAsTheApplications()
{
    PrintDirectory directory;
    const QVariant document = directory.addFullPage();
    const QString ours = directory.path("ours.pdf");
    QCOMPARE(directory.print({"--id", document.toString(), "--blank", "Полный", "--output", ours})
                 .exitCode,
             success);

    // The application's way: a shown dialog whose event loop has run.
    const QVariant blank = directory.value("SELECT ID FROM blanks WHERE NAME = 'Полный'");
    PrinPreviewDialog dialog(document);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY(dialog.buildScene(dialog.pageScene(), document, blank));
    QTest::qWait(50);
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(directory.path("application.pdf"));
    QVERIFY(dialog.printTo(printer));
    QCOMPARE(PdfMeasure(ours).image(), PdfMeasure(directory.path("application.pdf")).image());
    QVERIFY(PdfMeasure(ours).ink().width() > 150);
}

void tst_ZelvoraPrint::samePageOnAnyScreen_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");
    QTest::newRow("small fonts") << "QT_FONT_DPI"
                                 << "72";
    QTest::newRow("large fonts") << "QT_FONT_DPI"
                                 << "144";
    QTest::newRow("very large fonts") << "QT_FONT_DPI"
                                      << "200";
    QTest::newRow("dense screen") << "QT_SCALE_FACTOR"
                                  << "2";
}

void tst_ZelvoraPrint::samePageOnAnyScreen()
{
    QFETCH(QString, variable);
    QFETCH(QString, value);
    constexpr double tolerance = 0.1; // millimetres
    PrintDirectory directory;
    const QVariant document = directory.addFullPage();
    const auto printOn = [&](const QString& dpi, const QString& name) {
        QProcessEnvironment environment = noDisplay("C.UTF-8");
        environment.insert(variable, dpi);
        const QString file = directory.path(name);
        const ProcessResult result =
            runPrint({"--dir", directory.path(), "--id", document.toString(), "--blank", "Полный",
                      "--output", file},
                     environment);
        return result.exitCode == success ? file : QString();
    };
    const PdfMeasure usual(printOn(variable == "QT_FONT_DPI" ? "96" : "1", "usual.pdf"));
    const PdfMeasure other(printOn(value, "other.pdf"));
    const QVector<PdfMeasure::Word> expected = usual.words();
    const QVector<PdfMeasure::Word> words = other.words();
    QVERIFY(expected.size() > 10);
    QCOMPARE(words.size(), expected.size());
    for (int i = 0; i < words.size(); ++i) {
        const QRectF& place = words[i].box;
        const QRectF& told = expected[i].box;
        QCOMPARE(words[i].text, expected[i].text);
        QVERIFY2(qAbs(place.left() - told.left()) <= tolerance &&
                     qAbs(place.right() - told.right()) <= tolerance &&
                     qAbs(place.top() - told.top()) <= tolerance &&
                     qAbs(place.bottom() - told.bottom()) <= tolerance,
                 qPrintable(words[i].text));
    }
    const QRectF stroke = other.ink(QRectF(80, 25, 79, 32)); // below a text, the rest of its frame
    const QRectF strokeTold = usual.ink(QRectF(80, 25, 79, 32));
    QVERIFY(strokeTold.width() > 70);
    QVERIFY(qAbs(stroke.top() - strokeTold.top()) <= tolerance);
    QVERIFY(qAbs(stroke.bottom() - strokeTold.bottom()) <= tolerance);
}

void tst_ZelvoraPrint::chosenBlank_data()
{
    QTest::addColumn<QString>("blank");
    QTest::addColumn<QString>("text");
    QTest::newRow("first of the form") << ""
                                       << "Бланк: Иванов";
    QTest::newRow("by ID") << "2"
                           << "Книга: Иванов";
    QTest::newRow("by name") << "Книга"
                             << "Книга: Иванов";
}

void tst_ZelvoraPrint::chosenBlank()
{
    QFETCH(QString, blank);
    QFETCH(QString, text);
    const PrintDirectory directory;
    QCOMPARE(directory.portrait.toInt(), 2);
    const QString file = directory.path("one.pdf");
    const QStringList choice = blank.isEmpty() ? QStringList() : QStringList{"--blank", blank};
    QCOMPARE(directory.print(QStringList{"--id", "1", "--output", file} + choice).exitCode,
             success);
    QCOMPARE(PdfMeasure(file).text(), text);
}

void tst_ZelvoraPrint::unknownBlank()
{
    const PrintDirectory directory;
    for (const QString blank : {"Чужой", "3", "Нет такого"}) {
        const ProcessResult result =
            directory.print({"--id", "1", "--blank", blank, "--output", directory.path("x.pdf")});
        QCOMPARE(result.exitCode, failure);
        QCOMPARE(QString::fromUtf8(result.err),
                 "zelvora-print: document 1: it has no blank " + blank + "\n");
        QVERIFY(!QFile::exists(directory.path("x.pdf")));
    }
}

void tst_ZelvoraPrint::background()
{
    const PrintDirectory directory;
    const QString file = directory.path("one.pdf");
    const QStringList common = {"--id", "1", "--blank", "Книга", "--output", file};
    QCOMPARE(directory.print(common).exitCode, success);
    QVERIFY(PdfMeasure(file).ink().height() < 20); // the text alone
    QCOMPARE(directory.print(common + QStringList{"--background"}).exitCode, success);
    QVERIFY(PdfMeasure(file).ink().height() > 200); // the black picture
}

void tst_ZelvoraPrint::organisation()
{
    const PrintDirectory directory;
    QFile data(directory.path("org.json"));
    QVERIFY(data.open(QIODevice::WriteOnly));
    data.write("{\"region\": \"Тверская область\"}");
    data.close();
    const QString file = directory.path("one.pdf");
    const QStringList common = {"--id", "1", "--blank", "Книга", "--output", file};
    QCOMPARE(directory.print(common + QStringList{"--org-data", data.fileName()}).exitCode,
             success);
    QCOMPARE(PdfMeasure(file).text(), QString("Книга: Иванов Тверская область"));
    const ProcessResult missing = directory.print(common + QStringList{"--org-data", "/no/such"});
    QCOMPARE(missing.exitCode, failure);
    QCOMPARE(missing.err, QByteArray("zelvora-print: there is no file /no/such\n"));
}

void tst_ZelvoraPrint::organisationThatCannotBeRead_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isNamed");
    for (const bool isNamed : {true, false}) {
        const QByteArray of = isNamed ? "named: " : "the user's: ";
        QTest::newRow(of + "empty") << QByteArray() << isNamed;
        QTest::newRow(of + "cut off") << QByteArray("{\"region\": \"Твер") << isNamed;
        QTest::newRow(of + "no object") << QByteArray("[\"region\"]") << isNamed;
    }
}

// It would print as nothing, on numbered paper.
void tst_ZelvoraPrint::organisationThatCannotBeRead()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isNamed);
    const PrintDirectory directory;
    const QString path = directory.path(isNamed ? "org.json" : "home/Zelvora/orgData.json");
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile data(path);
    QVERIFY(data.open(QIODevice::WriteOnly));
    QCOMPARE(data.write(content), qint64(content.size()));
    data.close();
    const auto run = [&](const QStringList& arguments) {
        QProcessEnvironment environment = noDisplay("C.UTF-8");
        environment.insert("XDG_DATA_HOME", directory.path("home"));
        QStringList all = QStringList{"--dir", directory.path()} + arguments;
        if (isNamed) {
            all << "--org-data" << path;
        }
        return runPrint(all, environment);
    };
    const QString file = directory.path("one.pdf");
    for (const QStringList& job :
         {QStringList{"--id", "1", "--output", file}, QStringList{"--check", "--id", "1"},
          QStringList{"--proof", "--id", "1", "--output", file + ".png"}})
    {
        const ProcessResult result = run(job);
        QCOMPARE(result.exitCode, failure);
        QCOMPARE(QString::fromUtf8(result.err),
                 "zelvora-print: can't read the organisation's data " + path + "\n");
        QVERIFY(!QFile::exists(file));
    }
    // A sheet of scales says nothing of the organisation.
    const ProcessResult sheet = run({"--calibration", "--blank", "Книга", "--output", file});
    QCOMPARE(sheet.exitCode, isNamed ? failure : success);
}

void tst_ZelvoraPrint::unknownDocument()
{
    const PrintDirectory directory;
    const ProcessResult result =
        directory.print({"--id", "77", "--output", directory.path("x.pdf")});
    QCOMPARE(result.exitCode, failure);
    QCOMPARE(result.err, QByteArray("zelvora-print: there is no document 77\n"));
    QCOMPARE(directory.print({"--id", "70-80", "--output", directory.path("x.pdf")}).err,
             QByteArray("zelvora-print: there are no such documents\n"));
    QVERIFY(!QFile::exists(directory.path("x.pdf")));
}

void tst_ZelvoraPrint::unknownDocumentsDoNotStopTheRest()
{
    const PrintDirectory directory;
    const QString file = directory.path("x.pdf");
    const ProcessResult result = directory.print({"--id", "77,2,5", "--output", file});
    QCOMPARE(result.exitCode, someFailed);
    QCOMPARE(result.err, QByteArray("zelvora-print: there is no document 77\n"
                                    "zelvora-print: there is no document 5\n"));
    QCOMPARE(PdfMeasure(file).pageCount(), 1);
    QCOMPARE(PdfMeasure(file).text(), QString("Бланк: Петрова"));
}

void tst_ZelvoraPrint::aFilePerDocument()
{
    const PrintDirectory directory;
    const ProcessResult result =
        directory.print({"--all", "--output", directory.path("out/pages")});
    QVERIFY2(result.err.isEmpty(), result.err);
    QCOMPARE(result.exitCode, success);
    const QStringList files = {"1_Иванов_Иван.pdf", "2_Петрова_Иван.pdf", "3_Иваненко_Иван.pdf",
                               "4_О'Нил_Иван.pdf"};
    QCOMPARE(directory.filesIn("out/pages"), files);
    QCOMPARE(result.out.count('\n'), 1 + 4); // a summary of the check, and the files
    QCOMPARE(PdfMeasure(directory.path("out/pages/" + files[1])).text(), QString("Бланк: Петрова"));
    QCOMPARE(PdfMeasure(directory.path("out/pages/" + files[3])).text(), QString("Чужой"));
}

void tst_ZelvoraPrint::oneFileForAll()
{
    const PrintDirectory directory;
    const QString file = directory.path("all.pdf");
    const ProcessResult result = directory.print({"--all", "--output", file});
    QCOMPARE(result.exitCode, success);
    QVERIFY(QString::fromUtf8(result.out).endsWith("findings: 0\n" + file + "\n"));
    const PdfMeasure pdf(file);
    QCOMPARE(pdf.pageCount(), 4);
    QCOMPARE(pdf.text(1), QString("Бланк: Иванов"));
    QCOMPARE(pdf.text(2), QString("Бланк: Петрова"));
    QCOMPARE(pdf.text(3), QString("Бланк: Иваненко"));
    QCOMPARE(pdf.text(4), QString("Чужой"));
}

void tst_ZelvoraPrint::filteredDocuments()
{
    const PrintDirectory directory;
    QCOMPARE(directory
                 .print({"--surname", "Иван", "--where", "DOC_GROUP = '9А' AND ID > 1", "--output",
                         directory.path("out")})
                 .exitCode,
             success);
    QCOMPARE(directory.filesIn("out"), QStringList("3_Иваненко_Иван.pdf"));
}

void tst_ZelvoraPrint::documentWithoutBlankDoesNotStopTheRest()
{
    PrintDirectory directory;
    directory.person("Безбланков", "9А", "2023-06-25", 3);
    directory.person("Последняя", "9А", "2023-06-25");
    for (const QString target : {"out", "all.pdf"}) {
        const ProcessResult result =
            directory.print({"--all", "--group", "9А", "--output", directory.path(target)});
        QCOMPARE(result.exitCode, someFailed);
        QCOMPARE(result.err, QByteArray("zelvora-print: document 6: no blank prints it\n"));
    }
    QCOMPARE(directory.filesIn("out").size(), 3);
    QCOMPARE(PdfMeasure(directory.path("all.pdf")).pageCount(), 3);
    QCOMPARE(PdfMeasure(directory.path("all.pdf")).text(3), QString("Бланк: Последняя"));
}

void tst_ZelvoraPrint::namesFitForFiles()
{
    PrintDirectory directory;
    directory.person("../Сидоров/\\:*?\"<>|", "5", "2023-06-25");
    directory.person("", "5", "2023-06-25");
    QCOMPARE(directory.print({"--all", "--group", "5", "--output", directory.path("out")}).exitCode,
             success);
    const QStringList expected = {"6_.._Сидоров__________Иван.pdf", "7__Иван.pdf"};
    QCOMPARE(directory.filesIn("out"), expected);
}

void tst_ZelvoraPrint::noDatabase()
{
    const QTemporaryDir empty;
    const ProcessResult result =
        runPrint({"--dir", empty.path(), "--all", "--output", empty.filePath("x.pdf")});
    QCOMPARE(result.exitCode, failure);
    QVERIFY(result.err.contains("can't open the database " + empty.filePath("docs.db").toUtf8()));
    QVERIFY(QDir(empty.path()).isEmpty());
}

void tst_ZelvoraPrint::brokenDatabase()
{
    const QTemporaryDir dir;
    QFile file(dir.filePath("docs.db"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("это не база данных\n").repeated(100));
    file.close();
    const ProcessResult result =
        runPrint({"--dir", dir.path(), "--all", "--output", dir.filePath("x.pdf")});
    QCOMPARE(result.exitCode, failure);
    QVERIFY(result.err.contains("zelvora-print: can't read the documents: "));
}

void tst_ZelvoraPrint::unusableDatabase_data()
{
    QTest::addColumn<QString>("damage");
    QTest::addColumn<QString>("message");
    const QString endless =
        "ALTER TABLE %1 RENAME TO old; CREATE VIEW %1 AS WITH RECURSIVE n(i) AS "
        "(SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT old.* FROM n, old";
    for (const QString table : {"docs", "blanks", "forms"}) {
        QTest::newRow(qPrintable("endless view of " + table))
            << endless.arg(table)
            << "the database has computations in the place of the table " + table;
    }
    QTest::newRow("no content") << "ALTER TABLE docs DROP COLUMN CONTENT"
                                << "the table docs has no column CONTENT";
    QTest::newRow("no surname") << "ALTER TABLE docs RENAME COLUMN LNAME TO lname"
                                << "the table docs has no column LNAME";
    QTest::newRow("no offset") << "ALTER TABLE blanks DROP COLUMN OFFSET_X"
                               << "the table blanks has no column OFFSET_X";
}

void tst_ZelvoraPrint::unusableDatabase()
{
    QFETCH(QString, damage);
    QFETCH(QString, message);
    PrintDirectory directory;
    QCOMPARE(runProcess("sqlite3", {directory.path("docs.db"), damage}).err, QByteArray());
    for (const QStringList& action :
         {QStringList{"--output", directory.path("x.pdf")}, QStringList{"--check"}})
    {
        const ProcessResult result = directory.print(action + QStringList{"--id", "1"});
        QCOMPARE(result.exitCode, failure);
        QCOMPARE(QString::fromUtf8(result.err), "zelvora-print: " + message + "\n");
        QCOMPARE(result.out, QByteArray());
    }
    QVERIFY(!QFile::exists(directory.path("x.pdf")));
}

void tst_ZelvoraPrint::outputThatCannotBeWritten_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("message");
    QTest::newRow("no such folder") << "no/such/x.pdf"
                                    << "can't write the file ";
    QTest::newRow("below a file") << "docs.db/out"
                                  << "can't make the folder ";
}

void tst_ZelvoraPrint::outputThatCannotBeWritten()
{
    QFETCH(QString, output);
    QFETCH(QString, message);
    const PrintDirectory directory;
    const QString path = directory.path(output);
    const ProcessResult result = directory.print({"--id", "1", "--output", path});
    QCOMPARE(result.exitCode, failure);
    QCOMPARE(QString::fromUtf8(result.err), "zelvora-print: " + message + path + "\n");
    QVERIFY(result.out.isEmpty());
}

void tst_ZelvoraPrint::outputThatIsFull()
{
    class FullDevice : public QIODevice
    {
    protected:
        qint64 readData(char*, qint64) override { return -1; }
        qint64 writeData(const char*, qint64) override { return -1; }
    };
    FullDevice device;
    QVERIFY(device.open(QIODevice::WriteOnly));
    for (const QStringList& arguments : {QStringList{"--help"}, QStringList{"--offsets", "1", "2"}})
    {
        QTextStream out(&device);
        QString errors;
        QTextStream err(&errors);
        QCOMPARE(runPrintTool(arguments, out, err), 2);
        QCOMPARE(errors, QString("zelvora-print: can't write to the standard output\n"));
    }
}

void tst_ZelvoraPrint::unknownPrinter()
{
    const PrintDirectory directory;
    const ProcessResult result = directory.print({"--id", "1", "--printer", "Нет такого"});
    QCOMPARE(result.exitCode, failure);
    QCOMPARE(QString::fromUtf8(result.err),
             QString("zelvora-print: there is no printer Нет такого\n"));
}

void tst_ZelvoraPrint::databaseStaysAsItWas()
{
    const PrintDirectory directory;
    const QByteArray before = directory.dump();
    QCOMPARE(directory.print({"--all", "--output", directory.path("out")}).exitCode, success);
    QCOMPARE(directory.dump(), before);
}

QTEST_MAIN(tst_ZelvoraPrint)
#include "tst_ZelvoraPrint.moc"
