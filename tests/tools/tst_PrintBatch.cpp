#include <QtTest>

#include <QImage>
#include <QProcess>

#include "support/PdfMeasure.h"
#include "support/PrintProgram.h"

namespace {

constexpr int success = 0;
constexpr int someFailed = 1;
constexpr int failure = 2;

/// A directory with many documents of a class of their own.
class ManyDocuments : public PrintDirectory
{
public:
    explicit ManyDocuments(int count)
    {
        exec("WITH RECURSIVE numbers(i) AS "
             "(SELECT 1 UNION ALL SELECT i + 1 FROM numbers WHERE i < ?) "
             "INSERT INTO docs (LNAME, FNAME, BLANK_NO, DOC_TYPE, DOC_GROUP, TEMPLATE, CONTENT) "
             "SELECT 'Фамилия' || i, 'Имя', 1000 + i, 1, 'Много', 0, '{}' FROM numbers",
             {count});
    }
};

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

/// Whether there are pseudo-terminals, which a container may lack.
bool hasPseudoTerminals()
{
    return runPython("import pty\npty.openpty()\n").exitCode == 0;
}

/// What a terminal that is standard error, and standard output too if `bothStreams`, receives.
QString onTerminal(const QStringList& arguments, bool bothStreams = false,
                   const QString& locale = "C.UTF-8")
{
    const ProcessResult result =
        runPython(R"(
import os, pty, subprocess, sys
locale, streams, *command = sys.argv[1:]
master, slave = pty.openpty()
out = slave if streams == 'both' else subprocess.DEVNULL
program = subprocess.Popen(command, stderr=slave, stdout=out, env=dict(os.environ, LC_ALL=locale))
os.close(slave)
while True:
    try:
        data = os.read(master, 65536)
    except OSError:
        break
    if not data:
        break
    sys.stdout.buffer.write(data)
sys.exit(program.wait())
)",
                  QStringList{locale, bothStreams ? "both" : "errors", printProgram()} + arguments);
    return QString::fromUtf8(result.out);
}

/// What can be read on a terminal in the end: each line as it was last written over.
QStringList readable(const QString& received)
{
    QStringList lines;
    for (const QString& line : received.split('\n')) {
        QString shown;
        for (const QString& part : line.split('\r')) {
            shown.replace(0, part.size(), part);
        }
        if (!shown.trimmed().isEmpty()) {
            lines << shown.trimmed();
        }
    }
    return lines;
}

/// A batch of many documents that is on its way into a file that was there before.
class LongBatch
{
public:
    /// Behind what a shell is to do before it becomes the program, if anything.
    explicit LongBatch(const QString& shell = QString(), int documents = 600)
        : directory(documents)
    {
        QVERIFY(QDir(directory.path()).mkdir("out"));
        writeFile(file, "old");
        process.start("sh", {"-c", shell + " exec \"$0\" \"$@\"", printProgram(), "--dir",
                             directory.path(), "--all", "--output", file});
    }

    void signal(const QString& name)
    {
        const QStringList kill{"-c", "kill -" + name + " " + QString::number(process.processId())};
        QCOMPARE(runProcess("sh", kill).exitCode, 0);
    }

    /// Whether pages stand in the hidden file beside it.
    bool hasBegun() const
    {
        const QFileInfoList files =
            QDir(directory.path("out")).entryInfoList({".zelvora-*"}, QDir::Files | QDir::Hidden);
        return !files.isEmpty() && files.first().size() > 10000;
    }

    const ManyDocuments directory;
    const QString file = directory.path("out/x.pdf");
    QProcess process;
};

const char* const noPseudoTerminals = "there are no pseudo-terminals here";

} // namespace

