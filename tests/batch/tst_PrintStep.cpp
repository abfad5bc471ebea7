#include <QtTest>

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTableWidget>

#include "PrintDesk.h"
#include "store/OrgData.h"
#include "support/ModalDriver.h"
#include "support/PdfMeasure.h"
#include "support/Widgets.h"

#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/resource.h>
#endif

/// Printing into files: what is chosen, what comes out, and what is said of it.
class tst_PrintStep : public QObject
{
    Q_OBJECT

private slots:
    void nothingToPrint();
    void oneFile();
    void fileADocument();
    void namesAreShown();
    void bracesThatDoNotMatch();
    void orders_data();
    void orders();
    void blanksComeAsInTheList();
    void documentByDocument();
    void heldBackAndRest();
    void restKeepsTheFirstFile();
    void repeatedFileTakesItsOwnName();
    void spoiltIsPrintedWithTheRest();
    void paperAsFarAsItIsKnown();
    void sameSheetsKeepTheirOutcomes();
    void keysWhilePrinting();
    void stopsBetweenSheets();
    void restKeepsTheFilesThatAreThere();
    void stoppedFileIsNotKept();
    void fileNeedsAName();
    void existingFileIsAskedFor();
    void unwritablePlaces();
    void fullDisk();
    void prepareRefuses();
    void preparedSheetsArePrinted();
    void changedDatabaseIsCheckedAgain();
    void uncheckedChangeStops();
    void replacedDatabase();
    void removedDatabase();
    void lockedDatabase();
    void shortLockIsWaitedFor();
    void journalIsToldBeforehand();
    void journalThatFailsStops();
    void journalOfAFile();
    void journalIsSaved();
    void longNamesWidenNothing();
    void windowStaysAlive();
};

void tst_PrintStep::nothingToPrint()
{
    const PrintDesk desk;
    QVERIFY(!named<QPushButton>(desk.step, "printButton")->isEnabled());
    QCOMPARE(desk.step->statusLine(), QString("Печатать нечего"));
}

void tst_PrintStep::oneFile()
{
    PrintDesk desk;
    desk.chooseFile();
    desk.step->setSheets(desk.titles());
    QCOMPARE(desk.step->statusLine(), QString("Листов: 3"));
    QCOMPARE(desk.step->printerName(), QString());
    QSignalSpy busy(desk.step, &PrintStep::busyChanged);
    desk.click("printButton");
    QCOMPARE(busy.size(), 2);
    const PdfMeasure pdf(desk.path("x.pdf"));
    QCOMPARE(pdf.pageCount(), 3);
    QCOMPARE(pdf.text(1), QString("Титул: Петрова"));
    QCOMPARE(pdf.text(3), QString("Титул: Иваненко"));
    QCOMPARE(desk.outcomes(), QStringList({"напечатан", "напечатан", "напечатан"}));
    QCOMPARE(desk.result(), QString("Печать закончена. Напечатано 3."));
    QCOMPARE(desk.step->statusLine(), QString("Напечатано 3"));
    QVERIFY(!named<QPushButton>(desk.step, "printRestButton")->isEnabled());
}

void tst_PrintStep::fileADocument()
{
    PrintDesk desk;
    desk.chooseFolder();
    desk.step->setSheets(desk.titles());
    desk.click("printButton");
    QCOMPARE(desk.filesInFolder(), QStringList({"Абаев.pdf", "Иваненко.pdf", "Петрова.pdf"}));
    QCOMPARE(PdfMeasure(desk.path("out/Абаев.pdf")).text(), QString("Титул: Абаев"));
}

void tst_PrintStep::namesAreShown()
{
    PrintDesk desk;
    desk.chooseFolder();
    desk.step->setSheets(desk.all());
    const auto* names = named<QLabel>(desk.step, "namesLabel");
    // Blank after blank: the three titles come first.
    QVERIFY2(names->text().startsWith("Например: Петрова.pdf, Абаев.pdf, Иваненко.pdf."),
             qPrintable(names->text()));
    typeInto(named<QLineEdit>(desk.step, "patternEdit"), "{#BLANK_NO}-x");
    QVERIFY(names->text().startsWith("Например: 000010-x.pdf, 000002-x.pdf"));
}

