#include <QtTest>

#include <QDir>
#include <QProcess>

#include "support/PdfMeasure.h"
#include "support/PrintFixture.h"
#include "support/PrintQueue.h"

namespace {

/// What the journal on the disk says: IDs of documents whose sending was begun, and of those with
/// an outcome.
struct JournalRead
{
    QStringList begun;
    QStringList printed;
};

JournalRead readJournal(const QString& folder)
{
    JournalRead read;
    QFile file(folder + "/" + QDir(folder).entryList(QDir::Files).value(0));
    if (!file.open(QIODevice::ReadOnly)) {
        return read;
    }
    const QStringList lines = QString::fromUtf8(file.readAll()).split("\r\n");
    for (const QString& line : lines) {
        const QString id = line.section(';', 1, 1).remove('"');
        const QString event = line.section(';', 7).remove('"');
        if (event == "печатается") {
            read.begun << id;
        } else if (event == "напечатан") {
            read.printed << id;
        }
    }
    return read;
}

} // namespace

/// A program that is killed amid a batch, as by a power cut: its journal names the sheets that were
/// sent, and leaves at most the last one in doubt.
class tst_KilledBatch : public QObject
{
    Q_OBJECT

private slots:
    void journalNamesWhatWasSent_data();
    void journalNamesWhatWasSent();
};

void tst_KilledBatch::journalNamesWhatWasSent_data()
{
    QTest::addColumn<bool>("isPrinter");
    QTest::addColumn<int>("killAfter");
    for (const int sheets : {1, 2, 3, 5, 8, 13}) {
        QTest::addRow("files, %d", sheets) << false << sheets;
        QTest::addRow("printer, %d", sheets) << true << sheets;
    }
}

void tst_KilledBatch::journalNamesWhatWasSent()
{
    QFETCH(bool, isPrinter);
    QFETCH(int, killAfter);
    PrintFixture desk;
    desk.addBlank({blankItem(0, "#LNAME", QRectF(50, 50, 400, 60))});
    for (int i = 0; i < 60; ++i) {
        desk.addDocument();
    }
    const PrintQueue queue;
    QProcess worker;
    worker.setProcessEnvironment(queue.environment(QProcessEnvironment::systemEnvironment()));
    worker.start(QString(ZELVORA_BIN_DIR) + "/tests/batch/batch_worker",
                 {desk.path(), isPrinter ? PrintQueue::printer : QString()});
    const auto sent = [&] {
        QStringList ids;
        if (!isPrinter) {
            for (const QString& name : QDir(desk.path("out")).entryList({"*.pdf"}, QDir::Files)) {
                ids << name.chopped(4);
            }
            return ids;
        }
        for (int job = 1; job <= queue.jobCount(); ++job) {
            ids << queue.job(job)["job-name"].toString().section(' ', 1);
        }
        return ids;
    };
    QTRY_VERIFY_WITH_TIMEOUT(sent().size() >= killAfter, 30000);
    worker.kill();
    QVERIFY(worker.waitForFinished());
    QCOMPARE(worker.exitStatus(), QProcess::CrashExit); // it was amid the batch

    const JournalRead journal = readJournal(desk.path("data/Zelvora/journal"));
    const QStringList reached = sent();
    for (const QString& id : reached) {
        QVERIFY2(journal.begun.contains(id), qPrintable(id));
    }
    for (const QString& id : journal.printed) {
        QVERIFY2(reached.contains(id), qPrintable(id));
    }
    // Only of the last one it is not known whether it was sent.
    QVERIFY(journal.begun.size() - journal.printed.size() <= 1);
    QCOMPARE(journal.begun.mid(0, journal.printed.size()), journal.printed);
    if (!isPrinter) {
        for (const QString& id : reached) {
            QCOMPARE(PdfMeasure(desk.path("out/" + id + ".pdf")).pageCount(), 1);
        }
    }
}

QTEST_MAIN(tst_KilledBatch)
#include "tst_KilledBatch.moc"