/// Many documents in one go.
class tst_PrintBatch : public QObject
{
    Q_OBJECT

private slots:
    void copiesInOneFile();
    void copiesInFiles();
    void copiesStandWhereTheFirstStands();
    void papersDoNotMeet();
    void namesByPattern();
    void sameNamesKeepAllDocuments();
    void olderFileIsReplaced();
    void fullDiskKeepsTheOlderFile_data();
    void fullDiskKeepsTheOlderFile();
    void interruptedRunLeavesNothing_data();
    void interruptedRunLeavesNothing();
    void ignoredSignalStaysIgnored();
    void firstSignalEndsAWriteThatWaits();
    void readerThatGoesAway_data();
    void readerThatGoesAway();
    void interruptedRunKeepsWholeFiles();
    void interruptedLook_data();
    void interruptedLook();
    void killedRunKeepsTheOlderFile();
    void linkInAFolderIsReplaced();
    void whatIsNoFileIsNeverReplaced();
    void databaseIsNeverReplaced();
    void leftoversOfKilledRuns();
    void firstSignalEndsALongQuery();
    void unwritableFolder();
    void folderThatTakesNoFiles();
    void failureOfOneFile();
    void memoryDoesNotGrow();
    void progressOnATerminal();
    void progressAndFailures();
    void quietOnATerminal();
    void noProgressInAPipe();
};

void tst_PrintBatch::copiesInOneFile()
{
    const PrintDirectory directory;
    const QString file = directory.path("x.pdf");
    QCOMPARE(directory.print({"--id", "2,1", "--copies", "2", "--output", file}).exitCode, success);
    const PdfMeasure pdf(file);
    QCOMPARE(pdf.pageCount(), 4);
    QCOMPARE(pdf.text(1), QString("Бланк: Петрова"));
    QCOMPARE(pdf.text(2), QString("Бланк: Петрова"));
    QCOMPARE(pdf.text(3), QString("Бланк: Иванов"));
    QCOMPARE(pdf.text(4), QString("Бланк: Иванов"));
}

void tst_PrintBatch::copiesInFiles()
{
    const PrintDirectory directory;
    QCOMPARE(directory.print({"--id", "1-2", "--copies", "3", "--output", directory.path("out")})
                 .exitCode,
             success);
    QCOMPARE(directory.filesIn("out"), (QStringList{"1_Иванов_Иван.pdf", "2_Петрова_Иван.pdf"}));
    QCOMPARE(PdfMeasure(directory.path("out/2_Петрова_Иван.pdf")).pageCount(), 3);
}

// The blank's offsets move the items of a page; they must not add up.
void tst_PrintBatch::copiesStandWhereTheFirstStands()
{
    const PrintDirectory directory;
    const QString file = directory.path("x.pdf");
    QCOMPARE(directory.print({"--id", "1", "--copies", "3", "--output", file}).exitCode, success);
    const PdfMeasure pdf(file);
    for (int page = 1; page <= 3; ++page) {
        // The symbol's dark corner at 604 less 7 units (2 mm), 104 and 11 (-3 mm).
        const double unit = 210.0 / 793;
        const QRectF symbol = pdf.ink(QRectF(150, 20, 50, 50), page);
        QVERIFY(qAbs(symbol.left() - 597 * unit) < 0.3);
        QVERIFY(qAbs(symbol.top() - 115 * unit) < 0.3);
    }
}

// A blank without a known format prints on the printer's own paper, whatever went before.
void tst_PrintBatch::papersDoNotMeet()
{
    PrintDirectory directory;
    directory.addBlank({blankItem(0, "Портрет", QRectF(50, 50, 400, 60))},
                       {{"FORM_ID", 3}, {"PAPER_FORMAT", 7}, {"PAPER_ORIENTATION", 1}});
    const QVariant own = directory.person("Сидоров", "1", "2023-06-25", 3);
    directory.exec("UPDATE blanks SET PAPER_FORMAT = 1 WHERE NAME = 'Альбом'");
    const QString file = directory.path("x.pdf");
    QCOMPARE(directory.print({"--id", "1," + own.toString() + ",1", "--output", file}).exitCode,
             success);
    const PdfMeasure pdf(file);
    QCOMPARE(pdf.pageCount(), 2);
    QVERIFY(qAbs(pdf.pageSize(1).width() - 210) < 0.5);
    QVERIFY(qAbs(pdf.pageSize(1).height() - 148) < 0.5);
    QVERIFY(qAbs(pdf.pageSize(2).width() - 210) < 0.5);
    QVERIFY(qAbs(pdf.pageSize(2).height() - 297) < 0.5);
}

