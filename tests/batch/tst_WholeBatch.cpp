#include <QtTest>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

#include "BatchDesk.h"
#include "batch/CheckStep.h"
#include "batch/PrintStep.h"
#include "batch/ProofView.h"
#include "batch/SheetPanel.h"
#include "support/ModalDriver.h"
#include "support/PdfMeasure.h"
#include "support/PrintQueue.h"

/// From the list to the paper: documents are ticked, checked and printed in the window.
class tst_WholeBatch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void intoOneFile();
    void whatChangedSinceTheCheck();
    void withoutADatabase();
    void bySheet();
    void printerIsKnownToTheCheck();
    void closingAsks();
    void calibration();

private:
    std::unique_ptr<PrintQueue> m_queue;
};

namespace {

/// "Акимов", "Борисов", whose text is too long, and "Волков" on a blank whose text stands 100 units
/// from its left and top edge.
void addThree(BatchDesk& desk)
{
    desk.addForm("Диплом");
    desk.addBlank({blankItem(0, "Фамилия: #LNAME", QRectF(100, 100, 300, 40)),
                   blankItem(0, "#MARK", QRectF(100, 300, 20, 24))});
    const auto content = [](const QString& mark) {
        return QJsonObject{{"#MARK", valueEntry(0, mark)}};
    };
    desk.addDocument(content("."), {{"LNAME", "Акимов"}, {"BLANK_NO", "000001"}});
    desk.addDocument(content("слишком длинный текст"),
                     {{"LNAME", "Борисов"}, {"BLANK_NO", "000002"}});
    desk.addDocument(content("."), {{"LNAME", "Волков"}, {"BLANK_NO", "000003"}});
}

PrintStep* printStep(BatchDesk& desk)
{
    return desk.window().findChild<PrintStep*>();
}

void choose(BatchDesk& desk, const QString& target)
{
    auto* targets = named<QComboBox>(printStep(desk), "targetCmb");
    QVERIFY2(targets->findText(target) >= 0, qPrintable(target));
    targets->setCurrentText(target);
}

void chooseFile(BatchDesk& desk)
{
    choose(desk, "PDF: один файл");
    typeInto(named<QLineEdit>(printStep(desk), "fileEdit"), desk.path("x.pdf"));
}

/// Ticks all, checks them and goes on to the printing step.
void goToPrint(BatchDesk& desk)
{
    desk.open();
    named<QCheckBox>(desk.window(), "selectAllCheck")->click();
    clickButton(desk.window(), "toCheckButton");
    clickButton(desk.window(), "toPrintButton");
    QVERIFY(printStep(desk)->isVisible());
}

void print(BatchDesk& desk)
{
    clickButton(printStep(desk), "printButton");
    QTRY_VERIFY(!printStep(desk)->isBusy());
}

QStringList outcomes(BatchDesk& desk)
{
    return columnTexts(named<QTableWidget>(printStep(desk), "resultsTable"), 5);
}

} // namespace

void tst_WholeBatch::initTestCase()
{
    m_queue = std::make_unique<PrintQueue>();
    m_queue->takeOver();
}

void tst_WholeBatch::intoOneFile()
{
    BatchDesk desk;
    addThree(desk);
    goToPrint(desk);
    chooseFile(desk);
    print(desk);
    const PdfMeasure file(desk.path("x.pdf"));
    QCOMPARE(file.pageCount(), 2);
    QVERIFY(file.text(1).startsWith("Фамилия: Акимов"));
    QVERIFY(file.text(2).startsWith("Фамилия: Волков"));
    // In the middle of its frame, at 250 of the 1122 units of a sheet 297 mm wide.
    const double centre =
        (file.word("Фамилия:", 1).box.left() + file.word("Акимов", 1).box.right()) / 2;
    QVERIFY2(qAbs(centre - 250 * 297.0 / 1122.0) < 0.5, qPrintable(QString::number(centre)));
    QCOMPARE(outcomes(desk), QStringList({"напечатан", "отложен: есть ошибки", "напечатан"}));
    QCOMPARE(desk.status("printStepButton"), QString("Напечатано 2, отложено 1"));
}

