#include <QtTest>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPrintDialog>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTableWidget>

#include "PrintDesk.h"
#include "support/ModalDriver.h"
#include "support/PdfMeasure.h"
#include "support/PrintQueue.h"
#include "support/Widgets.h"

/// Printing on a printer: what its queue receives, pauses for paper, and sheet by sheet.
class tst_PrintStepOnPrinter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void printersAreListed();
    void propertiesOfThePrinter();
    void aJobForEachSheet();
    void pauseForOtherPaper();
    void noPauseDocumentByDocument();
    void bySheet();
    void spoiltSheetIsSkipped();
    void lastSheetCanBeRepeated();
    void stoppedBySheet();
    void changedNumberIsAskedForAnew();
    void keyboardAlone();
    void heldBackNeedsNoPaper();
    void bySheetIsForPrinters();

private:
    int jobs() const { return m_queue->jobCount() - m_jobsBefore; }
    QString textOfJob(int job) const
    {
        return PdfMeasure(m_queue->file(m_jobsBefore + job)).text();
    }
    static void beginBySheet(PrintDesk& desk)
    {
        desk.chooseTarget(PrintQueue::printer);
        desk.step->setSheets(desk.titles());
        named<QCheckBox>(desk.step, "sheetModeCheck")->setChecked(true);
        desk.click("printButton");
    }

    std::unique_ptr<PrintQueue> m_queue; // one for all: the system's library looks for it once
    int m_jobsBefore = 0;
};

void tst_PrintStepOnPrinter::initTestCase()
{
    m_queue = std::make_unique<PrintQueue>();
    m_queue->takeOver();
}

void tst_PrintStepOnPrinter::init()
{
    m_jobsBefore = m_queue->jobCount();
}

void tst_PrintStepOnPrinter::printersAreListed()
{
    PrintDesk desk;
    QSignalSpy changed(desk.step, &PrintStep::printerChanged);
    const auto* targets = named<QComboBox>(desk.step, "targetCmb");
    QStringList captions;
    for (int i = 0; i < targets->count(); ++i) {
        captions << targets->itemText(i);
    }
    QCOMPARE(captions,
             QStringList({PrintQueue::printer, "PDF: один файл", "PDF: файл на документ"}));
    desk.chooseTarget("PDF: один файл");
    QCOMPARE(desk.step->printerName(), QString());
    desk.chooseTarget(PrintQueue::printer);
    QCOMPARE(desk.step->printerName(), PrintQueue::printer);
    QCOMPARE(changed.last(), QVariantList{PrintQueue::printer});
    // 12 points are 4.233 mm.
    QCOMPARE(named<QLabel>(desk.step, "marginsLabel")->text(),
             QString("Принтер не печатает у краёв: слева 4,2, сверху 4,2, справа 4,2, снизу 4,2 "
                     "мм. Проверка это учитывает."));
}

void tst_PrintStepOnPrinter::propertiesOfThePrinter()
{
    PrintDesk desk;
    desk.chooseTarget(PrintQueue::printer);
    ModalDriver driver;
    driver.expect<QPrintDialog>([](QPrintDialog* dialog) { dialog->reject(); });
    clickButton(desk.step, "propertiesButton");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(desk.step->printerName(), PrintQueue::printer);
}

void tst_PrintStepOnPrinter::aJobForEachSheet()
{
    PrintDesk desk;
    desk.chooseTarget(PrintQueue::printer);
    desk.step->setSheets(desk.titles());
    desk.click("printButton");
    QCOMPARE(desk.result(), QString("Печать закончена. Напечатано 3."));
    QCOMPARE(jobs(), 3);
    QCOMPARE(textOfJob(1), QString("Титул: Петрова"));
    QCOMPARE(textOfJob(3), QString("Титул: Иваненко"));
    desk.tick(1);
    desk.click("repeatMarkedButton");
    QCOMPARE(jobs(), 4);
    QCOMPARE(textOfJob(4), QString("Титул: Абаев"));
}