void tst_PrintStep::bracesThatDoNotMatch()
{
    PrintDesk desk;
    desk.chooseFolder();
    desk.step->setSheets(desk.titles());
    typeInto(named<QLineEdit>(desk.step, "patternEdit"), "{#LNAME");
    QCOMPARE(named<QLabel>(desk.step, "namesLabel")->text(),
             QString("Не сходятся фигурные скобки."));
    ModalDriver driver;
    driver.expectMessage("Ошибка", "В именах файлов не сходятся фигурные скобки.");
    desk.click("printButton");
    QVERIFY2(driver.finished(), driver.failures());
    QVERIFY(desk.filesInFolder().isEmpty());
}

void tst_PrintStep::orders_data()
{
    QTest::addColumn<QString>("order");
    QTest::addColumn<QStringList>("persons");
    QTest::newRow("list") << "Как в списке" << QStringList{"Петрова", "Абаев", "Иваненко"};
    QTest::newRow("name") << "По фамилии" << QStringList{"Абаев", "Иваненко", "Петрова"};
    QTest::newRow("number") << "По номеру бланка" << QStringList{"Абаев", "Иваненко", "Петрова"};
}

void tst_PrintStep::orders()
{
    QFETCH(QString, order);
    QFETCH(QStringList, persons);
    PrintDesk desk;
    desk.numbers = {"10", "2", "9"}; // as numbers, not as texts
    desk.chooseFile();
    desk.step->setSheets(desk.titles());
    auto* orders = named<QComboBox>(desk.step, "orderCmb");
    QVERIFY(!named<QComboBox>(desk.step, "blanksOrderCmb")->isVisible());
    orders->setCurrentText(order);
    QCOMPARE(desk.persons(), persons);
    desk.click("printButton");
    const PdfMeasure pdf(desk.path("x.pdf"));
    for (int page = 1; page <= 3; ++page) {
        QCOMPARE(pdf.text(page), "Титул: " + persons[page - 1]);
    }
}

// Whatever the order of the persons is.
void tst_PrintStep::blanksComeAsInTheList()
{
    PrintDesk desk;
    desk.chooseFile();
    desk.step->setSheets({desk.sheet(0, desk.supplement), desk.sheet(1, desk.title),
                          desk.sheet(2, desk.supplement)});
    named<QComboBox>(desk.step, "orderCmb")->setCurrentText("По фамилии");
    QCOMPARE(desk.persons(), (QStringList{"Иваненко", "Петрова", "Абаев"}));
    desk.click("printButton");
    const PdfMeasure pdf(desk.path("x.pdf"));
    QCOMPARE(pdf.text(1), QString("Вкладыш: Иваненко"));
    QCOMPARE(pdf.text(2), QString("Вкладыш: Петрова"));
    QCOMPARE(pdf.text(3), QString("Титул: Абаев"));
}

void tst_PrintStep::documentByDocument()
{
    PrintDesk desk;
    desk.chooseFile();
    desk.step->setSheets(desk.all());
    const QStringList blankByBlank = {"Титул: Петрова",   "Титул: Абаев",   "Титул: Иваненко",
                                      "Вкладыш: Петрова", "Вкладыш: Абаев", "Вкладыш: Иваненко"};
    desk.click("printButton");
    const PdfMeasure pdf(desk.path("x.pdf"));
    for (int page = 1; page <= 6; ++page) {
        QCOMPARE(pdf.text(page), blankByBlank[page - 1]);
    }
    desk.click("anewButton");
    named<QComboBox>(desk.step, "blanksOrderCmb")->setCurrentText("Документ за документом");
    named<QComboBox>(desk.step, "orderCmb")->setCurrentText("По фамилии");
    desk.chooseFile("y.pdf");
    desk.click("printButton");
    const QStringList byDocument = {"Титул: Абаев",      "Вкладыш: Абаев", "Титул: Иваненко",
                                    "Вкладыш: Иваненко", "Титул: Петрова", "Вкладыш: Петрова"};
    const PdfMeasure other(desk.path("y.pdf"));
    for (int page = 1; page <= 6; ++page) {
        QCOMPARE(other.text(page), byDocument[page - 1]);
    }
}