void tst_PrintBatch::namesByPattern()
{
    const PrintDirectory directory;
    const ProcessResult result = directory.print(
        {"--id", "1-2", "--output", directory.path("out"), "--name", "{#LNAME}_{#BLANK_NO}.pdf"});
    QCOMPARE(result.exitCode, success);
    QCOMPARE(directory.filesIn("out"), (QStringList{"Иванов_000123.pdf", "Петрова_000123.pdf"}));
    QCOMPARE(QString::fromUtf8(result.out), "Documents checked: 2, findings: 0\n" +
                                                directory.path("out/Иванов_000123.pdf") + "\n" +
                                                directory.path("out/Петрова_000123.pdf") + "\n");
    QCOMPARE(PdfMeasure(directory.path("out/Петрова_000123.pdf")).text(),
             QString("Бланк: Петрова"));
}

void tst_PrintBatch::sameNamesKeepAllDocuments()
{
    const PrintDirectory directory;
    QCOMPARE(
        directory.print({"--id", "1-3", "--output", directory.path("out"), "--name", "{#BLANK_NO}"})
            .exitCode,
        success);
    QCOMPARE(directory.filesIn("out"),
             (QStringList{"000123 (2).pdf", "000123 (3).pdf", "000123.pdf"}));
    QCOMPARE(PdfMeasure(directory.path("out/000123.pdf")).text(), QString("Бланк: Иванов"));
    QCOMPARE(PdfMeasure(directory.path("out/000123 (2).pdf")).text(), QString("Бланк: Петрова"));
    QCOMPARE(PdfMeasure(directory.path("out/000123 (3).pdf")).text(), QString("Бланк: Иваненко"));
}

void tst_PrintBatch::olderFileIsReplaced()
{
    const PrintDirectory directory;
    QVERIFY(QDir(directory.path()).mkdir("out"));
    for (const QString& target : {directory.path("out/x.pdf"), directory.path("out")}) {
        const QString file = directory.path("out/x.pdf");
        writeFile(file, "old");
        const QStringList name = target == file ? QStringList() : QStringList{"--name", "x"};
        QCOMPARE(directory.print(QStringList{"--id", "1", "--output", target} + name).exitCode,
                 success);
        QCOMPARE(directory.filesIn("out"), QStringList("x.pdf"));
        QCOMPARE(PdfMeasure(file).text(), QString("Бланк: Иванов"));
        // As any file that the user makes, unlike the hidden one.
        QVERIFY(QFile::permissions(file).testFlag(QFile::ReadGroup));
    }
}

void tst_PrintBatch::fullDiskKeepsTheOlderFile_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("one file") << "out/x.pdf";
    QTest::newRow("a file per document") << "out";
}

void tst_PrintBatch::fullDiskKeepsTheOlderFile()
{
    QFETCH(QString, target);
    const PrintDirectory directory;
    QVERIFY(QDir(directory.path()).mkdir("out"));
    const QString file = directory.path("out/x.pdf");
    writeFile(file, "old");
    QStringList arguments = {"--dir", directory.path(), "--id",
                             "1",     "--output",       directory.path(target)};
    if (target == "out") {
        arguments << "--name"
                  << "x";
    }
    const ProcessResult result = runPython(R"(
import os, resource, signal, subprocess, sys, tempfile
def fill_disk():
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (4000, 4000))
# Counters of what a test runs, which would be cut off too, go elsewhere.
with tempfile.TemporaryDirectory() as counters:
    program = subprocess.run(sys.argv[1:], preexec_fn=fill_disk, restore_signals=False,
                             env=dict(os.environ, LC_ALL='C.UTF-8', GCOV_PREFIX=counters))
sys.exit(program.returncode)
)",
                                           QStringList(printProgram()) + arguments);
    QCOMPARE(QString::fromUtf8(result.err).trimmed().section('\n', -1),
             "zelvora-print: can't write the file " + file);
    QCOMPARE(result.exitCode, failure);
    QVERIFY(result.out.isEmpty());
    QCOMPARE(contentOf(file), QByteArray("old"));
    QCOMPARE(directory.filesIn("out"), QStringList("x.pdf"));
}

