#include <QtTest>

#include <QCheckBox>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTableWidget>
#include <QTimer>

#include "BatchDesk.h"
#include "batch/CheckStep.h"
#include "batch/ProofView.h"
#include "batch/StepButton.h"
#include "preflight/PageCheck.h"
#include "preflight/PageImage.h"
#include "render/PrinPreviewDialog.h"
#include "support/ModalDriver.h"
#include "support/PdfMeasure.h"

/// The check of a batch and the proof of its sheets.
class tst_CheckStep : public QObject
{
    Q_OBJECT

private slots:
    void errorsBeforeWarnings();
    void whatIsTheBlanksOwn();
    void onlyWithFindings();
    void findingMarksItsFrameAndBack();
    void arrowKeysWalk();
    void documentsWithErrorsAreHeldBack();
    void aFormWithoutABlank();
    void whatChangedIsCheckedAgain();
    void changedBackgroundIsCheckedAgain();
    void printedBackgroundIsCheckedAgain();
    void stops();
    void closesWhileItChecks();
    void windowStaysAlive();
    void lockedDatabase();
    void pageOfThePreview();
    void zooms();
    void reportAsATable();
    void reportWithProofs();
};

namespace {

const QRectF large(100, 100, 300, 40);
const QRectF small(100, 300, 20, 24);

void addPerson(BatchDesk& desk, const QString& name, const QString& note, const QString& mark)
{
    desk.addDocument({{"#NOTE", valueEntry(0, note)}, {"#MARK", valueEntry(0, mark)}},
                     {{"LNAME", name}});
}

/// Three documents on a blank: of the first a tag has no value, of the second a text does not fit.
void addThree(BatchDesk& desk)
{
    desk.addForm("Диплом");
    desk.addBlank({blankItem(0, "#LNAME", large), blankItem(0, "#NOTE", large.translated(0, 60)),
                   blankItem(0, "#MARK", small)});
    addPerson(desk, "Акимов", "", ".");
    addPerson(desk, "Борисов", "нет", "слишком длинный текст");
    addPerson(desk, "Волков", "нет", ".");
}

void checkAll(BatchDesk& desk)
{
    named<QCheckBox>(desk.window(), "selectAllCheck")->click();
    clickButton(desk.window(), "toCheckButton");
    QTRY_VERIFY(!desk.window().findChild<CheckStep*>()->isBusy());
}

/// The rows at the top that are to be seen.
QStringList rows(const BatchDesk& desk)
{
    QStringList rows;
    for (int i = 0; i < desk.findings()->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = desk.findings()->topLevelItem(i);
        if (!row->isHidden()) {
            rows << row->text(0).section(' ', 0, 0);
        }
    }
    return rows;
}

QVector<PlannedSheet> checkedSheets(BatchDesk& desk)
{
    return desk.window().findChild<CheckStep*>()->sheets();
}

QImage shownPage(const ProofView* view)
{
    for (const QGraphicsItem* item : view->scene()->items()) {
        if (const auto* picture = qgraphicsitem_cast<const QGraphicsPixmapItem*>(item)) {
            return picture->pixmap().toImage();
        }
    }
    return {};
}

} // namespace

void tst_CheckStep::errorsBeforeWarnings()
{
    BatchDesk desk;
    addThree(desk);
    addPerson(desk, "Гусев", "", ".");
    addPerson(desk, "Дятлов", "нет", "слишком длинный текст");
    desk.open();
    checkAll(desk);
    // Each kind in the order of the list.
    QCOMPARE(rows(desk), QStringList({"Борисов", "Дятлов", "Акимов", "Гусев", "Волков"}));
    QVERIFY(desk.findings()->topLevelItem(0)->child(0)->text(0).startsWith("Рамка 3 «#MARK»"));
    QVERIFY(desk.findings()->topLevelItem(2)->child(0)->text(0).contains("#NOTE"));
    QCOMPARE(desk.findings()->topLevelItem(4)->childCount(), 0);
    QVERIFY2(desk.status("checkStepButton").endsWith("в 4 документах"),
             qPrintable(desk.status("checkStepButton")));
}

void tst_CheckStep::whatIsTheBlanksOwn()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addBlank({blankItem(0, "#LNAME", large)}, {{"FONT", "Нет такого шрифта"}});
    desk.addDocuments(3);
    desk.open();
    checkAll(desk);
    QCOMPARE(desk.findings()->topLevelItemCount(), 4); // once, and the documents
    QCOMPARE(desk.findings()->topLevelItem(0)->text(0),
             QString("Бланк «Бланк» — для всех документов"));
    QCOMPARE(desk.findings()->topLevelItem(0)->childCount(), 1);
    QCOMPARE(desk.findings()->topLevelItem(1)->childCount(), 0);
    QCOMPARE(desk.status("checkStepButton"), QString("Замечаний: 1 к бланкам"));
}