void tst_PrintStep::heldBackAndRest()
{
    PrintDesk desk;
    desk.chooseFolder();
    QVector<PlannedSheet> sheets = desk.titles();
    sheets[1].hasErrors = true;
    sheets[1].isHeldBack = true;
    sheets[2] = desk.sheet(2, QVariant());
    sheets[2].sheet.blank.problem = BlankChoice::Problem::NoBlanks;
    desk.step->setSheets(sheets);
    QCOMPARE(desk.outcomes(), QStringList({"", "не печатается: есть ошибки", "нет бланка"}));
    QCOMPARE(named<QLabel>(desk.step, "summaryLabel")->text(),
             QString("Листов: 3. Не печатается: 2 — из-за ошибок или без бланка."));
    desk.click("printButton");
    QCOMPARE(desk.outcomes(),
             QStringList({"напечатан", "отложен: есть ошибки", "не удалось: нет бланка"}));
    QCOMPARE(desk.step->statusLine(), QString("Напечатано 1, отложено 1, не удалось 1"));

    ModalDriver driver;
    driver.expectMessage("Ошибка",
                         "Печатать нечего: эти листы отложены из-за ошибок или у них нет бланка.");
    desk.click("printRestButton");
    QVERIFY2(driver.finished(), driver.failures());

    sheets[1].isHeldBack = false; // mended meanwhile
    desk.step->setPrepare([&] { return sheets; });
    desk.click("printRestButton");
    QCOMPARE(desk.filesInFolder(), QStringList({"Абаев.pdf", "Петрова.pdf"}));
    QCOMPARE(desk.step->statusLine(), QString("Напечатано 2, не удалось 1"));
}

// A further run into one file must not replace what it has already written.
void tst_PrintStep::restKeepsTheFirstFile()
{
    PrintDesk desk;
    desk.chooseFile();
    QVector<PlannedSheet> sheets = desk.titles();
    sheets[1].isHeldBack = true;
    desk.step->setSheets(sheets);
    desk.click("printButton");
    QCOMPARE(PdfMeasure(desk.path("x.pdf")).pageCount(), 2);
    sheets[1].isHeldBack = false;
    desk.step->setPrepare([&] { return sheets; });
    desk.click("printRestButton");
    QCOMPARE(PdfMeasure(desk.path("x.pdf")).pageCount(), 2);
    QCOMPARE(PdfMeasure(desk.path("x (2).pdf")).text(), QString("Титул: Абаев"));
    QCOMPARE(desk.step->statusLine(), QString("Напечатано 3"));
}

void tst_PrintStep::repeatedFileTakesItsOwnName()
{
    PrintDesk desk;
    desk.chooseFolder();
    desk.step->setSheets({desk.sheet(0, desk.title), desk.sheet(0, desk.supplement)});
    desk.click("printButton");
    QCOMPARE(desk.filesInFolder(), QStringList({"Петрова (2).pdf", "Петрова.pdf"}));
    QVERIFY(QFile::remove(desk.path("out/Петрова (2).pdf")));
    QVERIFY(!named<QPushButton>(desk.step, "repeatMarkedButton")->isEnabled());
    desk.tick(1);
    desk.click("repeatMarkedButton");
    QCOMPARE(desk.filesInFolder(), QStringList({"Петрова (2).pdf", "Петрова.pdf"}));
    QCOMPARE(PdfMeasure(desk.path("out/Петрова (2).pdf")).text(), QString("Вкладыш: Петрова"));
    QCOMPARE(desk.step->statusLine(), QString("Напечатано 2"));
}