void tst_PrintBatch::interruptedRunLeavesNothing_data()
{
    QTest::addColumn<QString>("signal");
    for (const char* signal : {"INT", "TERM", "HUP"}) {
        QTest::newRow(signal) << signal;
    }
}

void tst_PrintBatch::interruptedRunLeavesNothing()
{
    QFETCH(QString, signal);
    LongBatch batch;
    QTRY_VERIFY_WITH_TIMEOUT(batch.hasBegun(), 20000);
    batch.signal(signal);
    QVERIFY(batch.process.waitForFinished());
    QCOMPARE(batch.process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(batch.process.exitCode(), failure);
    QVERIFY(batch.process.readAllStandardError().endsWith("interrupted; documents printed: 0\n"));
    QCOMPARE(contentOf(batch.file), QByteArray("old"));
    QCOMPARE(batch.directory.filesIn("out"), QStringList("x.pdf"));
}

void tst_PrintBatch::ignoredSignalStaysIgnored()
{
    LongBatch batch("trap '' HUP;", 100); // as under nohup
    QTRY_VERIFY_WITH_TIMEOUT(batch.hasBegun(), 20000);
    batch.signal("HUP");
    QVERIFY(batch.process.waitForFinished());
    QCOMPARE(batch.process.exitCode(), success);
    QCOMPARE(PdfMeasure(batch.file).pageCount(), 104); // with the four that are always there
}

// The pipe that nobody reads is full: the program waits for ever, with its pages beside the target.
void tst_PrintBatch::firstSignalEndsAWriteThatWaits()
{
    const ManyDocuments directory(20);
    QVERIFY(QDir(directory.path()).mkdir("out"));
    const QString file = directory.path("out/x.pdf");
    writeFile(file, "old");
    const ProcessResult result = runPython(
        R"(
import os, subprocess, sys, time
reader, writer = os.pipe()
os.set_blocking(writer, False)
try:
    while True:
        os.write(writer, b'x')
except BlockingIOError:
    os.set_blocking(writer, True)
program = subprocess.Popen(sys.argv[1:], stdout=writer)
def waits():  # in a call on standard output
    with open('/proc/%d/syscall' % program.pid) as call:
        return call.read().split()[1:2] == ['0x1']
while not waits():
    time.sleep(0.05)
program.terminate()
print(program.wait(timeout=40))
)",
        {printProgram(), "--dir", directory.path(), "--all", "--output", file});
    QCOMPARE(result.out, QByteArray("-15\n"));
    QCOMPARE(contentOf(file), QByteArray("old"));
    QCOMPARE(directory.filesIn("out"), QStringList("x.pdf"));
}

// As with "| head": nobody is told, and nothing is left behind.
void tst_PrintBatch::readerThatGoesAway_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("errors");
    QTest::newRow("check") << QStringList{"--check", "--margins", "100"} << "";
    QTest::newRow("proof") << QStringList{"--proof", "--output", "out"} << "";
    QTest::newRow("file") << QStringList{"--output", "out/x.pdf"} << "";
    QTest::newRow("folder") << QStringList{"--output", "out"}
                            << "zelvora-print: interrupted; documents printed: ";
}

