#include <QtTest>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlQuery>

#include <memory>

#include "documents/Archive.h"
#include "store/DataBase.h"
#include "support/InterruptedChange.h"
#include "support/Process.h"
#include "support/TempApplication.h"

namespace {

const QString program = QString(ZELVORA_BIN_DIR) + "/tools/zelvora-db";

/// What the sqlite3 program answers.
QString sqlite(const QString& file, const QString& statement)
{
    return QString::fromUtf8(runProcess("sqlite3", {file, statement}).out).trimmed();
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

const char* const documents = "SELECT group_concat(LNAME) FROM docs";

} // namespace

/// Dated archives of a database that may be in use, made by the companion program.
class tst_Backup : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void archiveHoldsTheDatabase();
    void applicationTakesTheArchive();
    void nothingIsMadeIfNothingHasChanged();
    void archivesOfOneSecondAreAllKept();
    void clockThatWentBack_data();
    void clockThatWentBack();
    void oldestBeyondAreRemoved();
    void onlyOwnNamesAreRemoved();
    void changeOnItsWayIsNotInIt();
    void newestChangesInAnotherFileAreInIt();
    void heldDatabaseIsWaitedForAndReported();
    void interruptedChangeIsNotInIt();
    void whatIsNoSoundDatabaseIsRefused_data();
    void whatIsNoSoundDatabaseIsRefused();
    void fullDiskLeavesNothing();
    void unwritableFolder();
    void signalEndsTheWait();
    void leftoversAreRemoved();
    void wrongUse_data();
    void wrongUse();

private:
    ProcessResult backup(const QStringList& more = QStringList()) const
    {
        return runProcess(program, QStringList{"backup", path("docs.db"), path("archives")} + more);
    }
    QString path(const QString& relative = QString()) const { return m_app->path(relative); }
    QStringList archives() const
    {
        return QDir(path("archives"))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    void addDocument(const QString& surname) const
    {
        QCOMPARE(sqlite(path("docs.db"),
                        "INSERT INTO docs (LNAME, TEMPLATE) VALUES ('" + surname + "', 0)"),
                 QString());
    }
    /// Archives of the first days of a year long ago.
    void makeOldArchives(int count) const;
    /// Refused with one line that ends so, and nothing is made.
    void isRefused(const ProcessResult& result, const QString& end) const;

    std::unique_ptr<TempApplication> m_app;
};

void tst_Backup::init()
{
    m_app = std::make_unique<TempApplication>(TempApplication::Database::None);
    QVERIFY(QDir(path()).mkdir("archives"));
    QCOMPARE(runProcess(program, {"create", path("docs.db")}).exitCode, 0);
    addDocument("Иванов");
}

void tst_Backup::cleanup()
{
    m_app.reset();
}

void tst_Backup::makeOldArchives(int count) const
{
    for (int day = 1; day <= count; ++day) {
        writeFile(path(QString("archives/docs_auto_2001-01-0%1_12-00-00.zlv").arg(day)), "old");
    }
}

void tst_Backup::isRefused(const ProcessResult& result, const QString& end) const
{
    const QString told = QString::fromUtf8(result.err);
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(told.startsWith("zelvora-db: ") && told.endsWith(end + "\n"), qPrintable(told));
    QCOMPARE(told.count('\n'), 1);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(archives(), QStringList());
}

void tst_Backup::archiveHoldsTheDatabase()
{
    const QByteArray before = contentOf(path("docs.db"));
    const QDateTime start = QDateTime::currentDateTime();
    const ProcessResult result = backup();
    QVERIFY2(result.exitCode == 0, result.err.constData());
    QCOMPARE(archives().size(), 1);
    const QString name = archives().first();
    QCOMPARE(QString::fromUtf8(result.out), "Made the archive " + path("archives/" + name) + "\n");
    const QRegularExpressionMatch match =
        QRegularExpression("^docs_auto_(.{19})\\.zlv$").match(name);
    QVERIFY2(match.hasMatch(), qPrintable(name));
    const QDateTime made = QDateTime::fromString(match.captured(1), "yyyy-MM-dd_hh-mm-ss");
    QVERIFY(made >= start.addSecs(-1) && made <= QDateTime::currentDateTime());
    const QString archive = path("archives/" + name);
    QCOMPARE(sqlite(archive, "PRAGMA integrity_check"), QString("ok"));
    QCOMPARE(sqlite(archive, ".dump"), sqlite(path("docs.db"), ".dump"));
    QVERIFY(QFile::permissions(archive).testFlag(QFile::ReadGroup)); // as any file of the user
    QCOMPARE(contentOf(path("docs.db")), before);
    QCOMPARE(QDir(path()).entryList(QDir::Files | QDir::Hidden), QStringList("docs.db"));
}

void tst_Backup::applicationTakesTheArchive()
{
    QCOMPARE(backup().exitCode, 0);
    addDocument("Петрова");
    QVERIFY(dataBase.open());
    QVERIFY(replaceDatabase(path("archives/" + archives().first())));
    QVERIFY(dataBase.open());
    {
        QSqlQuery query(documents);
        QVERIFY(query.next());
        QCOMPARE(query.value(0).toString(), QString("Иванов"));
        // And goes on with it.
        QVERIFY(query.exec("INSERT INTO docs (LNAME, TEMPLATE) VALUES ('Сидоров', 0)"));
    }
    dataBase.close();
    QCOMPARE(sqlite(path("docs.db"), documents), QString("Иванов,Сидоров"));
    QCOMPARE(sqlite(path("docs_backup.db"), documents), QString("Иванов,Петрова"));
}

void tst_Backup::nothingIsMadeIfNothingHasChanged()
{
    QCOMPARE(backup().exitCode, 0);
    const QStringList first = archives();
    for (int i = 0; i < 2; ++i) {
        const ProcessResult result = backup();
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(QString::fromUtf8(result.out),
                 "The database has not changed, it is kept in the archive " +
                     path("archives/" + first.first()) + "\n");
        QCOMPARE(archives(), first);
    }
    addDocument("Петрова");
    QCOMPARE(backup().exitCode, 0);
    QCOMPARE(archives().size(), 2);
    QCOMPARE(sqlite(path("archives/" + archives().last()), documents), QString("Иванов,Петрова"));
    QCOMPARE(sqlite(path("archives/" + archives().first()), documents), QString("Иванов"));
}

void tst_Backup::archivesOfOneSecondAreAllKept()
{
    for (int i = 0; i < 4; ++i) {
        addDocument("x");
        QCOMPARE(backup().exitCode, 0);
    }
    QCOMPARE(archives().size(), 4);
}

void tst_Backup::clockThatWentBack_data()
{
    QTest::addColumn<int>("minutesAhead");
    QTest::newRow("at the end of summer time") << 59;
    QTest::newRow("by years, since it was wrong") << 5 * 365 * 24 * 60;
}

void tst_Backup::clockThatWentBack()
{
    QFETCH(int, minutesAhead);
    const QDateTime later = QDateTime::currentDateTime().addSecs(qint64(60) * minutesAhead);
    const QString ahead = "docs_auto_" + later.toString("yyyy-MM-dd_hh-mm-ss") + ".zlv";
    writeFile(path("archives/" + ahead), "old");
    QCOMPARE(backup().exitCode, 0);
    QVERIFY(backup().out.startsWith("The database has not changed"));
    QCOMPARE(archives().size(), 2);
    // The one that is made is never the one to go.
    addDocument("Петрова");
    QCOMPARE(backup({"--keep", "1"}).exitCode, 0);
    QCOMPARE(archives().size(), 1);
    QCOMPARE(sqlite(path("archives/" + archives().first()), documents), QString("Иванов,Петрова"));
}

void tst_Backup::oldestBeyondAreRemoved()
{
    makeOldArchives(4);
    const ProcessResult result = backup({"--keep", "3"});
    QVERIFY2(result.exitCode == 0, result.err.constData());
    QCOMPARE(archives().size(), 3);
    QCOMPARE(archives().mid(0, 2), (QStringList{"docs_auto_2001-01-03_12-00-00.zlv",
                                                "docs_auto_2001-01-04_12-00-00.zlv"}));
    QVERIFY(result.out.contains("Removed the old archive " +
                                path("archives/docs_auto_2001-01-01_12-00-00.zlv").toUtf8()));
    // With fewer wanted, even if nothing is made.
    QCOMPARE(backup({"--keep=1"}).exitCode, 0);
    QCOMPARE(archives().size(), 1);
    QCOMPARE(sqlite(path("archives/" + archives().first()), documents), QString("Иванов"));
}

void tst_Backup::onlyOwnNamesAreRemoved()
{
    const QStringList others{"docs_01-01-01 12-00.zlv", "docs_auto_2001-01-01.zlv",
                             "docs_auto_2001-01-01_12-00-00.zlv.txt",
                             "my docs_auto_2001-01-01_12-00-00.zlv",
                             "other_auto_2001-01-01_12-00-00.zlv"};
    for (const QString& name : others) {
        writeFile(path("archives/" + name), "mine");
    }
    writeFile(path("stranger"), "mine");
    const QString link = path("archives/docs_auto_2001-01-01_12-00-00.zlv");
    QVERIFY(QFile::link(path("stranger"), link));
    for (int i = 0; i < 3; ++i) {
        addDocument("x");
        QCOMPARE(backup({"--keep", "1"}).exitCode, 0);
    }
    QCOMPARE(archives().size(), others.size() + 2);
    for (const QString& name : others) {
        QCOMPARE(contentOf(path("archives/" + name)), QByteArray("mine"));
    }
    QVERIFY(QFileInfo(link).isSymLink());
}

void tst_Backup::changeOnItsWayIsNotInIt()
{
    const ProcessResult result =
        runPython("import sqlite3, subprocess, sys\n"
                  "change = sqlite3.connect(sys.argv[1], isolation_level=None)\n"
                  "change.execute('BEGIN IMMEDIATE')\n"
                  "change.execute('DELETE FROM docs')\n"
                  "result = subprocess.run(sys.argv[2:])\n"
                  "change.execute('COMMIT')\n"
                  "sys.exit(result.returncode)\n",
                  {path("docs.db"), program, "backup", path("docs.db"), path("archives")});
    QVERIFY2(result.exitCode == 0, result.err.constData());
    QCOMPARE(archives().size(), 1);
    QCOMPARE(sqlite(path("archives/" + archives().first()), documents), QString("Иванов"));
    QCOMPARE(sqlite(path("docs.db"), documents), QString());
}

void tst_Backup::newestChangesInAnotherFileAreInIt()
{
    const ProcessResult result =
        runPython("import sqlite3, subprocess, sys\n"
                  "log = sqlite3.connect(sys.argv[1], isolation_level=None)\n"
                  "log.execute('PRAGMA journal_mode = WAL')\n"
                  "log.execute(\"INSERT INTO docs (LNAME) VALUES ('Петрова')\")\n"
                  "sys.exit(subprocess.run(sys.argv[2:]).returncode)\n",
                  {path("docs.db"), program, "backup", path("docs.db"), path("archives")});
    QVERIFY2(result.exitCode == 0, result.err.constData());
    QCOMPARE(archives().size(), 1);
    const QString archive = path("archives/" + archives().first());
    QCOMPARE(sqlite(archive, "PRAGMA journal_mode"), QString("delete"));
    QCOMPARE(sqlite(archive, documents), QString("Иванов,Петрова"));
}

void tst_Backup::heldDatabaseIsWaitedForAndReported()
{
    const char* const script = "import sqlite3, subprocess, sys, threading\n"
                               "change = sqlite3.connect(sys.argv[1], isolation_level=None,\n"
                               "                         check_same_thread=False)\n"
                               "change.execute('BEGIN EXCLUSIVE')\n"
                               "if sys.argv[2] == 'a while':\n"
                               "    threading.Timer(2, lambda: change.execute('COMMIT')).start()\n"
                               "result = subprocess.run(sys.argv[3:], stderr=subprocess.PIPE)\n"
                               "sys.stderr.buffer.write(result.stderr)\n"
                               "sys.exit(result.returncode)\n";
    const QStringList command{program, "backup", path("docs.db"), path("archives")};
    isRefused(runPython(script, QStringList{path("docs.db"), "for ever"} + command),
              path("docs.db") + ": database is locked");
    QCOMPARE(runPython(script, QStringList{path("docs.db"), "a while"} + command).exitCode, 0);
    QCOMPARE(archives().size(), 1);
}

void tst_Backup::interruptedChangeIsNotInIt()
{
    QVERIFY(QFile::rename(path("docs.db"), path("live.db")));
    QCOMPARE(makeInterruptedChange(path("live.db"), path("docs.db")), QByteArray());
    const QByteArray database = contentOf(path("docs.db"));
    const QByteArray journal = contentOf(path("docs.db-journal"));
    QVERIFY(database.contains("half") && !journal.isEmpty());
    const ProcessResult result = backup();
    QVERIFY2(result.exitCode == 0, result.err.constData());
    QCOMPARE(archives().size(), 1);
    QCOMPARE(sqlite(path("archives/" + archives().first()), documents), QString("Иванов"));
    QCOMPARE(contentOf(path("docs.db")), database);
    QCOMPARE(contentOf(path("docs.db-journal")), journal);
}

void tst_Backup::whatIsNoSoundDatabaseIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("end");
    QTest::newRow("text") << QByteArray("no database\n").repeated(100) << "file is not a database";
    QTest::newRow("empty") << QByteArray() << "the file has no table docs, no archive was made: ";
    QTest::newRow("damaged") << QByteArray("damage") << "";
}