void tst_PrintStep::spoiltIsPrintedWithTheRest()
{
    PrintDesk desk;
    desk.chooseFolder();
    desk.step->setSheets(desk.titles());
    desk.click("printButton");
    desk.tick(2);
    desk.click("spoiltButton");
    QCOMPARE(desk.outcomes(), QStringList({"напечатан", "напечатан", "испорчен"}));
    QCOMPARE(desk.step->statusLine(), QString("Напечатано 2, испорчено 1"));
    const auto* results = named<QTableWidget>(desk.step, "resultsTable");
    QVERIFY(results->item(2, 5)->foreground() != results->item(1, 5)->foreground()); // is red
    desk.click("printRestButton");
    QCOMPARE(desk.outcomes()[2], QString("напечатан, испорчено до этого: 1"));
    const QStringList journal = desk.journal();
    QVERIFY(journal[1].endsWith(desk.path("out/Петрова.pdf") + ";напечатан"));
    QVERIFY(journal[6].endsWith("испорчен"));
    QVERIFY(journal[7].endsWith("печатается"));
    QCOMPARE(journal.size(), 9);
}

void tst_PrintStep::paperAsFarAsItIsKnown()
{
    PrintDesk desk;
    QVector<PlannedSheet> sheets = desk.titles();
    sheets[0].blankNumber.clear();
    sheets[1].blankSeries.clear();
    sheets[2].blankSeries.clear();
    sheets[2].blankNumber = " ";
    desk.step->setSheets(sheets);
    const auto* results = named<QTableWidget>(desk.step, "resultsTable");
    QCOMPARE(results->item(0, 4)->text(), QString("АБ"));
    QCOMPARE(results->item(1, 4)->text(), QString("№ 000002"));
    QCOMPARE(results->item(2, 4)->text(), QString());
}

// The window reads the database again whenever it is activated.
void tst_PrintStep::sameSheetsKeepTheirOutcomes()
{
    PrintDesk desk;
    desk.chooseFile();
    QVector<PlannedSheet> sheets = desk.titles();
    desk.step->setSheets(sheets);
    desk.click("printButton");
    sheets[0].blankNumber = "000099";
    desk.step->setSheets(sheets);
    QCOMPARE(desk.outcomes()[0], QString("напечатан"));
    QCOMPARE(named<QTableWidget>(desk.step, "resultsTable")->item(0, 4)->text(),
             QString("АБ № 000099"));
    sheets.removeLast();
    desk.step->setSheets(sheets);
    QCOMPARE(desk.outcomes(), QStringList({"", ""}));
}

void tst_PrintStep::keysWhilePrinting()
{
    PrintDesk desk;
    desk.chooseFolder();
    desk.step->setSheets(desk.titles());
    auto* const button = named<QPushButton>(desk.step, "printButton");
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Space);
    // Pressed once too often: the printing goes on.
    QWidget* const focus = desk.step->window()->focusWidget();
    QCOMPARE(focus, named<QWidget>(desk.step, "resultsTable"));
    QTest::keyClick(focus, Qt::Key_Space);
    QTest::keyClick(focus, Qt::Key_Return);
    QTRY_COMPARE(desk.result(), QString("Печать закончена. Напечатано 3."));
}

void tst_PrintStep::stopsBetweenSheets()
{
    PrintDesk desk;
    desk.chooseFolder();
    desk.step->setSheets(desk.titles());
    clickButton(desk.step, "printButton");
    QTRY_COMPARE(desk.outcomes()[0], QString("напечатан"));
    desk.click("stopButton");
    QCOMPARE(desk.result(), QString("Печать остановлена. Напечатано 1, не напечатано 2."));
    QCOMPARE(desk.filesInFolder(), QStringList("Петрова.pdf"));
    desk.click("printRestButton");
    QCOMPARE(desk.result(), QString("Печать закончена. Напечатано 3."));
}

