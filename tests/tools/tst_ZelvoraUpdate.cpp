#include <QtTest>

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include "store/UpdateFixture.h"
#include "support/Process.h"

/// The companion program that makes and prints update packages.
class tst_ZelvoraUpdate : public QObject
{
    Q_OBJECT

private slots:
    void makesTheBytesOfTheFormat();
    void showGivesTheManifestBack();
    void madePackageIsApplied();
    void wrongManifest_data();
    void wrongManifest();
    void cutOffPackageIsShownAsFar();
    void garbageIsNoPackage_data();
    void garbageIsNoPackage();
    void fileErrors();
    void statementsAgainstTheTransaction_data();
    void statementsAgainstTheTransaction();
    void otherStatementsPass_data();
    void otherStatementsPass();
    void whatIsNoFileIsNeverReplaced();
    void databaseOrManifestIsNeverReplaced();
    void endlessInputIsRefused();
    void linkToAFileIsFollowed();
    void firstSignalEndsAReadThatWaits();
    void nothingForATerminal();
    void help_data();
    void help();
    void fullOutputIsAFailure();
    void hugeFileIsNoPackage();
    void manifestWithoutParts();

private:
    QString write(const QString& name, const QByteArray& bytes);
    QByteArray read(const QString& name);

    QTemporaryDir m_dir;
};

namespace {

ProcessResult run(const QStringList& arguments)
{
    return runProcess(QString(ZELVORA_BIN_DIR) + "/tools/zelvora-update", arguments);
}

const char* const manifest = R"({
    "update_version": "1.2.0.0",
    "parts": [
        { "version": "1.1.0.0", "sql": "DELETE FROM lists WHERE LIST_NAME = 'Пол'" },
        { "version": "1.2.0.0", "type": "sqlQuery", "ignore_errors": true,
          "sql": ["ALTER TABLE docs", "ADD COLUMN NOTE TEXT"] },
        { "version": "1.2.0.0", "type": "cppFunction", "function_name": "crutchFrdoA",
          "argument": "[{\"tag\": \"#SEX\", \"list\": IDL_SEX}]" }
    ]
})";

QByteArray expectedPackage()
{
    return packPackage(
        R"({"update_version":"1.2.0.0"})",
        {{R"({"version":"1.1.0.0"})", "DELETE FROM lists WHERE LIST_NAME = 'Пол'", ""},
         {R"({"ignore_errors":true,"type":"sqlQuery","version":"1.2.0.0"})",
          "ALTER TABLE docs\nADD COLUMN NOTE TEXT", ""},
         {R"({"function_name":"crutchFrdoA","type":"cppFunction","version":"1.2.0.0"})",
          "[{\"tag\": \"#SEX\", \"list\": IDL_SEX}]", ""}});
}

} // namespace

QString tst_ZelvoraUpdate::write(const QString& name, const QByteArray& bytes)
{
    QFile file(m_dir.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        QTest::qFail("cannot write", __FILE__, __LINE__);
    }
    return file.fileName();
}