void tst_PrintBatch::readerThatGoesAway()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, errors);
    const ManyDocuments directory(100);
    QVERIFY(QDir(directory.path()).mkdir("out"));
    const ProcessResult result = runPython(
        R"(
import os, signal, subprocess, sys
reader, writer = os.pipe()
os.close(reader)
# Python itself ignores the signal.
program = subprocess.Popen(sys.argv[2:], stdout=writer, stderr=subprocess.PIPE, cwd=sys.argv[1],
                           preexec_fn=lambda: signal.signal(signal.SIGPIPE, signal.SIG_DFL))
errors = program.communicate()[1]
sys.stdout.buffer.write(errors)
sys.exit(min(program.returncode, 0))
)",
        QStringList{directory.path(), printProgram(), "--dir", directory.path(), "--id", "1-100"} +
            arguments);
    QCOMPARE(result.exitCode, 0); // it ended by itself
    const QString told = QString::fromUtf8(result.out);
    QVERIFY2(errors.isEmpty() ? told.isEmpty() : told.startsWith(errors), qPrintable(told));
    QVERIFY2(told.count('\n') <= 1, qPrintable(told));
    for (const QString& name : directory.filesIn("out")) {
        QVERIFY2(!name.startsWith('.'), qPrintable(name));
    }
    QVERIFY(directory.filesIn("out").size() <= 1);
}

void tst_PrintBatch::interruptedRunKeepsWholeFiles()
{
    const ManyDocuments directory(600);
    QProcess process;
    process.start(printProgram(),
                  {"--dir", directory.path(), "--all", "--output", directory.path("out")});
    QTRY_VERIFY_WITH_TIMEOUT(directory.filesIn("out").size() > 3, 20000);
    process.terminate();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), someFailed);
    const QStringList files = directory.filesIn("out");
    QVERIFY(files.size() < 600);
    QVERIFY(process.readAllStandardError().endsWith(
        "interrupted; documents printed: " + QByteArray::number(files.size()) + "\n"));
    QCOMPARE(process.readAllStandardOutput().count('\n'), 1 + files.size()); // with a summary
    for (const QString& name : files) {
        QVERIFY2(!name.startsWith('.'), qPrintable(name));
    }
    QCOMPARE(PdfMeasure(directory.path("out/" + files.last())).pageCount(), 1);
}

void tst_PrintBatch::interruptedLook_data()
{
    QTest::addColumn<QStringList>("action");
    QTest::newRow("check") << QStringList{"--check", "--margins", "100"};
    QTest::newRow("proof") << QStringList{"--proof", "--output", "out"};
}

// Told as soon as it is found, so that the first line says that the look has begun.
void tst_PrintBatch::interruptedLook()
{
    QFETCH(QStringList, action);
    const ManyDocuments directory(600);
    QProcess process;
    process.setWorkingDirectory(directory.path());
    process.start(printProgram(), QStringList{"--dir", directory.path(), "--all"} + action);
    QVERIFY(process.waitForReadyRead(20000));
    process.terminate();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), someFailed);
    QCOMPARE(process.readAllStandardError(), QByteArray("zelvora-print: interrupted\n"));
    for (const QString& name : directory.filesIn("out")) {
        QVERIFY2(!name.startsWith('.'), qPrintable(name));
    }
}

void tst_PrintBatch::killedRunKeepsTheOlderFile()
{
    LongBatch batch;
    QTRY_VERIFY_WITH_TIMEOUT(batch.hasBegun(), 20000);
    batch.process.kill();
    QVERIFY(batch.process.waitForFinished());
    QCOMPARE(contentOf(batch.file), QByteArray("old"));
}