// The files of a person's title and supplement differ by a number.
void tst_PrintStep::restKeepsTheFilesThatAreThere()
{
    PrintDesk desk;
    desk.chooseFolder();
    desk.step->setSheets({desk.sheet(0, desk.title), desk.sheet(0, desk.supplement)});
    clickButton(desk.step, "printButton");
    QTRY_COMPARE(desk.outcomes()[0], QString("напечатан"));
    desk.click("stopButton");
    QCOMPARE(desk.filesInFolder(), QStringList("Петрова.pdf"));
    desk.click("printRestButton");
    QCOMPARE(desk.filesInFolder(), (QStringList{"Петрова (2).pdf", "Петрова.pdf"}));
    QCOMPARE(PdfMeasure(desk.path("out/Петрова.pdf")).text(), QString("Титул: Петрова"));
    QCOMPARE(PdfMeasure(desk.path("out/Петрова (2).pdf")).text(), QString("Вкладыш: Петрова"));
}

void tst_PrintStep::stoppedFileIsNotKept()
{
    PrintDesk desk;
    desk.chooseFile();
    desk.step->setSheets(desk.titles());
    clickButton(desk.step, "printButton");
    QTRY_COMPARE(desk.outcomes()[0], QString("напечатан"));
    desk.click("stopButton");
    QCOMPARE(desk.result(), QString("Печать остановлена. Неполный файл не сохраняется. Напечатано "
                                    "0, не напечатано 3."));
    QVERIFY(!QFileInfo::exists(desk.path("x.pdf")));
    // Nothing hidden stays either while the window shows the results.
    QCOMPARE(QDir(desk.path()).entryList({"*.pdf"}, QDir::Files | QDir::Hidden), QStringList());
    QCOMPARE(desk.journal().last().section(';', -1), QString("файл не записан"));
    desk.click("printRestButton");
    QCOMPARE(PdfMeasure(desk.path("x.pdf")).pageCount(), 3);
}

void tst_PrintStep::fileNeedsAName()
{
    PrintDesk desk;
    desk.step->setSheets(desk.titles());
    desk.chooseFile();
    named<QLineEdit>(desk.step, "fileEdit")->clear();
    ModalDriver driver;
    driver.expectMessage("Ошибка", "Укажите файл, в который печатать.");
    desk.click("printButton");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(desk.outcomes(), (QStringList{"", "", ""}));
    desk.chooseFile("партия");
    desk.click("printButton");
    QCOMPARE(PdfMeasure(desk.path("партия.pdf")).pageCount(), 3);
    QVERIFY(!QFileInfo::exists(desk.path("партия")));
}