QByteArray tst_ZelvoraUpdate::read(const QString& name)
{
    QFile file(m_dir.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_ZelvoraUpdate::makesTheBytesOfTheFormat()
{
    const ProcessResult made =
        run({"make", write("manifest.json", manifest), m_dir.filePath("dbUpdate.bin")});
    QVERIFY2(made.exitCode == 0, made.err);
    QVERIFY(made.out.contains("3"));
    QCOMPARE(read("dbUpdate.bin").toHex(' '), expectedPackage().toHex(' '));
}

void tst_ZelvoraUpdate::showGivesTheManifestBack()
{
    const ProcessResult shown = run({"show", write("shown.bin", expectedPackage())});
    QCOMPARE(shown.exitCode, 0);
    QCOMPARE(QJsonDocument::fromJson(shown.out).object(),
             QJsonDocument::fromJson(manifest).object());
    QCOMPARE(run({"make", write("again.json", shown.out), m_dir.filePath("again.bin")}).exitCode,
             0);
    QCOMPARE(read("again.bin"), expectedPackage());
}

void tst_ZelvoraUpdate::madePackageIsApplied()
{
    TempApplication app;
    const QByteArray source =
        "{\"update_version\": \"2.0.0.0\", \"parts\": [{\"version\": \"2.0.0.0\", "
        "\"sql\": \"INSERT INTO lists (LIST_NAME) VALUES ('из пакета')\"}]}";
    QCOMPARE(run({"make", write("one.json", source), app.path("dbUpdate.bin")}).exitCode, 0);
    const ProcessResult applied =
        runProcess(QString(ZELVORA_BIN_DIR) + "/tests/store/update_worker", {app.path()});
    QCOMPARE(applied.exitCode, 0);
    QCOMPARE(app.value("SELECT LIST_NAME FROM lists").toString(), QString("из пакета"));
}

void tst_ZelvoraUpdate::wrongManifest_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QString>("place");
    const QByteArray part = R"({"update_version": "1.2.0.0", "parts": [)";
    const QByteArray good = R"({"version": "1.2.0.0", "sql": "x"}, )";
    QTest::newRow("no JSON") << QByteArray("{\n  \"update_version\": \"1.2.0.0\",\n  oops\n}")
                             << "line 3, column 3";
    QTest::newRow("empty") << QByteArray() << "line 1, column 1";
    QTest::newRow("an array") << QByteArray("[]") << "top level";
    QTest::newRow("no version") << QByteArray("{}") << "update_version";
    QTest::newRow("three numbers")
        << QByteArray(R"({"update_version": "1.2.0"})") << "update_version";
    QTest::newRow("line end behind the version")
        << QByteArray(R"({"update_version": "9.2.0.0\n"})") << "update_version";
    QTest::newRow("version twice") << QByteArray(R"({"update_version": "9.9.9.9", "parts": [],
"update_version": "1.2.0.0"})") << "line 2, column 1: the key is given twice: update_version";
    QTest::newRow("statement twice, once escaped")
        << part + R"({"version": "1.2.0.0", "sql": "{\"a\": \"\\", "s\u0071l": "y"}]})"
        << "line 1, column 87: the key is given twice: sql";
    QTest::newRow("unknown key") << QByteArray(R"({"update_version": "1.2.0.0", "part": []})")
                                 << "part: unknown";
    QTest::newRow("parts no array")
        << QByteArray(R"({"update_version": "1.2.0.0", "parts": {}})") << "parts: an array";
    QTest::newRow("part no object") << part + "5]}"
                                    << "parts[0]: an object";
    QTest::newRow("part without version") << part + good + R"({"sql": "x"}]})"
                                          << "parts[1].version";
    QTest::newRow("part above the package") << part + R"({"version": "1.2.0.1", "sql": "x"}]})"
                                            << "parts[0].version";
    QTest::newRow("unknown type") << part + R"({"version": "1.2.0.0", "type": "sql", "sql": "x"}]})"
                                  << "parts[0].type";
    QTest::newRow("no statement") << part + R"({"version": "1.2.0.0"}]})"
                                  << "parts[0].sql";
    QTest::newRow("blank statement") << part + R"({"version": "1.2.0.0", "sql": " "}]})"
                                     << "parts[0].sql";
    QTest::newRow("line no text") << part + R"({"version": "1.2.0.0", "sql": ["a", 1]}]})"
                                  << "parts[0].sql";
    QTest::newRow("flag no bool")
        << part + R"({"version": "1.2.0.0", "ignore_errors": 1, "sql": "x"}]})"
        << "parts[0].ignore_errors";
    QTest::newRow("unknown function")
        << part + R"({"version": "1.2.0.0", "type": "cppFunction", "function_name": "f",
                      "argument": "x"}]})"
        << "parts[0].function_name";
    QTest::newRow("statement of a function")
        << part + R"({"version": "1.2.0.0", "type": "cppFunction",
                      "function_name": "crutchFrdoA", "sql": "x"}]})"
        << "parts[0].sql: unknown";
}

void tst_ZelvoraUpdate::wrongManifest()
{
    QFETCH(QByteArray, source);
    QFETCH(QString, place);
    const ProcessResult made =
        run({"make", write("wrong.json", source), m_dir.filePath("wrong.bin")});
    QCOMPARE(made.exitCode, 2);
    QVERIFY2(QString::fromUtf8(made.err).contains("wrong.json: " + place), made.err);
    QVERIFY(!QFile::exists(m_dir.filePath("wrong.bin")));
}

void tst_ZelvoraUpdate::cutOffPackageIsShownAsFar()
{
    const QByteArray package = expectedPackage();
    const ProcessResult shown = run({"show", write("cut.bin", package.left(package.size() - 3))});
    QCOMPARE(shown.exitCode, 2);
    QVERIFY(shown.err.contains("cut off behind part 2"));
    QCOMPARE(QJsonDocument::fromJson(shown.out).object()["parts"].toArray().size(), 2);
}

