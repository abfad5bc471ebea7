#include <QtTest>

#include <QSet>
#include <QTemporaryDir>

#include <xlsxdocument.h>

#include "DeskDirectory.h"
#include "FaultRun.h"
#include "FaultSweep.h"

/// Every call on files fails once, in each way, during each change that the application makes:
/// what it said is stored is stored, nothing is half, and the user is told what is to be told.
/// See FaultSweep for how many of them a run takes.
class tst_EveryCall : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void changes_data();
    void changes();
    void importStopsBetweenRows();
    void deletionSkipsWhatFails();
    void organisation();
    void exportedWorkbook();
    void savedArchive();
    void restore_data();
    void restore();
    void start();
    void packageIsNotAppliedTwice();
    void cleanupTestCase();

private:
    using Check = std::function<void(const FaultRun&, const Files&)>;

    FaultRun work(const QString& operation, const Fault& fault) const;
    Files resultOf(const QString& operation, const Files& before);
    void sweep(const QString& operation, const Files& before, const Check& check, int expense = 1);
    void checkDatabase(const FaultRun& run, const QSet<QByteArray>& whole,
                       const QByteArray& wanted) const;
    QString path(const QString& file) const { return m_directory.filePath(file); }

    QTemporaryDir m_directory{fastFolder() + "/zelvora-faults-XXXXXX"};
    Files m_desk;
    FaultSweep m_sweep;
};

namespace {

/// True if the application told, or logged, that something did not work.
bool isTold(const FaultRun& run)
{
    return run.says("log ") || run.says("box ");
}

/// True if it logged a failure once the window stood.
bool isToldAtWork(const FaultRun& run)
{
    const int begin = run.out.indexOf("started");
    return begin >= 0 && !run.out.mid(begin).filter("log ").isEmpty();
}

} // namespace

void tst_EveryCall::initTestCase()
{
    QVERIFY(m_directory.isValid());
    m_desk = deskFiles();
}

void tst_EveryCall::cleanupTestCase()
{
    m_sweep.tell();
}

FaultRun tst_EveryCall::work(const QString& operation, const Fault& fault) const
{
    return runWithFault(QString(ZELVORA_BIN_DIR) + "/tests/faults/fault_worker",
                        {operation, m_directory.path()}, m_directory.path(), fault, true);
}

// What the operation makes of the directory when nothing fails.
Files tst_EveryCall::resultOf(const QString& operation, const Files& before)
{
    putFiles(m_directory.path(), before);
    const FaultRun run = work(operation, {});
    if (run.exitCode != 0) {
        QTest::qFail(qPrintable(run.out.join(" | ")), __FILE__, __LINE__);
    }
    return filesIn(m_directory.path());
}

void tst_EveryCall::sweep(const QString& operation, const Files& before, const Check& check,
                          int expense)
{
    const auto run = [&](const Fault& fault) {
        putFiles(m_directory.path(), before);
        return work(operation, fault);
    };
    const auto look = [&](const FaultRun& result) { check(result, filesIn(m_directory.path())); };
    m_sweep.sweep(operation, run, look, expense);
}

// Rows of the live database: one of the whole states, and the wanted one if no failure was told.
void tst_EveryCall::checkDatabase(const FaultRun& run, const QSet<QByteArray>& whole,
                                  const QByteArray& wanted) const
{
    const QByteArray rows = rowsOf(path("docs.db"));
    QVERIFY2(whole.contains(rows), rows.constData());
    if (run.isEnded && !isTold(run)) {
        QCOMPARE(rows, wanted);
    }
}

void tst_EveryCall::changes_data()
{
    QTest::addColumn<QString>("operation");
    for (const char* operation : {"new-document",
                                  "edit-document",
                                  "copy-document",
                                  "add-document-template",
                                  "delete-document-template",
                                  "add-form",
                                  "edit-form",
                                  "delete-form",
                                  "add-field",
                                  "edit-field",
                                  "delete-field",
                                  "add-list",
                                  "rename-list",
                                  "delete-list",
                                  "add-list-item",
                                  "edit-list-item",
                                  "delete-list-item",
                                  "add-blank",
                                  "edit-blank-format",
                                  "edit-blank",
                                  "delete-blank",
                                  "add-exchange-template",
                                  "edit-exchange-template",
                                  "delete-exchange-template",
                                  "add-exchange-field",
                                  "edit-exchange-field",
                                  "delete-exchange-field",
                                  "import-one"})
    {
        QTest::newRow(operation) << operation;
    }
}