void tst_PrintStep::existingFileIsAskedFor()
{
    PrintDesk desk;
    desk.chooseFile();
    QFile file(desk.path("x.pdf"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("old") == 3);
    file.close();
    desk.step->setSheets(desk.titles());
    ModalDriver driver;
    driver.expectMessage("Zelvora", "Файл «x.pdf» уже есть. Заменить его?", "Нет");
    desk.click("printButton");
    QCOMPARE(file.size(), 3);
    driver.expectMessage("Zelvora", "Файл «x.pdf» уже есть. Заменить его?", "Да");
    desk.click("printButton");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(PdfMeasure(desk.path("x.pdf")).pageCount(), 3);
}

void tst_PrintStep::unwritablePlaces()
{
    PrintDesk desk;
    desk.step->setSheets(desk.titles());
    ModalDriver driver;
    desk.chooseFile("нет/x.pdf");
    driver.expectMessage("Ошибка", "Не удалось создать файл «x.pdf»: посмотрите, есть ли такая "
                                   "папка и можно ли в неё писать. Ничего не напечатано.");
    desk.click("printButton");
    QFile inTheWay(desk.path("out"));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    desk.chooseFolder();
    driver.expectMessageStarting("Ошибка", "Не удалось создать папку «");
    desk.click("printButton");
    typeInto(named<QLineEdit>(desk.step, "folderEdit"), "");
    driver.expectMessage("Ошибка", "Укажите папку, в которую печатать.");
    desk.click("printButton");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(desk.outcomes(), QStringList({"", "", ""}));
}

// What can't be given its name at the end, as on a full disk.
void tst_PrintStep::fullDisk()
{
    PrintDesk desk;
    desk.chooseFile();
    desk.step->setSheets(desk.titles());
    clickButton(desk.step, "printButton");
    QVERIFY(QDir().mkdir(desk.path("x.pdf")));
    desk.waitUntilDone();
    QCOMPARE(desk.result(),
             QString("Не удалось записать файл «x.pdf»: посмотрите, есть ли место на диске и можно "
                     "ли в эту папку писать. Неполный файл не сохраняется. Напечатано 0, не "
                     "удалось 3."));
}

void tst_PrintStep::prepareRefuses()
{
    PrintDesk desk;
    desk.chooseFile();
    desk.step->setSheets(desk.titles());
    desk.step->setPrepare([] { return std::nullopt; });
    desk.click("printButton");
    QVERIFY(!QFileInfo::exists(desk.path("x.pdf")));
    QCOMPARE(desk.step->statusLine(), QString("Листов: 3"));
}

void tst_PrintStep::preparedSheetsArePrinted()
{
    PrintDesk desk;
    desk.chooseFile();
    QVector<PlannedSheet> sheets = desk.titles();
    desk.step->setSheets(sheets);
    sheets[0].isHeldBack = true; // the check has found something since
    desk.step->setPrepare([&] { return sheets; });
    desk.click("printButton");
    QCOMPARE(desk.step->statusLine(), QString("Напечатано 2, отложено 1"));

    desk.click("anewButton");
    sheets.removeFirst(); // other sheets than those that are shown
    ModalDriver driver;
    driver.expectMessage("Ошибка",
                         "Список листов изменился. Посмотрите его и нажмите «Печать» ещё раз.");
    desk.click("printButton");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(desk.persons(), QStringList({"Абаев", "Иваненко"}));
}

namespace {

/// A connection of another program.
class OtherProgram
{
public:
    explicit OtherProgram(const PrintDesk& desk)
    {
        m_database = QSqlDatabase::addDatabase("QSQLITE", "other");
        m_database.setDatabaseName(desk.path("docs.db"));
        if (!m_database.open()) {
            qFatal("no second connection");
        }
    }
    ~OtherProgram()
    {
        m_database.close();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase("other");
    }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    bool exec(const QString& sql) { return QSqlQuery(m_database).exec(sql); }

private:
    QSqlDatabase m_database;
};

/// Begins to print into the folder and waits for the first sheet.
void printFirst(PrintDesk& desk)
{
    desk.exec("PRAGMA busy_timeout = 20"); // as the window opens it
    desk.chooseFolder();
    desk.step->setSheets(desk.titles());
    clickButton(desk.step, "printButton");
    QTRY_COMPARE(desk.outcomes()[0], QString("напечатан"));
}

} // namespace

void tst_PrintStep::changedDatabaseIsCheckedAgain()
{
    PrintDesk desk;
    QVector<PlannedSheet> sheets = desk.titles();
    int asked = 0;
    desk.step->setPrepare([&] {
        ++asked;
        return sheets;
    });
    printFirst(desk);
    QVERIFY(OtherProgram(desk).exec("UPDATE docs SET LNAME = 'Иванько' WHERE LNAME = 'Иваненко'"));
    sheets[1].isHeldBack = true; // as the check would find
    desk.waitUntilDone();
    QCOMPARE(asked, 2);
    QCOMPARE(desk.step->statusLine(), QString("Напечатано 2, отложено 1"));
    QCOMPARE(desk.filesInFolder(), QStringList({"Иванько.pdf", "Петрова.pdf"}));
}

void tst_PrintStep::uncheckedChangeStops()
{
    PrintDesk desk;
    int asked = 0;
    desk.step->setPrepare([&]() -> std::optional<QVector<PlannedSheet>> {
        return ++asked == 1 ? std::optional(desk.titles()) : std::nullopt;
    });
    printFirst(desk);
    QVERIFY(OtherProgram(desk).exec("UPDATE docs SET LNAME = 'Иванько' WHERE LNAME = 'Иваненко'"));
    desk.waitUntilDone();
    QVERIFY(desk.result().startsWith(
        "Печать остановлена: база данных изменилась, а изменения не проверены."));
    QVERIFY(desk.result().endsWith("Напечатано 1, не напечатано 2."));
}

void tst_PrintStep::replacedDatabase()
{
    PrintDesk desk;
    printFirst(desk);
    QVERIFY(QFile::copy(desk.path("docs.db"), desk.path("other.db")));
    QVERIFY(QFile::remove(desk.path("docs.db")));
    QVERIFY(QFile::rename(desk.path("other.db"), desk.path("docs.db")));
    desk.waitUntilDone();
    QVERIFY2(desk.result().startsWith(
                 "Печать остановлена: файл базы данных заменили другим или убрали."),
             qPrintable(desk.result()));
    QVERIFY(desk.result().endsWith("Напечатано 1, не напечатано 2."));
    QCOMPARE(desk.filesInFolder(), QStringList("Петрова.pdf"));
}

void tst_PrintStep::removedDatabase()
{
    PrintDesk desk;
    printFirst(desk);
    QVERIFY(QFile::remove(desk.path("docs.db")));
    desk.waitUntilDone();
    QVERIFY(desk.result().endsWith("Напечатано 1, не напечатано 2."));
    QVERIFY(!QFileInfo::exists(desk.path("docs.db")));
}

void tst_PrintStep::lockedDatabase()
{
    PrintDesk desk;
    printFirst(desk);
    OtherProgram other(desk);
    QVERIFY(other.exec("BEGIN EXCLUSIVE"));
    QTRY_COMPARE(named<QLabel>(desk.step, "workLabel")->text(),
                 QString("База данных занята другой программой, печать ждёт"));
    QTRY_VERIFY_WITH_TIMEOUT(!desk.step->isBusy(), 20000);
    QCOMPARE(desk.result(),
             QString("Печать остановлена: базу данных долго держит другая программа. Когда всё "
                     "будет готово, нажмите «Допечатать остальные». Напечатано 1, не напечатано "
                     "2."));
    QVERIFY(other.exec("ROLLBACK"));
    desk.click("printRestButton");
    QCOMPARE(desk.step->statusLine(), QString("Напечатано 3"));
}

void tst_PrintStep::shortLockIsWaitedFor()
{
    PrintDesk desk;
    printFirst(desk);
    OtherProgram other(desk);
    QVERIFY(other.exec("BEGIN EXCLUSIVE"));
    QTRY_VERIFY(named<QLabel>(desk.step, "workLabel")->text().endsWith("печать ждёт"));
    QVERIFY(other.exec("ROLLBACK"));
    desk.waitUntilDone();
    QCOMPARE(desk.result(), QString("Печать закончена. Напечатано 3."));
}

void tst_PrintStep::journalIsToldBeforehand()
{
    PrintDesk desk;
    QVERIFY(QDir().mkpath(QFileInfo(orgDataPath).path()));
    QFile inTheWay(BatchJournal::defaultFolder());
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    desk.chooseFile();
    desk.step->setSheets(desk.titles());
    ModalDriver driver;
    driver.expectMessageStarting("Zelvora", "Журнал печати не записывается: ", "Нет");
    desk.click("printButton");
    QVERIFY(!QFileInfo::exists(desk.path("x.pdf")));
    driver.expectMessageStarting("Zelvora", "Журнал печати не записывается: ", "Да");
    desk.click("printButton");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(desk.step->statusLine(), QString("Напечатано 3"));
}

// No sheet is sent that the journal does not name. Here a file may grow no larger than it is but
// for some lines, as on a full disk.
void tst_PrintStep::journalThatFailsStops()
{
#ifndef Q_OS_LINUX
    QSKIP("needs a limit on the size of files");
#else
    PrintDesk desk;
    constexpr qint64 limit = 4 << 20; // more than any page takes
    const QString folder = BatchJournal::defaultFolder();
    QVERIFY(QDir().mkpath(folder));
    QFile day(folder + "/" + QDate::currentDate().toString("yyyy-MM-dd") + ".csv");
    QVERIFY(day.open(QIODevice::WriteOnly) && day.resize(limit - 400));
    day.close();
    desk.chooseFolder();
    desk.step->setSheets(desk.titles());
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit full{limit, before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &full), 0);
    desk.click("printButton");
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &before), 0);
    QVERIFY2(desk.result().startsWith("Печать остановлена: не записывается журнал печати ("),
             qPrintable(desk.result()));
    // Two lines of some 140 bytes tell of the first sheet, the line of the second is the last.
    QCOMPARE(desk.filesInFolder(), QStringList("Петрова.pdf"));
    QVERIFY(desk.result().endsWith("Напечатано 1, не напечатано 2."));