// Almost any bytes are a byte array, and parts of nothing, to a stream.
void tst_ZelvoraUpdate::garbageIsNoPackage_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("zeros") << QByteArray(64, 0);
    QTest::newRow("no value") << QByteArray(4, '\xff');
    QTest::newRow("text") << QByteArray("This is no package at all.");
    QTest::newRow("no header") << packPackage("hello", {});
    QTest::newRow("header without a version") << packPackage("{}", {});
    QTest::newRow("part that is no object")
        << packPackage(R"({"update_version":"1.2.0.0"})", {{"[1]", "DELETE FROM lists", ""}});
}

void tst_ZelvoraUpdate::garbageIsNoPackage()
{
    QFETCH(QByteArray, bytes);
    const QString path = write("garbage.bin", bytes);
    const ProcessResult shown = run({"show", path});
    QCOMPARE(shown.exitCode, 2);
    QCOMPARE(QString::fromUtf8(shown.err),
             "zelvora-update: " + path + ": this is no update package\n");
    QCOMPARE(shown.out, QByteArray());
}

void tst_ZelvoraUpdate::fileErrors()
{
    const QString missing = m_dir.filePath("missing.json");
    const ProcessResult made = run({"make", missing, m_dir.filePath("never.bin")});
    QCOMPARE(made.exitCode, 2);
    QVERIFY(QString::fromUtf8(made.err).contains(missing));
    QVERIFY(!QFile::exists(m_dir.filePath("never.bin")));
    QCOMPARE(run({"show", missing}).exitCode, 2);
    QCOMPARE(
        run({"make", write("ok.json", manifest), m_dir.filePath("no/such/folder.bin")}).exitCode,
        2);
}

void tst_ZelvoraUpdate::statementsAgainstTheTransaction_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("word");
    const auto row = [](const char* statement, const char* word) {
        QTest::newRow(statement) << QString(statement) << word;
    };
    for (const char* word : {"COMMIT", "ROLLBACK", "END", "BEGIN", "SAVEPOINT", "RELEASE", "ATTACH",
                             "DETACH", "VACUUM"})
    {
        row(word, word);
    }
    row("commit;", "COMMIT");
    row("End Transaction", "END");
    row("ROLLBACK TO a", "ROLLBACK");
    row("ATTACH 'x.db' AS x", "ATTACH");
    row("VACUUM INTO 'x.db'", "VACUUM");
    row(" \n\t;; COMMIT", "COMMIT");
    row("\uFEFFCOMMIT", "COMMIT"); // a byte order mark is white space
    row("-- harmless\nCOMMIT", "COMMIT");
    row("/* harmless; */COMMIT", "COMMIT");
    row("/**/ -- a\n /* b */ ; /* c */ END", "END");
    row("DELETE FROM lists; COMMIT", "COMMIT");
    row("DELETE FROM lists WHERE LIST_NAME = 'it''s; '; COMMIT", "COMMIT");
    row("DELETE FROM [a;b]; COMMIT", "COMMIT");
    row("INSERT OR ROLLBACK INTO lists (ID) VALUES (1)", "ROLLBACK");
    row("CREATE TRIGGER t AFTER INSERT ON docs BEGIN SELECT 1; END; COMMIT", "COMMIT");
    row("CREATE TRIGGER t AFTER INSERT ON docs BEGIN SELECT RAISE(ROLLBACK, 'x'); END", "ROLLBACK");
    QTest::newRow("behind a byte order mark") << QString(QChar(0xfeff)) + "COMMIT"
                                              << "COMMIT";
}

void tst_ZelvoraUpdate::statementsAgainstTheTransaction()
{
    QFETCH(QString, statement);
    QFETCH(QString, word);
    const QJsonObject part{{"version", "1.2.0.0"}, {"sql", statement}};
    const QJsonObject source{{"update_version", "1.2.0.0"}, {"parts", QJsonArray{part}}};
    const ProcessResult made = run(
        {"make", write("against.json", QJsonDocument(source).toJson()), m_dir.filePath("a.bin")});
    QCOMPARE(made.exitCode, 2);
    QVERIFY2(made.err.endsWith("against.json: parts[0].sql: " + word.toUtf8() +
                               " is not possible: an update is one transaction\n"),
             made.err);
    QVERIFY(!QFile::exists(m_dir.filePath("a.bin")));
}

