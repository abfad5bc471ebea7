#include <QtTest>

#include "PrintDesk.h"
#include "support/ModalDriver.h"
#include "support/PrintQueue.h"
#include "support/Widgets.h"

/// A printer that vanishes amid a batch.
class tst_PrintStepPrinterGone : public QObject
{
    Q_OBJECT

private slots:
    void tellsWhatWasPrinted();
};

void tst_PrintStepPrinterGone::tellsWhatWasPrinted()
{
    PrintQueue queue;
    queue.takeOver();
    PrintDesk desk;
    desk.chooseTarget(PrintQueue::printer);
    desk.step->setSheets(desk.titles());
    clickButton(desk.step, "printButton");
    QTRY_COMPARE(desk.outcomes()[0], QString("напечатан"));
    queue.stop();
    desk.waitUntilDone();
    QCOMPARE(queue.jobCount(), 1);
    QCOMPARE(desk.result(),
             QString("Пропал принтер «Проверочный»: системе он больше не виден. Посмотрите, вышел "
                     "ли лист «Абаев». Когда всё будет готово, нажмите «Допечатать остальные». "
                     "Напечатано 1, не удалось 1, не напечатано 1."));
    QCOMPARE(desk.outcomes()[1], QString("не удалось: принтер пропал, посмотрите, вышел ли лист"));
    ModalDriver driver;
    driver.expectMessage("Ошибка", "Системе не виден принтер «Проверочный». Ничего не напечатано.");
    desk.click("printRestButton");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(desk.step->statusLine(), QString("Напечатано 1, не удалось 1, не напечатано 1"));
}

QTEST_MAIN(tst_PrintStepPrinterGone)
#include "tst_PrintStepPrinterGone.moc"