void tst_CheckStep::onlyWithFindings()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    checkAll(desk);
    named<QCheckBox>(desk.window(), "onlyFindingsCheck")->click();
    QCOMPARE(rows(desk), QStringList({"Борисов", "Акимов"}));
    named<QCheckBox>(desk.window(), "onlyFindingsCheck")->click();
    QCOMPARE(rows(desk).size(), 3);
}

void tst_CheckStep::findingMarksItsFrameAndBack()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    checkAll(desk);
    auto* view = named<ProofView>(desk.window(), "proofView");
    QCOMPARE(view->markedFrame(), 0);
    QTreeWidget* tree = desk.findings();
    QTreeWidgetItem* finding = tree->topLevelItem(0)->child(0);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      tree->visualItemRect(finding).center());
    QCOMPARE(view->markedFrame(), 3);
    QCOMPARE(named<QLabel>(desk.window(), "findingLabel")->text(), finding->text(0));

    tree->setCurrentItem(tree->topLevelItem(0));
    QCOMPARE(view->markedFrame(), 0);
    // The frame as the view shows it: from scene units to millimetres to the view's own.
    const double unit = 297.0 / 1122.0;
    const double pixels = view->zoomPercent() * view->logicalDpiX() / 100.0 / 25.4;
    const QPoint centre = view->mapFromScene(small.center() * unit * pixels);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, centre);
    QCOMPARE(view->markedFrame(), 3);
    QCOMPARE(tree->currentItem(), finding);
}

void tst_CheckStep::arrowKeysWalk()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    checkAll(desk);
    auto* view = named<ProofView>(desk.window(), "proofView");
    view->setFocus();
    const auto current = [&] { return desk.findings()->currentItem()->text(0).section(' ', 0, 0); };
    QCOMPARE(current(), QString("Борисов"));
    const QImage first = shownPage(view);
    pressKey(Qt::Key_Down);
    QCOMPARE(current(), QString("Акимов"));
    QVERIFY(shownPage(view) != first);
    pressKey(Qt::Key_Right);
    pressKey(Qt::Key_Right); // there is no more
    QCOMPARE(current(), QString("Волков"));
    pressKey(Qt::Key_Up);
    pressKey(Qt::Key_Left);
    QCOMPARE(current(), QString("Борисов"));
    QCOMPARE(shownPage(view), first);
}

void tst_CheckStep::documentsWithErrorsAreHeldBack()
{
    BatchDesk desk;
    addThree(desk);
    desk.addBlank({blankItem(0, "#LNAME", large)}, {{"NAME", "Приложение"}});
    desk.open();
    desk.tick(3);
    auto* blanks = named<QTableWidget>(desk.window(), "blanksTable");
    blanks->item(1, 0)->setCheckState(Qt::Checked);
    clickButton(desk.window(), "toCheckButton");
    const QVector<PlannedSheet> sheets = checkedSheets(desk);
    QCOMPARE(sheets.size(), 6);
    for (const PlannedSheet& sheet : sheets) {
        // The supplement of one whose title is faulty helps nobody.
        const bool isFaulty = sheet.sheet.document.surname == "Борисов";
        QCOMPARE(sheet.isHeldBack, isFaulty);
        QCOMPARE(sheet.hasErrors, isFaulty && sheet.blankName == "Бланк");
    }
    auto* hold = named<QCheckBox>(desk.window(), "holdErrorsCheck");
    QVERIFY(hold->isChecked());
    hold->click();
    QVERIFY(!checkedSheets(desk)[2].isHeldBack);
}

void tst_CheckStep::aFormWithoutABlank()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addDocuments(1);
    desk.open();
    checkAll(desk);
    QCOMPARE(desk.findings()->topLevelItem(0)->child(0)->text(0),
             QString("У типа документа нет бланка, печатать не на чем"));
    QVERIFY(checkedSheets(desk).first().hasErrors);
    QVERIFY(!checkedSheets(desk).first().isHeldBack); // it fails with the reason
}

void tst_CheckStep::whatChangedIsCheckedAgain()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    checkAll(desk);
    QVERIFY(!checkedSheets(desk)[2].hasErrors);
    desk.change("UPDATE docs SET CONTENT = replace(CONTENT, '\"value\":\".\"', "
                "'\"value\":\"слишком длинный текст\"') WHERE LNAME = 'Волков'");
    QVERIFY(desk.window().reload());
    QVERIFY(desk.status("checkStepButton").contains("База изменилась"));
    clickButton(desk.window(), "checkButton");
    QVERIFY(checkedSheets(desk)[2].hasErrors);
    QVERIFY(!desk.status("checkStepButton").contains("База изменилась"));
}