void tst_ZelvoraUpdate::otherStatementsPass_data()
{
    QTest::addColumn<QString>("statement");
    for (const char* statement :
         {"INSERT INTO lists (LIST_NAME) VALUES ('; COMMIT')", "DELETE FROM lists -- ; COMMIT",
          "DELETE FROM lists /* ; COMMIT */", "DELETE FROM lists /* never closed; COMMIT",
          "UPDATE lists SET LIST_NAME = CASE WHEN ID THEN 'a' END",
          "UPDATE lists SET \"a; COMMIT\" = 1", "UPDATE lists SET [a; COMMIT] = 1",
          "UPDATE lists SET `a; COMMIT` = 1", "ALTER TABLE docs ADD COLUMN COMMITTED TEXT",
          "CREATE TRIGGER t AFTER INSERT ON docs BEGIN SELECT CASE 1 WHEN 1 THEN 2 END; END",
          "CREATE TEMPORARY TRIGGER t AFTER INSERT ON docs BEGIN SELECT 1; SELECT 2; END",
          "END$ IS NO END",
          "CREATE TEMP TRIGGER t AFTER INSERT ON docs BEGIN SELECT 1; SELECT 2; END"})
    {
        QTest::newRow(statement) << QString(statement);
    }
}

void tst_ZelvoraUpdate::otherStatementsPass()
{
    QFETCH(QString, statement);
    const QJsonObject part{{"version", "1.2.0.0"}, {"sql", statement}};
    const QJsonObject source{{"update_version", "1.2.0.0"}, {"parts", QJsonArray{part}}};
    const ProcessResult made =
        run({"make", write("pass.json", QJsonDocument(source).toJson()), m_dir.filePath("p.bin")});
    QVERIFY2(made.exitCode == 0, made.err);
}

void tst_ZelvoraUpdate::whatIsNoFileIsNeverReplaced()
{
    const QString source = write("good.json", manifest);
    const QString pipe = m_dir.filePath("pipe");
    const QString folder = m_dir.filePath("folder");
    const QString link = m_dir.filePath("link-to-device");
    QCOMPARE(runPython("import os, sys\nos.mkfifo(sys.argv[1])\nos.mkdir(sys.argv[2])\n"
                       "os.symlink('/dev/full', sys.argv[3])\n",
                       {pipe, folder, link})
                 .exitCode,
             0);
    for (const QString& target : {pipe, folder, link}) {
        const ProcessResult made = run({"make", source, target});
        QCOMPARE(made.exitCode, 2);
        QCOMPARE(QString::fromUtf8(made.err),
                 "zelvora-update: " + target + ": this is no regular file, it is not replaced\n");
        QVERIFY(QFileInfo::exists(target) && !QFileInfo(target).isFile());
    }
    QVERIFY(QFileInfo(link).isSymLink());
}

void tst_ZelvoraUpdate::databaseOrManifestIsNeverReplaced()
{
    const QString source = write("good.json", manifest);
    const QString database = write("docs.db", QByteArray("SQLite format 3\0 and the rest", 30));
    const QString link = m_dir.filePath("link-to-database.bin");
    QVERIFY(QFile::link(database, link));
    for (const QString& target : {database, link}) {
        const ProcessResult made = run({"make", source, target});
        QCOMPARE(made.exitCode, 2);
        QCOMPARE(QString::fromUtf8(made.err),
                 "zelvora-update: " + target + ": this is a database, it is not replaced\n");
    }
    QCOMPARE(QFileInfo(database).size(), 30);
    QCOMPARE(run({"make", source, source}).exitCode, 2);
    QFile kept(source);
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), QByteArray(manifest));
}

void tst_ZelvoraUpdate::endlessInputIsRefused()
{
    QCOMPARE(run({"show", "/dev/zero"}).exitCode, 2);
    QCOMPARE(run({"make", "/dev/zero", m_dir.filePath("x.bin")}).exitCode, 2);
    QVERIFY(!QFileInfo::exists(m_dir.filePath("x.bin")));
}

void tst_ZelvoraUpdate::linkToAFileIsFollowed()
{
    const QString file = write("behind.bin", "old");
    const QString link = m_dir.filePath("link.bin");
    QVERIFY(QFile::link(file, link));
    QCOMPARE(run({"make", write("linked.json", manifest), link}).exitCode, 0);
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(read("behind.bin"), expectedPackage());
}