void tst_PrintBatch::linkInAFolderIsReplaced()
{
    const PrintDirectory directory;
    QVERIFY(QDir(directory.path()).mkdir("out"));
    const QString stranger = directory.path("stranger.txt");
    writeFile(stranger, "important");
    const QString place = directory.path("out/x.pdf");
    QVERIFY(QFile::link(stranger, place));
    QCOMPARE(
        directory.print({"--id", "1", "--output", directory.path("out"), "--name", "x"}).exitCode,
        success);
    QCOMPARE(contentOf(stranger), QByteArray("important"));
    QVERIFY(!QFileInfo(place).isSymLink());
    QCOMPARE(PdfMeasure(place).text(), QString("Бланк: Иванов"));
    QCOMPARE(directory.filesIn("out"), QStringList("x.pdf"));

    const QString picture = directory.path("out/1_Иванов_Иван.png");
    QVERIFY(QFile::link(stranger, picture));
    directory.print({"--proof", "--id", "1", "--output", directory.path("out")});
    QCOMPARE(contentOf(stranger), QByteArray("important"));
    QVERIFY(!QFileInfo(picture).isSymLink() && !QImage(picture).isNull());

    // Who names a link means the file behind it.
    const QString named = directory.path("named.pdf");
    QVERIFY(QFile::link(stranger, named));
    QCOMPARE(directory.print({"--id", "1", "--output", named}).exitCode, success);
    QVERIFY(QFileInfo(named).isSymLink());
    QVERIFY(contentOf(stranger).startsWith("%PDF"));
}

void tst_PrintBatch::whatIsNoFileIsNeverReplaced()
{
    const PrintDirectory directory;
    QVERIFY(QDir(directory.path()).mkdir("out"));
    const QString pipe = directory.path("out/x.pdf");
    const QString picture = directory.path("out/x.png");
    const QString device = directory.path("device.pdf");
    QCOMPARE(runPython("import os, sys\nos.mkfifo(sys.argv[1])\nos.mkfifo(sys.argv[2])\n"
                       "os.symlink('/dev/full', sys.argv[3])\n",
                       {pipe, picture, device})
                 .exitCode,
             0);
    const auto isRefused = [&](const QStringList& arguments, const QString& path) {
        const ProcessResult result = directory.print(arguments);
        QCOMPARE(QString::fromUtf8(result.err),
                 "zelvora-print: can't write the file " + path + "\n");
        QCOMPARE(result.exitCode, failure);
        QVERIFY(QFileInfo::exists(path) && !QFileInfo(path).isFile());
    };
    isRefused({"--id", "1", "--output", pipe}, pipe);
    isRefused({"--id", "1", "--output", directory.path("out"), "--name", "x"}, pipe);
    isRefused({"--proof", "--id", "1", "--output", picture}, picture);
    isRefused({"--id", "1", "--output", device}, device);
    isRefused({"--calibration", "--blank", "1", "--output", device}, device);
    QVERIFY(QFileInfo(device).isSymLink());
    QCOMPARE(directory.print({"--id", "1", "--output", "/dev/full"}).exitCode, failure);
    QVERIFY(!QFileInfo("/dev/full").isFile());
}

// Also behind a link that has the name of a page.
void tst_PrintBatch::databaseIsNeverReplaced()
{
    const PrintDirectory directory;
    QVERIFY(QFile::link(directory.path("docs.db"), directory.path("x.pdf")));
    for (const QString& target : {directory.path("docs.db"), directory.path("x.pdf")}) {
        const ProcessResult result = directory.print({"--id", "1", "--output", target});
        QCOMPARE(result.exitCode, failure);
    }
    QFile database(directory.path("docs.db"));
    QVERIFY(database.open(QIODevice::ReadOnly));
    QVERIFY(database.read(15) == "SQLite format 3");
}