void tst_EveryCall::changes()
{
    QFETCH(QString, operation);
    putFiles(m_directory.path(), m_desk);
    const QByteArray before = rowsOf(path("docs.db"));
    QVERIFY(before.startsWith("ok\n"));
    resultOf(operation, m_desk);
    const QByteArray after = rowsOf(path("docs.db"));
    QVERIFY(after.startsWith("ok\n") && after != before);
    sweep(operation, m_desk, [&](const FaultRun& run, const Files& left) {
        checkDatabase(run, {before, after}, after);
        QCOMPARE(left["data/orgData.json"], m_desk["data/orgData.json"]);
        QCOMPARE(left["docs_backup.db"], m_desk["docs_backup.db"]);
    });
}

void tst_EveryCall::importStopsBetweenRows()
{
    putFiles(m_directory.path(), m_desk);
    const QByteArray none = rowsOf(path("docs.db"));
    resultOf("import-one", m_desk);
    const QByteArray first = rowsOf(path("docs.db"));
    resultOf("import", m_desk);
    const QByteArray both = rowsOf(path("docs.db"));
    QVERIFY(none != first && first != both);
    sweep("import", m_desk, [&](const FaultRun& run, const Files&) {
        checkDatabase(run, {none, first, both}, both);
    });
}

void tst_EveryCall::deletionSkipsWhatFails()
{
    QSet<QByteArray> whole;
    for (const char* deleted : {"0", "1", "2", "1, 2"}) {
        putFiles(m_directory.path(), m_desk);
        const QString sql = QString("DELETE FROM docs WHERE ID IN (%1)").arg(deleted);
        QCOMPARE(QProcess::execute("sqlite3", {path("docs.db"), sql}), 0);
        whole << rowsOf(path("docs.db"));
    }
    QCOMPARE(whole.size(), 4);
    resultOf("delete-documents", m_desk);
    const QByteArray none = rowsOf(path("docs.db"));
    QVERIFY(whole.contains(none));
    sweep("delete-documents", m_desk, [&](const FaultRun& run, const Files&) {
        const QByteArray rows = rowsOf(path("docs.db"));
        QVERIFY2(whole.contains(rows), rows.constData());
        if (run.isEnded && !run.says("log ")) {
            QCOMPARE(rows, none);
        }
    });
}

// No failure is told, as is required; but what stands is the old file or the new one.
void tst_EveryCall::organisation()
{
    const QByteArray before = m_desk["data/orgData.json"];
    const QByteArray after = resultOf("organisation", m_desk)["data/orgData.json"];
    QVERIFY(after.contains("Новый лицей") && after != before);
    const auto check = [&](const FaultRun& run, const Files& left) {
        const QByteArray stored = left["data/orgData.json"];
        QVERIFY2(stored == before || stored == after, stored.constData());
        QVERIFY(!isTold(run));
        QCOMPARE(left["docs.db"], m_desk["docs.db"]);
    };
    sweep("organisation", m_desk, check, 0);
}

// The success box comes whatever happened, as is required; but no half workbook takes the place of
// an older one.
void tst_EveryCall::exportedWorkbook()
{
    Files before = m_desk;
    before["out.xlsx"] = m_desk["in.xlsx"];
    resultOf("export", before);
    const auto surnames = [this] {
        const QXlsx::Document workbook(path("out.xlsx"));
        return QStringList{workbook.read("B2").toString(), workbook.read("B3").toString()};
    };
    const QStringList exported = {"Первый", "Второй"};
    QCOMPARE(surnames(), exported);
    sweep("export", before, [&](const FaultRun&, const Files& left) {
        const bool isOld = left["out.xlsx"] == before["out.xlsx"];
        QVERIFY(isOld || surnames() == exported);
        QCOMPARE(left["docs.db"], m_desk["docs.db"]);
    });
}