void tst_PrintStepOnPrinter::pauseForOtherPaper()
{
    PrintDesk desk;
    desk.chooseTarget(PrintQueue::printer);
    desk.step->setSheets(desk.all());
    desk.click("printButton");
    QVERIFY(desk.step->isBusy());
    QCOMPARE(jobs(), 3);
    QCOMPARE(desk.paper(), QString("Вкладыш"));
    QCOMPARE(named<QLabel>(desk.step, "sheetLabel")->text(), QString("Листов: 3"));
    QVERIFY(!named<QPushButton>(desk.step, "skipSheetButton")->isVisible());
    desk.click("nextSheetButton");
    QCOMPARE(jobs(), 6);
    QCOMPARE(textOfJob(4), QString("Вкладыш: Петрова"));
    QVERIFY(!desk.step->isBusy());
}

void tst_PrintStepOnPrinter::noPauseDocumentByDocument()
{
    PrintDesk desk;
    desk.chooseTarget(PrintQueue::printer);
    desk.step->setSheets(desk.all());
    named<QComboBox>(desk.step, "blanksOrderCmb")->setCurrentText("Документ за документом");
    desk.click("printButton");
    QVERIFY(!desk.step->isBusy());
    QCOMPARE(textOfJob(2), QString("Вкладыш: Петрова"));
}

void tst_PrintStepOnPrinter::bySheet()
{
    PrintDesk desk;
    beginBySheet(desk);
    QCOMPARE(jobs(), 0);
    QCOMPARE(desk.paper(), QString("АБ № 000010"));
    QVERIFY(!named<QPushButton>(desk.step, "repeatSheetButton")->isEnabled());
    desk.click("nextSheetButton");
    QCOMPARE(jobs(), 1);
    QCOMPARE(desk.paper(), QString("АБ № 000002"));

    desk.click("repeatSheetButton"); // the first one came out spoilt
    QCOMPARE(jobs(), 1);
    QCOMPARE(desk.paper(), QString("АБ № 000010"));
    QCOMPARE(desk.outcomes()[0], QString("ждёт"));
    QCOMPARE(desk.step->statusLine(), QString("Напечатано 0, испорчено 1, не напечатано 2"));
    desk.click("nextSheetButton");
    QCOMPARE(jobs(), 2);
    QCOMPARE(textOfJob(2), QString("Титул: Петрова"));

    QCOMPARE(desk.paper(), QString("АБ № 000002"));
    desk.click("skipSheetButton");
    QCOMPARE(desk.paper(), QString("АБ № 000009"));
    desk.click("nextSheetButton");
    QCOMPARE(desk.paper(), QString("последний лист отправлен"));
    desk.click("nextSheetButton");
    QCOMPARE(desk.outcomes(),
             QStringList({"напечатан, испорчено до этого: 1", "пропущен", "напечатан"}));
    QCOMPARE(desk.result(), QString("Печать закончена. Напечатано 2, пропущено 1."));
    QStringList events;
    for (const QString& line : desk.journal()) {
        events << line.section(';', 1, 1) + ": " + line.section(';', -1);
    }
    QCOMPARE(events, QStringList({"Петрова: печатается", "Петрова: напечатан", "Петрова: испорчен",
                                  "Петрова: печатается", "Петрова: напечатан", "Абаев: пропущен",
                                  "Иваненко: печатается", "Иваненко: напечатан"}));
}

void tst_PrintStepOnPrinter::spoiltSheetIsSkipped()
{
    PrintDesk desk;
    beginBySheet(desk);
    desk.click("nextSheetButton");
    desk.click("repeatSheetButton");
    desk.click("skipSheetButton"); // no new form for it today
    QCOMPARE(desk.paper(), QString("АБ № 000002"));
    desk.click("stopButton");
    QCOMPARE(desk.outcomes(), QStringList({"испорчен", "", ""}));
    QCOMPARE(desk.result(),
             QString("Печать остановлена. Напечатано 0, испорчено 1, не напечатано 2."));
    QCOMPARE(jobs(), 1);
}

void tst_PrintStepOnPrinter::lastSheetCanBeRepeated()
{
    PrintDesk desk;
    beginBySheet(desk);
    for (int i = 0; i < 3; ++i) {
        desk.click("nextSheetButton");
    }
    desk.click("repeatSheetButton");
    QCOMPARE(desk.paper(), QString("АБ № 000009"));
    desk.click("nextSheetButton");
    QCOMPARE(jobs(), 4);
    desk.click("stopButton"); // nothing is left to stop
    QCOMPARE(desk.result(), QString("Печать закончена. Напечатано 3."));
}