#endif
}

void tst_PrintStep::journalOfAFile()
{
    PrintDesk desk;
    desk.chooseFile();
    desk.step->setSheets({desk.sheet(0, desk.title)});
    desk.click("printButton");
    const QString id = desk.documents[0].id.toString();
    const QString sheet = id + ";Петрова;Диплом;Титул;АБ № 000010;" + desk.path("x.pdf") + ";";
    QCOMPARE(desk.journal(), QStringList({sheet + "печатается", sheet + "добавлен в файл",
                                          ";;;;;" + desk.path("x.pdf") + ";файл записан"}));
}

void tst_PrintStep::journalIsSaved()
{
    PrintDesk desk;
    desk.chooseFile();
    desk.step->setSheets(desk.titles());
    desk.click("printButton");
    ModalDriver driver;
    driver.expectFileDialog(desk.path("журнал.csv"));
    desk.click("saveJournalButton");
    QVERIFY2(driver.finished(), driver.failures());
    QFile saved(desk.path("журнал.csv"));
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QCOMPARE(saved.readAll().count('\n'), 1 + 2 * 3 + 1);
}

void tst_PrintStep::longNamesWidenNothing()
{
    PrintDesk desk;
    const int width = desk.step->minimumSizeHint().width();
    QVERIFY2(width < 900, qPrintable(QString::number(width)));
    QVector<PlannedSheet> sheets = desk.titles();
    const QString longest(150, QChar(0x0429)); // "Щ"
    for (PlannedSheet& sheet : sheets) {
        sheet.sheet.document.surname = longest;
        sheet.form = longest;
        sheet.group = longest;
        sheet.blankName = longest;
        sheet.blankNumber = longest;
    }
    desk.chooseFolder();
    typeInto(named<QLineEdit>(desk.step, "patternEdit"), longest);
    desk.step->setSheets(sheets);
    QCOMPARE(desk.step->minimumSizeHint().width(), width);
    clickButton(desk.step, "printButton");
    QVERIFY(desk.step->minimumSizeHint().width() <= width);
    desk.waitUntilDone();
    QVERIFY(desk.step->minimumSizeHint().width() < 900); // the buttons at the end
}

// No event waits longer than a page takes: here none takes a tenth of a second.
void tst_PrintStep::windowStaysAlive()
{
    PrintDesk desk;
    desk.chooseFile();
    QVector<PlannedSheet> sheets;
    for (int i = 0; i < 60; ++i) {
        PlannedSheet sheet = desk.titles()[i % 3];
        sheet.sheet.document.id =
            desk.addDocument({}, {{"LNAME", "Иванов"}, {"BLANK_NO", QString::number(i)}});
        sheets << sheet;
    }
    desk.step->setSheets(sheets);
    QTimer beat;
    beat.start(0);
    QElapsedTimer sinceBeat;
    qint64 longest = 0;
    int beats = 0;
    connect(&beat, &QTimer::timeout, this, [&] {
        longest = sinceBeat.isValid() ? qMax(longest, sinceBeat.elapsed()) : 0;
        sinceBeat.start();
        ++beats;
    });
    clickButton(desk.step, "printButton");
    desk.waitUntilDone();
    QVERIFY(beats >= 60); // one for each sheet at least
    qInfo("longest gap: %lld ms in %d beats", longest, beats);
}

QTEST_MAIN(tst_PrintStep)
#include "tst_PrintStep.moc"