void tst_ZelvoraUpdate::firstSignalEndsAReadThatWaits()
{
    const QString pipe = m_dir.filePath("manifest-to-come");
    QCOMPARE(runPython("import os, sys\nos.mkfifo(sys.argv[1])\n", {pipe}).exitCode, 0);
    // Once the other end is open, the program waits for what will never come.
    const ProcessResult result =
        runPython("import os, subprocess, sys\n"
                  "program = subprocess.Popen(sys.argv[2:])\n"
                  "end = os.open(sys.argv[1], os.O_WRONLY)\n"
                  "program.terminate()\n"
                  "print(program.wait(timeout=20))\n",
                  {pipe, QString(ZELVORA_BIN_DIR) + "/tools/zelvora-update", "make", pipe,
                   m_dir.filePath("never.bin")});
    QCOMPARE(result.out, QByteArray("-15\n"));
    QVERIFY(!QFile::exists(m_dir.filePath("never.bin")));
}

void tst_ZelvoraUpdate::nothingForATerminal()
{
    const QByteArray clear = "\x1b[2J";
    const ProcessResult missing = run({"show", "no" + clear + "\n.bin"});
    QCOMPARE(missing.exitCode, 2);
    QVERIFY(!missing.err.contains('\x1b') && missing.err.count('\n') == 1);
    QVERIFY(missing.err.contains("no [2J .bin"));

    // A manifest's text may hold what JSON leaves as it is: here the sequence in one character.
    const QByteArray sql = "SELECT '\xc2\x9b"
                           "2J\x7f'";
    const QByteArray made = QByteArray(R"({"update_version": "1.2.0.0", "parts": [)"
                                       R"({"version": "1.2.0.0", "sql": ")") +
                            sql + "\"}]}";
    const QString package = m_dir.filePath("terminal.bin");
    QCOMPARE(run({"make", write("terminal.json", made), package}).exitCode, 0);
    const ProcessResult shown = run({"show", package});
    QVERIFY(!shown.out.contains("\xc2\x9b") && !shown.out.contains('\x7f'));
    QVERIFY(shown.out.contains("\\u009b2J\\u007f"));
    const QJsonArray parts = QJsonDocument::fromJson(shown.out).object()["parts"].toArray();
    QVERIFY(QJsonDocument(parts).toJson().contains(sql));
}

void tst_ZelvoraUpdate::help_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("asked for") << QStringList{"--help"} << 0;
    QTest::newRow("asked for in short") << QStringList{"-h"} << 0;
    QTest::newRow("another command") << QStringList{"mend", "x", "y"} << 2;
    QTest::newRow("nothing") << QStringList{} << 2;
    QTest::newRow("unknown command") << QStringList{"apply", "x"} << 2;
    QTest::newRow("too few") << QStringList{"make", "x"} << 2;
}

void tst_ZelvoraUpdate::help()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    const ProcessResult result = run(arguments);
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY((exitCode == 0 ? result.out : result.err).contains("zelvora-update make"));
}

// A status may be all that a script reads.
void tst_ZelvoraUpdate::fullOutputIsAFailure()
{
    const QString package = m_dir.filePath("good.bin");
    QCOMPARE(run({"make", write("good.json", manifest), package}).exitCode, 0);
    const ProcessResult result =
        runPython("import subprocess, sys\n"
                  "full = open('/dev/full', 'w')\n"
                  "sys.exit(subprocess.call(sys.argv[1:], stdout=full))\n",
                  {QString(ZELVORA_BIN_DIR) + "/tools/zelvora-update", "show", package});
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(QString::fromUtf8(result.err),
             QString("zelvora-update: can't write to the standard output\n"));
}

void tst_ZelvoraUpdate::hugeFileIsNoPackage()
{
    const QString huge = m_dir.filePath("huge.bin");
    QFile file(huge);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.resize((64 << 20) + 1));
    const ProcessResult result = run({"show", huge});
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(QString::fromUtf8(result.err),
             "zelvora-update: " + huge + ": this is no file, or too large\n");
}

void tst_ZelvoraUpdate::manifestWithoutParts()
{
    const QString package = m_dir.filePath("empty.bin");
    const ProcessResult made =
        run({"make", write("empty.json", R"({"update_version": "1.2.0.0"})"), package});
    QVERIFY2(made.exitCode == 0, made.err);
    QCOMPARE(read("empty.bin"), packPackage(R"({"update_version":"1.2.0.0"})", {}));
}

QTEST_MAIN(tst_ZelvoraUpdate)
#include "tst_ZelvoraUpdate.moc"