void tst_PrintBatch::leftoversOfKilledRuns()
{
    const PrintDirectory directory;
    QVERIFY(QDir(directory.path()).mkdir("out"));
    const QString part = ".zelvora-AbCdEf.pdf";
    const QString other = ".zelvora-0123456789abcdef0123456789abcdef.part";
    const QStringList kept{".zelvora-AbCdE1.pdf",
                           ".zelvora-young1.pdf",
                           ".zelvora-Youngs.pdf",
                           ".zelvora.pdf",
                           "x.AbCdEf",
                           "zelvora-AbCdEf.pdf"};
    for (const QString& name : QStringList{part, other} + kept) {
        QFile file(directory.path("out/" + name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("x");
        QVERIFY(file.flush()); // now, and not after the time is set
        const int hours = name.contains("Young") ? 23 : 25;
        QVERIFY(file.setFileTime(QDateTime::currentDateTimeUtc().addSecs(-qint64(3600) * hours),
                                 QFileDevice::FileModificationTime));
    }
    QCOMPARE(
        directory.print({"--id", "1", "--output", directory.path("out"), "--name", "x"}).exitCode,
        success);
    QStringList expected = kept + QStringList("x.pdf");
    QStringList files = QDir(directory.path("out")).entryList(QDir::Files | QDir::Hidden);
    expected.sort();
    files.sort();
    QCOMPARE(files, expected);
}

void tst_PrintBatch::firstSignalEndsALongQuery()
{
    const PrintDirectory directory;
    // A query without an end, which tells of itself: the pipe takes its first letter only when the
    // program has read the organisation's data, the last thing before it.
    const QString organisation = directory.path("organisation");
    const QString endless = "(WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
                            "SELECT COUNT(*) FROM n) > 0";
    const ProcessResult result = runPython(
        R"(
import os, subprocess, sys, time
pipe = sys.argv[1]
os.mkfifo(pipe)
program = subprocess.Popen(sys.argv[2:], stderr=subprocess.PIPE)
with open(pipe, 'w') as data:
    data.write('{}')
def seconds():
    with open('/proc/%d/stat' % program.pid) as stat:
        return int(stat.read().rsplit(')', 1)[1].split()[11]) / os.sysconf('SC_CLK_TCK')
start = seconds()
while seconds() < start + 1:  # of work: no other part of the program takes so long
    time.sleep(0.05)
program.terminate()
print(program.wait(timeout=20))
)",
        {organisation, printProgram(), "--dir", directory.path(), "--org-data", organisation,
         "--where", endless, "--output", directory.path("x.pdf")});
    QCOMPARE(result.out, QByteArray("-15\n"));
    QVERIFY(!QFile::exists(directory.path("x.pdf")));
}

void tst_PrintBatch::unwritableFolder()
{
    const PrintDirectory directory;
    QVERIFY(QDir(directory.path()).mkpath("out/1_Иванов_Иван.pdf")); // a folder of that name
    const ProcessResult result =
        directory.print({"--id", "1-2", "--output", directory.path("out")});
    QCOMPARE(result.exitCode, someFailed);
    QCOMPARE(QString::fromUtf8(result.err), "zelvora-print: can't write the file " +
                                                directory.path("out/1_Иванов_Иван.pdf") + "\n");
    QCOMPARE(directory.filesIn("out"), QStringList("2_Петрова_Иван.pdf"));
}

// Told before the long check, which would be for nothing.
void tst_PrintBatch::folderThatTakesNoFiles()
{
    const PrintDirectory directory;
    const QString folder = "/proc"; // for every user
    if (!QFileInfo(folder).isDir()) {
        QSKIP("there is no folder that refuses everybody");
    }
    for (const QStringList& action : {QStringList{}, QStringList{"--proof"}}) {
        const ProcessResult result =
            directory.print(action + QStringList{"--id", "1-3", "--output", folder});
        QCOMPARE(result.exitCode, failure);
        QCOMPARE(QString::fromUtf8(result.err),
                 QString("zelvora-print: the folder takes no files: /proc\n"));
        QCOMPARE(result.out, QByteArray());
    }
}

void tst_PrintBatch::failureOfOneFile()
{
    PrintDirectory directory;
    directory.exec("UPDATE docs SET DOC_TYPE = 9 WHERE ID = 2");
    const QString file = directory.path("x.pdf");
    const ProcessResult result =
        directory.print({"--id", "1-3", "--copies", "2", "--output", file});
    QCOMPARE(result.exitCode, someFailed);
    QCOMPARE(result.err, QByteArray("zelvora-print: document 2: no blank prints it\n"));
    QCOMPARE(PdfMeasure(file).pageCount(), 4);
    QCOMPARE(PdfMeasure(file).text(3), QString("Бланк: Иваненко"));
}

void tst_PrintBatch::memoryDoesNotGrow()
{
    const ManyDocuments directory(1000);
    const auto peakKilobytes = [&](const QString& condition) {
        const ProcessResult result = runPython(
            R"(
import os, resource, subprocess, sys
# What the sanitizers keep of freed memory would hide all else.
env = dict(os.environ, ASAN_OPTIONS='quarantine_size_mb=1', LC_ALL='C.UTF-8')
subprocess.run(sys.argv[1:], check=True, stdout=subprocess.DEVNULL, env=env)
print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)
)",
            {printProgram(), "--dir", directory.path(), "--group", "Много", "--where", condition,
             "--output", directory.path("x.pdf")});
        return result.exitCode == success ? result.out.toInt() : -1;
    };
    const int few = peakKilobytes("BLANK_NO <= 1100");
    QCOMPARE(PdfMeasure(directory.path("x.pdf")).pageCount(), 100);
    const int many = peakKilobytes("1");
    const PdfMeasure pdf(directory.path("x.pdf"));
    QCOMPARE(pdf.pageCount(), 1000);
    QCOMPARE(pdf.text(1), QString("Бланк: Фамилия1"));
    QCOMPARE(pdf.text(1000), QString("Бланк: Фамилия1000"));
    QVERIFY(few > 0 && many > 0);
    // Less than 3 kB a page: names and places of objects, but no pages.
    QVERIFY2(many - few < 2700, qPrintable(QString("%1 kB, then %2 kB").arg(few).arg(many)));
}

