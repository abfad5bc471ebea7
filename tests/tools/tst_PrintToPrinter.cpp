#include <QtTest>

#include "support/PdfMeasure.h"
#include "support/PrintProgram.h"
#include "support/PrintQueue.h"

namespace {

constexpr int success = 0;
constexpr int someFailed = 1;
constexpr int failure = 2;

ProcessResult print(const PrintDirectory& directory, const PrintQueue& queue,
                    const QStringList& arguments)
{
    return runPrint(QStringList{"--dir", directory.path()} + arguments,
                    queue.environment(noDisplay("C.UTF-8")));
}

} // namespace

/// What a printer's queue receives.
class tst_PrintToPrinter : public QObject
{
    Q_OBJECT

private slots:
    void aJobForEachDocument();
    void marksStandWhereInAFile_data();
    void marksStandWhereInAFile();
    void marginsOfThePrinterMoveNothing();
    void background();
    void failedDocumentDoesNotStopTheRest();
    void printerThatGoesAway();
    void noPrinterOfThatName();
};

void tst_PrintToPrinter::aJobForEachDocument()
{
    const PrintDirectory directory;
    const PrintQueue queue;
    const ProcessResult result =
        print(directory, queue, {"--id", "3,1", "--copies", "5", "--printer", PrintQueue::printer});
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.exitCode, success);
    QCOMPARE(queue.jobCount(), 2);
    QCOMPARE(queue.job(1)["job-name"].toString(), QString("Zelvora 3"));
    QCOMPARE(queue.job(2)["job-name"].toString(), QString("Zelvora 1"));
    // The printer makes the copies, each job has its page once.
    QCOMPARE(queue.job(1)["copies"].toInt(), 5);
    QCOMPARE(PdfMeasure(queue.file(1)).pageCount(), 1);
    QCOMPARE(PdfMeasure(queue.file(1)).text(), QString("Бланк: Иваненко"));
    QCOMPARE(PdfMeasure(queue.file(2)).text(), QString("Бланк: Иванов"));
}

void tst_PrintToPrinter::marksStandWhereInAFile_data()
{
    QTest::addColumn<QString>("blank");
    QTest::addColumn<QSizeF>("paper");
    QTest::addColumn<QString>("media");
    QTest::newRow("A4, landscape") << "Альбом" << QSizeF(297, 210) << "A4";
    QTest::newRow("A5, portrait") << "Книга" << QSizeF(148, 210) << "A5";
}

void tst_PrintToPrinter::marksStandWhereInAFile()
{
    QFETCH(QString, blank);
    QFETCH(QSizeF, paper);
    QFETCH(QString, media);
    const PrintDirectory directory;
    const PrintQueue queue;
    const QStringList document = {"--id", "1", "--blank", blank};
    QCOMPARE(
        print(directory, queue, document + QStringList{"--printer", PrintQueue::printer}).exitCode,
        success);
    QCOMPARE(print(directory, queue, document + QStringList{"--output", directory.path("x.pdf")})
                 .exitCode,
             success);
    QCOMPARE(queue.job(1)["media"].toString(), media);
    const PdfMeasure printed(queue.file(1));
    const PdfMeasure file(directory.path("x.pdf"));
    QVERIFY(qAbs(printed.pageSize().width() - paper.width()) < 0.5);
    QVERIFY(qAbs(printed.pageSize().height() - paper.height()) < 0.5);
    const QVector<PdfMeasure::Word> words = printed.words();
    const QVector<PdfMeasure::Word> expected = file.words();
    QVERIFY(!expected.isEmpty());
    QCOMPARE(words.size(), expected.size());
    for (int i = 0; i < words.size(); ++i) {
        QCOMPARE(words[i].text, expected[i].text);
        QVERIFY((words[i].box.topLeft() - expected[i].box.topLeft()).manhattanLength() < 0.1);
        QVERIFY((words[i].box.bottomRight() - expected[i].box.bottomRight()).manhattanLength() <
                0.1);
    }
}

// The symbol's dark corner at 604 less 7 units (2 mm), 104 and 11 (-3 mm); 793 units on 210 mm.
void tst_PrintToPrinter::marginsOfThePrinterMoveNothing()
{
    const PrintDirectory directory;
    const PrintQueue queue;
    QCOMPARE(print(directory, queue, {"--id", "1", "--printer", PrintQueue::printer}).exitCode,
             success);
    const double unit = 210.0 / 793;
    const QRectF symbol = PdfMeasure(queue.file(1)).ink(QRectF(150, 20, 50, 50));
    QVERIFY(qAbs(symbol.left() - 597 * unit) < 0.3);
    QVERIFY(qAbs(symbol.top() - 115 * unit) < 0.3);
    QVERIFY(qAbs(symbol.width() - 65 * unit) < 0.3);
}

void tst_PrintToPrinter::background()
{
    const PrintDirectory directory;
    const PrintQueue queue;
    const QStringList common = {"--id", "1", "--blank", "Книга", "--printer", PrintQueue::printer};
    QCOMPARE(print(directory, queue, common).exitCode, success);
    QCOMPARE(print(directory, queue, common + QStringList{"--background"}).exitCode, success);
    QVERIFY(PdfMeasure(queue.file(1)).ink().height() < 20);  // the text alone
    QVERIFY(PdfMeasure(queue.file(2)).ink().height() > 200); // the black picture
}

void tst_PrintToPrinter::failedDocumentDoesNotStopTheRest()
{
    PrintDirectory directory;
    const PrintQueue queue;
    directory.exec("UPDATE docs SET DOC_TYPE = 9 WHERE ID = 2");
    const ProcessResult result =
        print(directory, queue, {"--id", "1-3", "--printer", PrintQueue::printer});
    QCOMPARE(result.exitCode, someFailed);
    QCOMPARE(result.err, QByteArray("zelvora-print: document 2: no blank prints it\n"));
    QCOMPARE(queue.jobCount(), 2);
    QCOMPARE(queue.job(2)["job-name"].toString(), QString("Zelvora 3"));
}

// While the second sheet is on its way: nobody knows whether it came out.
void tst_PrintToPrinter::printerThatGoesAway()
{
    const PrintDirectory directory;
    const PrintQueue queue(1);
    const ProcessResult result =
        print(directory, queue, {"--id", "1-3", "--printer", PrintQueue::printer});
    QCOMPARE(result.exitCode, someFailed);
    QCOMPARE(
        result.err,
        QByteArray("zelvora-print: the printer has gone, perhaps not printed is document 2\n"
                   "zelvora-print: the printer has gone, perhaps not printed is document 3\n"));
    QCOMPARE(queue.jobCount(), 1);
}

void tst_PrintToPrinter::noPrinterOfThatName()
{
    const PrintDirectory directory;
    const PrintQueue queue;
    const ProcessResult result = print(directory, queue, {"--id", "1", "--printer", "Другой"});
    QCOMPARE(result.exitCode, failure);
    QCOMPARE(QString::fromUtf8(result.err),
             QString("zelvora-print: there is no printer Другой, there are: ") +
                 PrintQueue::printer + "\n");
    QCOMPARE(queue.jobCount(), 0);
}

QTEST_MAIN(tst_PrintToPrinter)
#include "tst_PrintToPrinter.moc"