void tst_CheckStep::changedBackgroundIsCheckedAgain()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addBlank({blankItem(0, "#LNAME", large)}, {{"BACKGROUND_IMG", "scan.png"}});
    desk.addDocuments(1);
    QImage scan(30, 20, QImage::Format_RGB32);
    scan.fill(Qt::white);
    QVERIFY(scan.save(desk.path("scan.png")));
    desk.open();
    checkAll(desk);
    QCOMPARE(desk.findings()->topLevelItemCount(), 1); // the document
    QVERIFY(QFile::remove(desk.path("scan.png")));
    QVERIFY(desk.window().reload());
    clickButton(desk.window(), "checkButton");
    QCOMPARE(desk.findings()->topLevelItemCount(), 2);
    QVERIFY(desk.findings()->topLevelItem(0)->text(0).startsWith("Бланк «"));
}

// A picture that is missing matters only if it is to be printed.
void tst_CheckStep::printedBackgroundIsCheckedAgain()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addBlank({blankItem(0, "#LNAME", large)}, {{"BACKGROUND_IMG", "нет.png"}});
    desk.addDocuments(1);
    desk.open();
    checkAll(desk);
    QVERIFY(!checkedSheets(desk).first().hasErrors);
    named<StepButton>(desk.window(), "documentsButton")->click();
    named<QTableWidget>(desk.window(), "blanksTable")->item(0, 4)->setCheckState(Qt::Checked);
    clickButton(desk.window(), "toCheckButton");
    QTRY_VERIFY(!desk.window().findChild<CheckStep*>()->isBusy());
    QVERIFY(checkedSheets(desk).first().hasErrors);
}

void tst_CheckStep::stops()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addBlank({blankItem(0, "#LNAME", large)});
    desk.addDocuments(500);
    desk.open();
    auto* stop = desk.window().findChild<CheckStep*>()->findChild<QPushButton*>("stopButton");
    auto* bar = desk.window().findChild<CheckStep*>()->findChild<QProgressBar*>("progressBar");
    QTimer timer;
    int reached = 0;
    connect(&timer, &QTimer::timeout, this, [&] {
        if (bar->value() > 20) {
            reached = bar->value();
            QTest::mouseClick(stop, Qt::LeftButton);
        }
    });
    timer.start(0);
    checkAll(desk);
    QVERIFY(reached > 20);
    QVERIFY(desk.findings()->topLevelItemCount() < 500);
    QVERIFY2(desk.status("checkStepButton").contains("не проверено"),
             qPrintable(desk.status("checkStepButton")));
    timer.stop();
    clickButton(desk.window(), "checkButton"); // goes on where it was stopped
    QCOMPARE(desk.findings()->topLevelItemCount(), 500);
    QCOMPARE(desk.status("checkStepButton"), QString("Замечаний нет"));
}

void tst_CheckStep::closesWhileItChecks()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addBlank({blankItem(0, "#LNAME", large)});
    desk.addDocuments(500);
    desk.open();
    auto* bar = desk.window().findChild<CheckStep*>()->findChild<QProgressBar*>("progressBar");
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        if (bar->value() > 20) {
            desk.window().close();
        }
    });
    timer.start(0);
    checkAll(desk);
    QVERIFY(desk.findings()->topLevelItemCount() < 500);
    QTRY_VERIFY(!desk.window().isVisible());
}

void tst_CheckStep::windowStaysAlive()
{
    BatchDesk desk;
    addThree(desk);
    desk.addDocuments(400);
    desk.open();
    named<QCheckBox>(desk.window(), "selectAllCheck")->click();
    // A clock that each turn of the loop winds: the longest time between two is the gap.
    qint64 last = workedMs();
    qint64 longest = 0;
    int turns = 0;
    QTimer recorder;
    connect(&recorder, &QTimer::timeout, this, [&] {
        longest = qMax(longest, workedMs() - last);
        last = workedMs();
        ++turns;
    });
    recorder.start(0);
    clickButton(desk.window(), "toCheckButton");
    longest = qMax(longest, workedMs() - last);
    recorder.stop();
    QCOMPARE(desk.findings()->topLevelItemCount(), 403);
    QVERIFY(turns > 5);
    // The longest page is one that is laid out anew.
    const qint64 before = workedMs();
    QVERIFY(PageCheck().check(checkedSheets(desk)[0].sheet.document.id,
                              checkedSheets(desk)[0].sheet.blank.id));
    const qint64 page = workedMs() - before;
    QVERIFY2(longest < page + 100, qPrintable(QString("%1 and %2").arg(longest).arg(page)));
}