void tst_Backup::whatIsNoSoundDatabaseIsRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, end);
    if (end.isEmpty()) {
        QCOMPARE(runProcess(program, {"sample", path("sample")}).exitCode, 0);
        bytes = contentOf(path("sample/docs.db"));
        bytes.replace(40000, 20000, QByteArray(20000, '\x7f'));
    }
    writeFile(path("docs.db"), bytes);
    makeOldArchives(3);
    const ProcessResult result = backup({"--keep", "1"});
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.err.trimmed().count('\n'), 0);
    QVERIFY2(
        QString::fromUtf8(result.err).contains(end.isEmpty() ? "the database is damaged" : end),
        result.err.constData());
    QCOMPARE(archives().size(), 3); // the good ones stay
    QCOMPARE(contentOf(path("docs.db")), bytes);
}

void tst_Backup::fullDiskLeavesNothing()
{
    makeOldArchives(3);
    const QStringList before = archives();
    const ProcessResult result =
        runPython("import os, resource, signal, subprocess, sys\n"
                  "def fill_disk():\n"
                  "    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)\n"
                  "    resource.setrlimit(resource.RLIMIT_FSIZE, (20000, 20000))\n"
                  "sys.exit(subprocess.run(sys.argv[1:], preexec_fn=fill_disk,\n"
                  "                        restore_signals=False).returncode)\n",
                  {program, "backup", path("docs.db"), path("archives"), "--keep", "1"});
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.err.count('\n'), 1);
    QCOMPARE(archives(), before);
}