void tst_PrintStepOnPrinter::stoppedBySheet()
{
    PrintDesk desk;
    beginBySheet(desk);
    desk.click("nextSheetButton");
    desk.click("stopButton");
    QCOMPARE(desk.result(), QString("Печать остановлена. Напечатано 1, не напечатано 2."));
    QVERIFY(!named<QWidget>(desk.step, "sheetPanel")->isVisible());
    desk.click("printRestButton");
    QCOMPARE(desk.paper(), QString("АБ № 000002"));
}

// The new form of a spoilt one has another number, which the user enters in the main program.
void tst_PrintStepOnPrinter::changedNumberIsAskedForAnew()
{
    PrintDesk desk;
    QVector<PlannedSheet> sheets = desk.titles();
    desk.step->setPrepare([&] { return sheets; });
    beginBySheet(desk);
    {
        QSqlDatabase other = QSqlDatabase::addDatabase("QSQLITE", "other");
        other.setDatabaseName(desk.path("docs.db"));
        QVERIFY(other.open());
        QVERIFY(QSqlQuery(other).exec("UPDATE docs SET BLANK_NO = '000077' WHERE ID = 1"));
    }
    QSqlDatabase::removeDatabase("other");
    sheets[0].blankNumber = "000077";
    desk.click("nextSheetButton");
    QCOMPARE(jobs(), 0);
    QCOMPARE(desk.paper(), QString("АБ № 000077"));
    desk.click("nextSheetButton");
    QCOMPARE(jobs(), 1);
    QVERIFY(desk.journal()[0].contains("000077"));
}

void tst_PrintStepOnPrinter::keyboardAlone()
{
    PrintDesk desk;
    desk.chooseTarget(PrintQueue::printer);
    desk.step->setSheets(desk.titles());
    desk.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(desk.window.get()));
    named<QComboBox>(desk.step, "targetCmb")->setFocus();
    QVERIFY(tabTo(named<QCheckBox>(desk.step, "sheetModeCheck")));
    pressKey(Qt::Key_Space);
    QVERIFY(tabTo(named<QPushButton>(desk.step, "printButton")));
    pressKey(Qt::Key_Space);
    desk.waitUntilDone();
    for (int job = 1; job <= 3; ++job) {
        QVERIFY(named<QPushButton>(desk.step, "nextSheetButton")->hasFocus());
        pressKey(Qt::Key_Space);
        desk.waitUntilDone();
        QCOMPARE(jobs(), job);
    }
    pressKey(Qt::Key_Space);
    QVERIFY(!desk.step->isBusy());
    QVERIFY(named<QTableWidget>(desk.step, "resultsTable")->hasFocus());
    pressKey(Qt::Key_Space); // ticks the current row
    QVERIFY(tabTo(named<QPushButton>(desk.step, "repeatMarkedButton")));
    pressKey(Qt::Key_Space);
    desk.waitUntilDone();
    QVERIFY(desk.step->isBusy());
}

void tst_PrintStepOnPrinter::heldBackNeedsNoPaper()
{
    PrintDesk desk;
    QVector<PlannedSheet> sheets = desk.titles();
    sheets[0].isHeldBack = true;
    desk.chooseTarget(PrintQueue::printer);
    desk.step->setSheets(sheets);
    named<QCheckBox>(desk.step, "sheetModeCheck")->setChecked(true);
    desk.click("printButton");
    QCOMPARE(desk.paper(), QString("АБ № 000002"));
    QCOMPARE(desk.outcomes()[0], QString("отложен: есть ошибки"));
}

void tst_PrintStepOnPrinter::bySheetIsForPrinters()
{
    PrintDesk desk;
    beginBySheet(desk);
    desk.click("stopButton");
    desk.chooseFile();
    QVERIFY(!named<QCheckBox>(desk.step, "sheetModeCheck")->isEnabled());
    desk.click("printRestButton");
    QVERIFY(!desk.step->isBusy());
    QCOMPARE(PdfMeasure(desk.path("x.pdf")).pageCount(), 3);
}

QTEST_MAIN(tst_PrintStepOnPrinter)
#include "tst_PrintStepOnPrinter.moc"