void tst_CheckStep::lockedDatabase()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    named<QCheckBox>(desk.window(), "selectAllCheck")->click();
    {
        QSqlDatabase writer = QSqlDatabase::addDatabase("QSQLITE", "lock");
        writer.setDatabaseName(desk.path("docs.db"));
        QVERIFY(writer.open());
        QVERIFY(!writer.exec("BEGIN EXCLUSIVE").lastError().isValid());
        clickButton(desk.window(), "toCheckButton");
        auto* problem = named<QLabel>(desk.window(), "problemLabel");
        QVERIFY(problem->isVisible());
        QVERIFY2(problem->text().contains("занята другой программой"), qPrintable(problem->text()));
        QVERIFY(!desk.window().reload());
        QVERIFY(named<QLabel>(desk.window(), "databaseProblem")->isVisible());
        QCOMPARE(desk.status("documentsButton"), QString("Выбрано 3 из 3")); // nothing is lost
        writer.exec("ROLLBACK");
    }
    QSqlDatabase::removeDatabase("lock");
    QTRY_VERIFY(!named<QLabel>(desk.window(), "databaseProblem")->isVisible()); // by itself
    clickButton(desk.window(), "checkButton");
    QCOMPARE(desk.findings()->topLevelItemCount(), 3);
}

void tst_CheckStep::pageOfThePreview()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    checkAll(desk);
    const QVariant document = checkedSheets(desk).at(1).sheet.document.id; // Борисов
    const QVariant blank = checkedSheets(desk).at(1).sheet.blank.id;
    auto* view = named<ProofView>(desk.window(), "proofView");
    const QImage shown = shownPage(view);

    PrinPreviewDialog preview(document);
    QVERIFY(preview.buildScene(preview.pageScene(), document, blank));
    const QGraphicsScene* page = preview.pageScene();
    PageImage image(shown.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    // The blank's sheet is 297 mm wide, of which the page's units cover all but nothing.
    const double scale = view->zoomPercent() * view->logicalDpiX() / 100.0 / 25.4;
    const QRectF place(0, 0, 297 * scale, 210 * scale);
    preview.pageScene()->render(&painter, place, page->sceneRect(), Qt::IgnoreAspectRatio);
    painter.end();
    const QImage& expected = image;
    QCOMPARE(shown.convertToFormat(QImage::Format_RGB32), expected);
}

void tst_CheckStep::zooms()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    checkAll(desk);
    auto* view = named<ProofView>(desk.window(), "proofView");
    const int fitting = view->zoomPercent();
    const int width = shownPage(view).width();
    QVERIFY(width <= view->viewport()->width());
    QVERIFY(width > view->viewport()->width() * 9 / 10);
    wheelOver(view->viewport());
    QVERIFY(view->zoomPercent() > fitting);
    QTRY_VERIFY(shownPage(view).width() > width); // drawn anew, not stretched
    clickButton(desk.window(), "fitWidthButton");
    QCOMPARE(view->zoomPercent(), fitting);
}

void tst_CheckStep::reportAsATable()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    checkAll(desk);
    const QString file = desk.path("отчёт.csv");
    ModalDriver driver;
    driver.expectFileDialog(file);
    clickButton(desk.window(), "reportButton");
    QVERIFY2(driver.finished(), driver.failures());
    QFile written(file);
    QVERIFY(written.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(written.readAll()).split("\r\n");
    const auto lineOf = [&](const QString& name) { return lines.filter(name).join('\n'); };
    QVERIFY(lineOf("Борисов").contains("\"Диплом\";\"АБ\";\"000123\";\"Бланк\";"));
    QVERIFY(lineOf("Борисов").contains("\"ошибка\";\"рамка 3 «#MARK»\""));
    QVERIFY(lineOf("Акимов").contains("\"замечание\""));
    QVERIFY(lineOf("Волков").contains("замечаний нет"));
    // In the order of the list, whatever the window shows first.
    QVERIFY(lines[1].contains("Акимов") && lines[2].contains("Борисов"));
}

void tst_CheckStep::reportWithProofs()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    checkAll(desk);
    named<QCheckBox>(desk.window(), "onlyFindingsCheck")->click();
    const QString file = desk.path("отчёт.pdf");
    ModalDriver driver;
    driver.expectFileDialog(file);
    clickButton(desk.window(), "reportButton");
    QVERIFY2(driver.finished(), driver.failures());
    const PdfMeasure report(file);
    QCOMPARE(report.pageCount(), 2);
    QVERIFY(!report.ink(QRectF(), 1, 200).isNull());
    QVERIFY(!desk.window().findChild<CheckStep*>()->isBusy());
}

QTEST_MAIN(tst_CheckStep)
#include "tst_CheckStep.moc"