void tst_PrintBatch::progressOnATerminal()
{
    if (!hasPseudoTerminals()) {
        QSKIP(noPseudoTerminals);
    }
    const ManyDocuments directory(150);
    const QStringList arguments = {"--dir", directory.path(), "--group",
                                   "Много", "--output",       directory.path("x.pdf")};
    const QString english = onTerminal(arguments);
    QVERIFY2(english.startsWith("\r0 of 150\r"), qPrintable(english));
    QCOMPARE(readable(english), QStringList()); // cleared in the end
    QVERIFY(onTerminal(arguments, false, "ru_RU.UTF-8").startsWith("\r0 из 150\r"));
}

void tst_PrintBatch::progressAndFailures()
{
    if (!hasPseudoTerminals()) {
        QSKIP(noPseudoTerminals);
    }
    ManyDocuments directory(30);
    directory.exec("UPDATE docs SET DOC_TYPE = 9 WHERE BLANK_NO IN (1010, 1020)");
    const QString received = onTerminal({"--dir", directory.path(), "--group", "Много", "--output",
                                         directory.path("out"), "--name", "{#BLANK_NO}"},
                                        true);
    QVERIFY2(received.contains("\r9 of 30\r"), qPrintable(received));
    QStringList lines = {"Documents checked: 28, findings: 0"};
    for (int i = 1; i <= 30; ++i) {
        lines << (i % 10 == 0 && i < 30
                      ? QString("zelvora-print: document %1: no blank prints it").arg(i + 5)
                      : directory.path(QString("out/%1.pdf").arg(1000 + i)));
    }
    QCOMPARE(readable(received), lines);
}

void tst_PrintBatch::quietOnATerminal()
{
    if (!hasPseudoTerminals()) {
        QSKIP(noPseudoTerminals);
    }
    const ManyDocuments directory(30);
    QCOMPARE(onTerminal({"--dir", directory.path(), "--group", "Много", "--quiet", "--output",
                         directory.path("x.pdf")}),
             QString());
}

void tst_PrintBatch::noProgressInAPipe()
{
    const ManyDocuments directory(30);
    const ProcessResult result =
        directory.print({"--group", "Много", "--output", directory.path("x.pdf")});
    QCOMPARE(result.exitCode, success);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(QString::fromUtf8(result.out),
             "Documents checked: 30, findings: 0\n" + directory.path("x.pdf") + "\n");
}

QTEST_MAIN(tst_PrintBatch)
#include "tst_PrintBatch.moc"