void tst_WholeBatch::whatChangedSinceTheCheck()
{
    BatchDesk desk;
    addThree(desk);
    goToPrint(desk);
    chooseFile(desk);
    desk.change("UPDATE docs SET CONTENT = replace(CONTENT, '\"value\":\".\"', "
                "'\"value\":\"слишком длинный текст\"') WHERE LNAME = 'Волков'");
    print(desk);
    const PdfMeasure file(desk.path("x.pdf"));
    QCOMPARE(file.pageCount(), 1);
    QVERIFY(file.text(1).startsWith("Фамилия: Акимов"));
}

void tst_WholeBatch::withoutADatabase()
{
    BatchDesk desk;
    addThree(desk);
    goToPrint(desk);
    chooseFile(desk);
    QVERIFY(QFile::remove(desk.path("docs.db")));
    ModalDriver driver;
    driver.expectMessageStarting("Печать партии", "Печать не начата.\nНет файла базы данных");
    print(desk);
    QVERIFY2(driver.finished(), driver.failures());
    QVERIFY(!QFile::exists(desk.path("x.pdf")));
}

void tst_WholeBatch::bySheet()
{
    BatchDesk desk;
    addThree(desk);
    goToPrint(desk);
    choose(desk, PrintQueue::printer);
    named<QCheckBox>(printStep(desk), "sheetModeCheck")->setChecked(true);
    const int before = m_queue->jobCount();
    clickButton(printStep(desk), "printButton");
    const auto* panel = named<SheetPanel>(printStep(desk), "sheetPanel");
    auto* next = named<QPushButton>(printStep(desk), "nextSheetButton");
    QTRY_VERIFY(next->isEnabled() && panel->isVisible());
    QCOMPARE(panel->paper(), QString("АБ № 000001"));
    QVERIFY(!named<QTableView>(desk.window(), "documentsTable")->isEnabled());
    QTest::mouseClick(next, Qt::LeftButton);
    QTRY_COMPARE(panel->paper(), QString("АБ № 000003")); // Борисов is held back
    QCOMPARE(m_queue->jobCount() - before, 1);
    clickButton(printStep(desk), "skipSheetButton");
    clickButton(printStep(desk), "stopButton");
    QTRY_VERIFY(!printStep(desk)->isBusy());
    QCOMPARE(m_queue->jobCount() - before, 1);
    QVERIFY(named<QTableView>(desk.window(), "documentsTable")->isEnabled());
}

void tst_WholeBatch::printerIsKnownToTheCheck()
{
    BatchDesk desk;
    addThree(desk);
    goToPrint(desk);
    choose(desk, PrintQueue::printer);
    QCOMPARE(desk.status("checkStepButton"), QString("Ещё не проверено")); // with its margins
    auto* view = named<ProofView>(desk.window(), "proofView");
    view->zoomIn();
    QCOMPARE(view->zoomPercent(), 0); // no sheet until it is checked with them
    choose(desk, "PDF: один файл");
    QTest::keyClick(&desk.window(), Qt::Key_2, Qt::ControlModifier);
    QTRY_VERIFY(named<QPushButton>(desk.window(), "checkButton")->isVisible());
    clickButton(desk.window(), "checkButton");
    QVERIFY(desk.status("checkStepButton").startsWith("Замечаний"));
    QVERIFY(view->zoomPercent() > 0);
}

void tst_WholeBatch::closingAsks()
{
    BatchDesk desk;
    addThree(desk);
    goToPrint(desk);
    choose(desk, PrintQueue::printer);
    named<QCheckBox>(printStep(desk), "sheetModeCheck")->setChecked(true);
    clickButton(printStep(desk), "printButton");
    QTRY_VERIFY(named<QPushButton>(printStep(desk), "nextSheetButton")->isEnabled());
    const QString question = "Идёт печать. Остановить её и закрыть окно?";
    ModalDriver driver;
    driver.expectMessage("Zelvora", question, "Нет");
    desk.window().close();
    QVERIFY(desk.window().isVisible());
    QVERIFY(printStep(desk)->isBusy());
    driver.expectMessage("Zelvora", question, "Да");
    desk.window().close();
    QTRY_VERIFY(!desk.window().isVisible());
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_WholeBatch::calibration()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    ModalDriver driver;
    driver.expect<QDialog>([](QDialog* dialog) {
        QVERIFY(dialog->findChild<QWidget*>("offsetXEdit"));
        dialog->reject();
    });
    named<QAction>(desk.window(), "calibrationAction")->trigger();
    QVERIFY2(driver.finished(), driver.failures());
}

QTEST_MAIN(tst_WholeBatch)
#include "tst_WholeBatch.moc"