void tst_EveryCall::savedArchive()
{
    const QByteArray live = m_desk["docs.db"];
    QCOMPARE(resultOf("save-archive", m_desk)["storage/saved.zlv"], live);
    const QString told = "box Ошибка: Не удалось сохранить " + path("storage/saved.zlv");
    sweep("save-archive", m_desk, [&](const FaultRun& run, const Files& left) {
        QCOMPARE(left["docs.db"], live);
        const bool isSaved = left.contains("storage/saved.zlv");
        QVERIFY(!isSaved || left["storage/saved.zlv"] == live);
        if (run.isEnded) {
            QCOMPARE(run.says(told), !isSaved);
        }
    });
}

void tst_EveryCall::restore_data()
{
    QTest::addColumn<bool>("hasLive");
    QTest::addColumn<bool>("hasBackup");
    QTest::newRow("first") << true << false;
    QTest::newRow("again") << true << true;
    QTest::newRow("after a failed one") << false << true;
}

void tst_EveryCall::restore()
{
    QFETCH(bool, hasLive);
    QFETCH(bool, hasBackup);
    Files before = m_desk;
    if (!hasLive) {
        before.remove("docs.db");
    }
    if (!hasBackup) {
        before.remove("docs_backup.db");
    }
    const QByteArray data = hasLive ? m_desk["docs.db"] : m_desk["docs_backup.db"];
    const QByteArray archive = m_desk["storage/archive.zlv"];
    const Files whole = resultOf("restore", before);
    QCOMPARE(whole["docs.db"], archive);
    QCOMPARE(whole["docs_backup.db"], data);
    const QString told = "box Ошибка: Не удалось скопировать " + path("storage/archive.zlv");
    sweep("restore", before, [&](const FaultRun& run, const Files& left) {
        const QByteArray live = left["docs.db"];
        QVERIFY(live == data || left["docs_backup.db"] == data);
        QVERIFY(!left.contains("docs.db") || live == archive || live == data);
        QCOMPARE(left["storage/archive.zlv"], archive);
        if (run.isEnded) {
            QCOMPARE(run.says(told), live != archive);
        }
    });
}

// The update comes whole or not at all, the package stays until it has come, and what is made
// afterwards is stored. kept: a commit that fails is not noticed, and the package goes.
void tst_EveryCall::start()
{
    Files before = m_desk;
    before["dbUpdate.bin"] = deskUpdate();
    putFiles(m_directory.path(), before);
    const QByteArray old = rowsOf(path("docs.db"), true);
    QVERIFY(!resultOf("start-and-work", before).contains("dbUpdate.bin"));
    const QByteArray updated = rowsOf(path("docs.db"), true);
    QVERIFY(updated.startsWith("ok\n") && updated != old);
    QVERIFY(rowsOf(path("docs.db")) != updated);
    sweep("start-and-work", before, [&](const FaultRun& run, const Files& left) {
        const QByteArray rows = rowsOf(path("docs.db"), true);
        QVERIFY2(rows == old || rows == updated, rows.constData());
        const bool isToldDone = run.says("log Обновление базы данных завершено успешно");
        QVERIFY(left.contains("dbUpdate.bin") || rows == updated || isToldDone);
        QVERIFY(!run.isEnded || isToldAtWork(run) || rowsOf(path("docs.db")) != rows);
        QCOMPARE(run.says("box Ошибка обновления БД: Не удалось обновить базу данных."),
                 run.says("log Обновление базы прервано из-за ошибки"));
    });
}

// A version that could not be read once is not taken for an absent one.
void tst_EveryCall::packageIsNotAppliedTwice()
{
    Files before = m_desk;
    before["dbUpdate.bin"] = deskUpdate();
    putFiles(m_directory.path(), before);
    const QString stamp = "UPDATE zvsys SET DB_VERSION = '1.2.0.0'";
    QCOMPARE(QProcess::execute("sqlite3", {path("docs.db"), stamp}), 0);
    before = filesIn(m_directory.path());
    const QByteArray rows = rowsOf(path("docs.db"));
    FaultRun run;
    int failed = -1;
    do {
        ++failed;
        putFiles(m_directory.path(), before);
        run = work("start", {"eio", failed + 1});
        QVERIFY2(rowsOf(path("docs.db")) == rows, qPrintable(run.struck + run.out.join(" | ")));
    } while (!run.struck.isEmpty());
    QVERIFY(failed > 0);
}

QTEST_MAIN(tst_EveryCall)
#include "tst_EveryCall.moc"
