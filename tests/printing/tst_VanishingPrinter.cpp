#include <QtTest>

#include "printing/BatchObserver.h"
#include "printing/PrintBatch.h"
#include "support/PrintFixture.h"
#include "support/PrintQueue.h"

namespace {

/// Ends the print server when so many sheets are printed.
class Puller : public BatchObserver
{
public:
    Puller(PrintQueue& queue, int after)
        : m_queue(queue)
        , m_left(after)
    {
    }

    bool goesOn(int /*sheet*/, int /*count*/) override { return true; }

    void sheetDone(int /*sheet*/, const SheetOutcome& /*outcome*/) override
    {
        if (--m_left == 0) {
            m_queue.stop();
        }
    }

private:
    PrintQueue& m_queue;
    int m_left;
};

} // namespace

/// A printer that is no longer there takes no sheet, and the batch knows it.
class tst_VanishingPrinter : public QObject
{
    Q_OBJECT

private slots:
    void sheetsAfterwardsFail();
};

void tst_VanishingPrinter::sheetsAfterwardsFail()
{
    PrintQueue queue;
    queue.takeOver();
    PrintFixture desk;
    desk.addBlank({blankItem(0, "#LNAME", QRectF(50, 50, 400, 60))});
    QVector<PrintDocument> documents;
    for (int i = 0; i < 3; ++i) {
        PrintDocument document;
        document.id = desk.addDocument();
        document.formId = 1;
        documents.append(document);
    }
    Puller puller(queue, 2);
    PrintTarget target;
    target.kind = PrintTarget::Kind::Printer;
    target.place = PrintQueue::printer;
    PrintBatch batch(sheetsOf(documents, QString()), target, puller);
    QVERIFY(batch.begin());
    QVERIFY(batch.run());
    QCOMPARE(queue.jobCount(), 2);
    QCOMPARE(batch.count(SheetOutcome::State::Printed), 2);
    QCOMPARE(batch.outcomes()[2].state, SheetOutcome::State::Failed);
    QCOMPARE(batch.outcomes()[2].reason, SheetOutcome::Reason::PrinterGone);
    QVERIFY(!PrintBatch({}, target, puller).begin());
}

QTEST_MAIN(tst_VanishingPrinter)
#include "tst_VanishingPrinter.moc"
