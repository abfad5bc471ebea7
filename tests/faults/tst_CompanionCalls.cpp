#include <QtTest>

#include <QRegularExpression>
#include <QTemporaryDir>

#include <xlsxdocument.h>

#include "FaultRun.h"
#include "FaultSweep.h"
#include "support/PrintProgram.h"

/// Every call on files fails once in the companion programs: an older file or the new one stands,
/// and the exit status tells the truth.
class tst_CompanionCalls : public QObject
{
    Q_OBJECT

private slots:
    void create();
    void sample();
    void package();
    void pdfFile();
    void pdfFolder();
    void proof();
    void report();
    void cleanupTestCase();

private:
    using Check = std::function<void(const FaultRun&, const Files&)>;

    FaultRun run(const QString& program, const QStringList& arguments, const Files& before,
                 const Fault& fault) const;
    void sweep(const QString& program, const QStringList& arguments, const Files& before,
               const Check& check, int expense = 1);
    void print(const QStringList& arguments, const QStringList& targets);
    Files printFiles() const;
    QString path(const QString& file) const { return m_directory.filePath(file); }

    QTemporaryDir m_directory{fastFolder() + "/zelvora-faults-XXXXXX"};
    FaultSweep m_sweep;
};

namespace {

const QByteArray older = "an older file of this name";

/// A PDF file without the time at which it was made.
QByteArray withoutTime(QByteArray content)
{
    static const QRegularExpression time("D:\\d{14}[^)]*|\\d{4}-\\d\\d-\\d\\dT[0-9:.+Z-]+");
    return QString::fromLatin1(content).remove(time).toLatin1();
}

/// Names of the files, but for the parts that a killed program leaves: ".zelvora-...",
/// "x.pdf.AbCdEf".
QStringList namesIn(const Files& files)
{
    QStringList names;
    for (auto it = files.begin(); it != files.end(); ++it) {
        const QString name = it.key().section('/', -1);
        static const QRegularExpression part("^\\.|\\.[A-Za-z]{6}$|\\.new(-journal)?$");
        if (!part.match(name).hasMatch()) {
            names << it.key();
        }
    }
    return names;
}

/// Number of the last row that a workbook has; -1 if it has none.
int lastRowOf(const QString& workbook)
{
    return QXlsx::Document(workbook).dimension().lastRow();
}

} // namespace

FaultRun tst_CompanionCalls::run(const QString& program, const QStringList& arguments,
                                 const Files& before, const Fault& fault) const
{
    putFiles(m_directory.path(), before);
    return runWithFault(QString(ZELVORA_BIN_DIR) + "/tools/" + program, arguments,
                        m_directory.path(), fault, false);
}

void tst_CompanionCalls::sweep(const QString& program, const QStringList& arguments,
                               const Files& before, const Check& check, int expense)
{
    m_sweep.sweep(
        program + " " + arguments.value(0),
        [&](const Fault& fault) { return run(program, arguments, before, fault); },
        [&](const FaultRun& result) {
            const bool isTold = !result.err.isEmpty() || !result.out.isEmpty();
            QVERIFY(!result.isEnded || result.exitCode == 0 || isTold);
            check(result, filesIn(m_directory.path()));
        },
        expense);
}

void tst_CompanionCalls::create()
{
    const QStringList arguments = {"create", path("new.db")};
    QCOMPARE(run("zelvora-db", arguments, {}, {}).exitCode, 0);
    const QByteArray made = rowsOf(path("new.db"));
    QVERIFY(made.startsWith("ok\n"));
    sweep("zelvora-db", arguments, {}, [&](const FaultRun& result, const Files& left) {
        QVERIFY(left.contains("new.db") || result.exitCode != 0);
        QVERIFY(!left.contains("new.db") || rowsOf(path("new.db")) == made);
    });
}