void tst_Backup::unwritableFolder()
{
    QVERIFY(QDir().rmdir(path("archives")));
    const ProcessResult result = backup();
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(QString::fromUtf8(result.err),
             "zelvora-db: no such folder: " + path("archives") + "\n");
    QVERIFY(!QFileInfo::exists(path("archives"))); // of a disk that is not there, perhaps
}

void tst_Backup::signalEndsTheWait()
{
    // The unfinished archive stands in the folder while the database is held.
    const ProcessResult result =
        runPython("import os, sqlite3, subprocess, sys, time\n"
                  "change = sqlite3.connect(sys.argv[1], isolation_level=None)\n"
                  "change.execute('BEGIN EXCLUSIVE')\n"
                  "program = subprocess.Popen(sys.argv[2:], stderr=subprocess.PIPE)\n"
                  "while not os.listdir(sys.argv[-1]):\n"
                  "    time.sleep(0.02)\n"
                  "program.terminate()\n"
                  "sys.stderr.buffer.write(program.communicate(timeout=10)[1])\n"
                  "sys.exit(program.returncode)\n",
                  {path("docs.db"), program, "backup", path("docs.db"), path("archives")});
    isRefused(result, "interrupted, no archive was made");
}

void tst_Backup::leftoversAreRemoved()
{
    const QString old = path("archives/.zelvora-0123456789abcdef0123456789abcdef.zlv");
    const QString young = path("archives/.zelvora-00000000000000000000000000000000.zlv");
    for (const QString& name : {old, young}) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        const int hours = name == young ? 23 : 25;
        QVERIFY(file.setFileTime(QDateTime::currentDateTimeUtc().addSecs(qint64(-3600) * hours),
                                 QFileDevice::FileModificationTime));
    }
    QCOMPARE(backup().exitCode, 0);
    QVERIFY(!QFile::exists(old) && QFile::exists(young));
}