// The database comes last: where there is one, all is there.
void tst_CompanionCalls::sample()
{
    const QStringList arguments = {"sample", m_directory.path()};
    QCOMPARE(run("zelvora-db", arguments, {}, {}).exitCode, 0);
    const QByteArray made = rowsOf(path("docs.db"));
    QVERIFY(made.startsWith("ok\n"));
    const Files whole = filesIn(m_directory.path());
    // One background is drawn anew, with the calls of all of them; drawing is nearly all of a run.
    Files before;
    for (const QString& name : namesIn(whole).filter("blanks/")) {
        before[name] = whole[name];
    }
    QVERIFY(before.remove("blanks/reference-a5.png") == 1 && before.size() > 1);
    QMap<QString, int> lastRows; // the files differ by the time at which they were made
    for (const QString& name : namesIn(whole).filter(".xlsx")) {
        lastRows[name] = lastRowOf(path(name));
        QVERIFY(lastRows[name] > 2);
    }
    const auto check = [&](const FaultRun& result, const Files& left) {
        const bool isDone = left.contains("docs.db");
        QVERIFY(isDone || result.exitCode != 0);
        QVERIFY(!isDone || rowsOf(path("docs.db")) == made);
        QVERIFY(!isDone || namesIn(left) == namesIn(whole));
        for (const QString& name : namesIn(left)) {
            if (name.endsWith(".xlsx")) {
                QVERIFY2(lastRowOf(path(name)) == lastRows[name], qPrintable(name));
            } else if (!name.endsWith(".db")) {
                QVERIFY2(left[name] == whole[name], qPrintable(name));
            }
        }
    };
    sweep("zelvora-db", arguments, before, check, 2);
}

void tst_CompanionCalls::package()
{
    const Files before = {{"manifest.json",
                           "{\"update_version\": \"1.2.0.0\", \"parts\": [{\"version\": "
                           "\"1.2.0.0\", \"sql\": \"DELETE FROM lists\"}]}"},
                          {"update.bin", older}};
    const QStringList arguments = {"make", path("manifest.json"), path("update.bin")};
    QCOMPARE(run("zelvora-update", arguments, before, {}).exitCode, 0);
    const QByteArray made = filesIn(m_directory.path())["update.bin"];
    QVERIFY(made.contains("update_version"));
    const auto check = [&](const FaultRun& result, const Files& left) {
        const QByteArray stored = left["update.bin"];
        QVERIFY(stored == made || (stored == older && result.exitCode != 0));
    };
    sweep("zelvora-update", arguments, before, check, 0);
}

Files tst_CompanionCalls::printFiles() const
{
    Files files;
    {
        const PrintDirectory directory;
        files = filesIn(directory.path());
    }
    files["org.json"] = "{\"region\": \"Тверская область\"}";
    return files;
}

// What stands at a target is the older file or the whole new one; of success all new ones.
void tst_CompanionCalls::print(const QStringList& arguments, const QStringList& targets)
{
    Files before = printFiles();
    for (const QString& target : targets) {
        before[target] = older;
    }
    const QStringList all =
        arguments + QStringList{"--dir", m_directory.path(), "--org-data", path("org.json")};
    QCOMPARE(run("zelvora-print", all, before, {}).exitCode, 0);
    const Files whole = filesIn(m_directory.path());
    for (const QString& target : targets) {
        QVERIFY(whole[target].size() > 1000);
    }
    sweep("zelvora-print", all, before, [&](const FaultRun& result, const Files& left) {
        for (const QString& target : targets) {
            const bool isNew = withoutTime(left[target]) == withoutTime(whole[target]);
            const bool isClaimed = result.exitCode == 0 || result.out.contains(path(target));
            QVERIFY2(isNew || (left[target] == older && !isClaimed), qPrintable(target));
        }
        QVERIFY(rowsOf(path("docs.db")).startsWith("ok\n"));
    });
}

void tst_CompanionCalls::pdfFile()
{
    print({"--id", "1-3", "--blank", "Книга", "--output", path("all.pdf")}, {"all.pdf"});
}

void tst_CompanionCalls::pdfFolder()
{
    print({"--id", "1,2", "--blank", "Книга", "--output", path("pages"), "--name", "{#LNAME}.pdf"},
          {"pages/Иванов.pdf", "pages/Петрова.pdf"});
}

void tst_CompanionCalls::proof()
{
    print({"--proof", "--id", "1", "--blank", "Книга", "--output", path("proof.png")},
          {"proof.png"});
}

// A page that could not be looked at must not pass for one without findings.
void tst_CompanionCalls::report()
{
    const Files before = printFiles();
    const QStringList arguments = {"--check",          "--id",       "1-3",
                                   "--blank",          "Книга",      "--dir",
                                   m_directory.path(), "--org-data", path("org.json")};
    const FaultRun whole = run("zelvora-print", arguments, before, {});
    QCOMPARE(whole.exitCode, 0);
    QCOMPARE(whole.out, QStringList{"Documents checked: 3, findings: 0"});
    sweep("zelvora-print", arguments, before, [&](const FaultRun& result, const Files&) {
        QVERIFY(result.exitCode != 0 || result.out == whole.out);
    });
}

void tst_CompanionCalls::cleanupTestCase()
{
    m_sweep.tell();
}

QTEST_MAIN(tst_CompanionCalls)
#include "tst_CompanionCalls.moc"