void tst_Backup::wrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("end");
    const QString usage = "a file and a folder are needed: zelvora-db backup FILE DIR [--keep N]";
    QTest::newRow("nothing") << QStringList() << usage;
    QTest::newRow("no folder") << QStringList("docs.db") << usage;
    QTest::newRow("empty folder") << QStringList{"docs.db", ""} << usage;
    QTest::newRow("three places") << QStringList{"docs.db", "a", "b"} << usage;
    for (const char* number : {"0", "-1", "x", "", "1.5", "100001"}) {
        QTest::addRow("keep %s", number)
            << QStringList{"docs.db", "archives", "--keep", number}
            << QString("--keep is no number from 1 to 100000: ") + number;
    }
    QTest::newRow("keep twice") << QStringList{"docs.db", "archives", "--keep", "1", "--keep", "2"}
                                << "given twice: --keep";
    QTest::newRow("unknown option")
        << QStringList{"docs.db", "archives", "--kept", "1"} << "'kept'.";
    QTest::newRow("no file") << QStringList{"none.db", "archives"} << "no such file: none.db";
}

void tst_Backup::wrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, end);
    isRefused(runProcess(program, QStringList("backup") + arguments), end);
}

QTEST_GUILESS_MAIN(tst_Backup)
#include "tst_Backup.moc"
