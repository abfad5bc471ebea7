#include <QtTest>

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>

#include "app/AppStyle.h"
#include "batch/CalibrationDialog.h"
#include "printing/BatchObserver.h"
#include "printing/PrintBatch.h"
#include "support/ModalDriver.h"
#include "support/PdfMeasure.h"
#include "support/PrintFixture.h"
#include "support/Widgets.h"

namespace {

class Silent : public BatchObserver
{
public:
    bool goesOn(int /*sheet*/, int /*count*/) override { return true; }
};

/// A blank "Диплом" of A4, landscape, moved by 5 and -3 mm, an unnamed one, and a document.
class CalibrationDesk : public PrintFixture
{
public:
    CalibrationDesk()
    {
        loadBaseStyle();
        addDocument();
        blank = addBlank({blankItem(0, "#LNAME", QRectF(400, 300, 400, 60))},
                         {{"NAME", "Диплом"}, {"OFFSET_X", 5}, {"OFFSET_Y", -3}});
        unnamed = addBlank({}, {{"NAME", ""}});
    }

    QPoint stored()
    {
        return {value("SELECT OFFSET_X FROM blanks WHERE ID = ?", {blank}).toInt(),
                value("SELECT OFFSET_Y FROM blanks WHERE ID = ?", {blank}).toInt()};
    }

    /// Where the surname stands on paper.
    QPointF printedPlace()
    {
        Silent observer;
        PrintSheet sheet;
        sheet.document.id = 1;
        sheet.blank.id = blank;
        PrintBatch batch({sheet}, {PrintTarget::Kind::OneFile, path("page.pdf"), {}}, observer);
        return batch.begin() && batch.run()
                   ? PdfMeasure(path("page.pdf")).word("Иванов").box.topLeft()
                   : QPointF();
    }

    QVariant blank;
    QVariant unnamed;
};

void type(const CalibrationDialog& dialog, const QString& x, const QString& y)
{
    typeInto(named<QLineEdit>(dialog, "offsetXEdit"), x);
    typeInto(named<QLineEdit>(dialog, "offsetYEdit"), y);
}

QString textOf(const CalibrationDialog& dialog, const QString& label)
{
    return named<QLabel>(dialog, label)->text();
}

const char* const question = "Записать в бланк «Диплом» смещение печати X 2 мм, Y −2 мм?";

/// Writes, says yes and waits for a message that begins so. Empty if all came, else what did not.
QString write(CalibrationDialog& dialog, const QString& title, const QString& beginning)
{
    ModalDriver driver;
    driver.expectMessage("Zelvora", question, "Да");
    driver.expectMessageStarting(title, beginning);
    clickButton(dialog, "writeOffsetsButton");
    return driver.finished() ? QString() : QString(driver.failures());
}

} // namespace

/// The dialog that brings a printer to the place: sheet, numbers, offsets, and the write.
class tst_CalibrationDialog : public QObject
{
    Q_OBJECT

private slots:
    void blanksToChooseFrom();
    void sheetOfTheBlank();
    void sheetThatCantBeWritten();
    void paperTooSmall();
    void numbersAndWhatTheyMean();
    void noNumbers();
    void writtenAfterAQuestion();
    void printMovesAsTold();
    void refusedIfChanged();
    void refusedIfDeleted();
    void refusedIfBusy();
    void unwritableDirectory();
    void noDatabaseIsMade();
    void noBlanks();
    void longNamesWidenNothing();
};

void tst_CalibrationDialog::blanksToChooseFrom()
{
    CalibrationDesk desk;
    const CalibrationDialog dialog(desk.unnamed);
    const auto* blanks = named<QComboBox>(dialog, "blankCmb");
    QCOMPARE(blanks->itemText(0), QString("Диплом"));
    QCOMPARE(blanks->currentText(), "Бланк " + desk.unnamed.toString());
    QCOMPARE(named<QComboBox>(CalibrationDialog(QVariant()), "blankCmb")->currentIndex(), 0);
}

void tst_CalibrationDialog::sheetOfTheBlank()
{
    CalibrationDesk desk;
    CalibrationDialog dialog(desk.blank);
    dialog.show();
    named<QComboBox>(dialog, "printerCmb")->setCurrentText("PDF: один файл");
    ModalDriver driver;
    driver.expectFileDialog(desk.path("sheet.pdf"));
    clickButton(dialog, "printSheetButton");
    QVERIFY2(driver.finished(), driver.failures());
    const PdfMeasure sheet(desk.path("sheet.pdf"));
    QCOMPARE(sheet.pageCount(), 1);
    QVERIFY(qAbs(sheet.pageSize().width() - 297) < 0.5);
    QVERIFY(!sheet.word("Проверочный").box.isEmpty());
    QVERIFY(!sheet.word("Диплом").box.isEmpty());
    // The blank's own offsets do not move it: the base line of the upper scale is at 10 mm.
    QVERIFY(qAbs(sheet.ink(QRectF(62.3, 9, 0.4, 2)).center().y() - 10) < 0.2);
}

void tst_CalibrationDialog::sheetThatCantBeWritten()
{
    CalibrationDesk desk;
    CalibrationDialog dialog(desk.blank);
    dialog.show();
    named<QComboBox>(dialog, "printerCmb")->setCurrentText("PDF: один файл");
    ModalDriver driver;
    driver.expectFileDialog(desk.path("docs.db")); // is never replaced
    driver.expectMessageStarting("Проверочный лист", "docs.db", "Yes");
    driver.expectMessageStarting("Ошибка", "Не удалось записать файл «");
    clickButton(dialog, "printSheetButton");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(desk.value("SELECT count(*) FROM blanks").toInt(), 2);
}

void tst_CalibrationDialog::paperTooSmall()
{
    CalibrationDesk desk;
    desk.exec("UPDATE blanks SET SIZE_WIDTH = 50, SIZE_HEIGHT = 50 WHERE ID = ?", {desk.blank});
    CalibrationDialog dialog(desk.blank);
    dialog.show();
    named<QComboBox>(dialog, "printerCmb")->setCurrentText("PDF: один файл");
    ModalDriver driver;
    driver.expectFileDialog(desk.path("sheet.pdf"));
    driver.expectMessage("Ошибка", "Лист бланка меньше 60 мм, шкалы на нём не поместятся.");
    clickButton(dialog, "printSheetButton");
    QVERIFY2(driver.finished(), driver.failures());
    QVERIFY(!QFileInfo::exists(desk.path("sheet.pdf")));
}

// 2 mm are 7 units, and a unit is 297 / 1122 mm.
void tst_CalibrationDialog::numbersAndWhatTheyMean()
{
    CalibrationDesk desk;
    CalibrationDialog dialog(desk.blank);
    dialog.show();
    type(dialog, "2", "-1,5");
    QCOMPARE(textOf(dialog, "resultXLabel"),
             QString("Смещение печати X: 2 мм — сдвинет печать на 1,85 мм влево, остаток 0,15 мм "
                     "вправо"));
    QCOMPARE(textOf(dialog, "resultYLabel"),
             QString("Смещение печати Y: -2 мм — сдвинет печать на 1,85 мм вниз, остаток 0,35 мм "
                     "вниз"));
    QCOMPARE(
        textOf(dialog, "currentLabel"),
        QString("Сейчас у бланка X 5 мм, Y −3 мм. На проверочном листе они не действуют: новые "
                "числа заменяют их."));
    QVERIFY(named<QPushButton>(dialog, "writeOffsetsButton")->isEnabled());
    // 5 mm are 18 units, 4.76 on paper: nearest to 4.8. 3 mm are 11, 2.91.
    type(dialog, "4,8", "-2,9");
    QVERIFY(!named<QPushButton>(dialog, "writeOffsetsButton")->isEnabled()); // as they are
}

void tst_CalibrationDialog::noNumbers()
{
    CalibrationDesk desk;
    CalibrationDialog dialog(desk.blank);
    dialog.show();
    type(dialog, "2 мм", "0");
    QCOMPARE(textOf(dialog, "resultXLabel"),
             QString("Введите число миллиметров, например 1,5 или -2."));
    QVERIFY(!named<QPushButton>(dialog, "writeOffsetsButton")->isEnabled());
}

void tst_CalibrationDialog::writtenAfterAQuestion()
{
    CalibrationDesk desk;
    const QByteArray before = desk.dump();
    CalibrationDialog dialog(desk.blank);
    dialog.show();
    type(dialog, "2", "-1,5");
    ModalDriver driver;
    driver.expectMessage("Zelvora", question, "Нет");
    clickButton(dialog, "writeOffsetsButton");
    QCOMPARE(desk.dump(), before);
    driver.expectMessage("Zelvora", question, "Да");
    driver.expectMessageStarting("Zelvora", "Смещение печати записано.");
    clickButton(dialog, "writeOffsetsButton");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(desk.stored(), QPoint(2, -2));
    QVERIFY(textOf(dialog, "currentLabel").startsWith("Сейчас у бланка X 2 мм, Y −2 мм."));
    desk.exec("UPDATE blanks SET OFFSET_X = 5, OFFSET_Y = -3 WHERE ID = ?", {desk.blank});
    QCOMPARE(desk.dump(), before); // nothing else was written
}

// From no offset to (2, -2): 7 units to the left, 7 down; a unit is 297 / 1122 mm.
void tst_CalibrationDialog::printMovesAsTold()
{
    CalibrationDesk desk;
    desk.exec("UPDATE blanks SET OFFSET_X = 0, OFFSET_Y = 0 WHERE ID = ?", {desk.blank});
    const QPointF before = desk.printedPlace();
    CalibrationDialog dialog(desk.blank);
    dialog.show();
    type(dialog, "2", "-1,5");
    QCOMPARE(write(dialog, "Zelvora", "Смещение печати записано."), QString());
    const QPointF moved = desk.printedPlace() - before;
    const double way = 7 * 297.0 / 1122;
    QVERIFY(qAbs(moved.x() + way) < 0.05);
    QVERIFY(qAbs(moved.y() - way) < 0.05);
}

void tst_CalibrationDialog::refusedIfChanged()
{
    CalibrationDesk desk;
    CalibrationDialog dialog(desk.blank);
    dialog.show();
    type(dialog, "2", "-1,5");
    desk.exec("UPDATE blanks SET SIZE_WIDTH = 148 WHERE ID = ?", {desk.blank});
    QCOMPARE(write(dialog, "Ошибка", "Бланк за это время изменили или удалили"), QString());
    QCOMPARE(desk.stored(), QPoint(5, -3));
}

void tst_CalibrationDialog::refusedIfDeleted()
{
    CalibrationDesk desk;
    CalibrationDialog dialog(desk.blank);
    dialog.show();
    type(dialog, "2", "-1,5");
    desk.exec("DELETE FROM blanks WHERE ID = ?", {desk.blank});
    QCOMPARE(write(dialog, "Ошибка", "Бланк за это время изменили или удалили"), QString());
    QCOMPARE(textOf(dialog, "currentLabel"),
             QString("Бланк не прочитан: такого бланка больше нет."));
    QVERIFY(!named<QPushButton>(dialog, "printSheetButton")->isEnabled());
}

void tst_CalibrationDialog::refusedIfBusy()
{
    CalibrationDesk desk;
    CalibrationDialog dialog(desk.blank);
    dialog.show();
    type(dialog, "2", "-1,5");
    {
        QSqlDatabase other = QSqlDatabase::addDatabase("QSQLITE", "other");
        other.setDatabaseName(desk.path("docs.db"));
        QVERIFY(other.open() && QSqlQuery(other).exec("BEGIN IMMEDIATE"));
        QCOMPARE(write(dialog, "Ошибка", "Смещение не записано: "), QString());
        other.close();
    }
    QSqlDatabase::removeDatabase("other");
    QCOMPARE(desk.stored(), QPoint(5, -3));
}

// The file that undoes a change can't be made beside the database.
void tst_CalibrationDialog::unwritableDirectory()
{
    CalibrationDesk desk;
    CalibrationDialog dialog(desk.blank);
    dialog.show();
    type(dialog, "2", "-1,5");
    QVERIFY(QDir().mkdir(desk.path("docs.db-journal")));
    QCOMPARE(
        write(dialog, "Ошибка", "Смещение не записано: в базу данных не удалось ничего записать ("),
        QString());
    QVERIFY(QDir().rmdir(desk.path("docs.db-journal")));
    QCOMPARE(desk.stored(), QPoint(5, -3));
}

void tst_CalibrationDialog::noDatabaseIsMade()
{
    CalibrationDesk desk;
    CalibrationDialog dialog(desk.blank);
    dialog.show();
    type(dialog, "2", "-1,5");
    QVERIFY(QFile::remove(desk.path("docs.db")));
    QCOMPARE(write(dialog, "Ошибка", "Смещение не записано: "), QString());
    QVERIFY(!QFileInfo::exists(desk.path("docs.db")));
}

void tst_CalibrationDialog::noBlanks()
{
    CalibrationDesk desk;
    desk.exec("DELETE FROM blanks");
    const CalibrationDialog dialog((QVariant()));
    QVERIFY(!named<QPushButton>(dialog, "printSheetButton")->isEnabled());
    QVERIFY(!named<QPushButton>(dialog, "writeOffsetsButton")->isEnabled());
    QCOMPARE(textOf(dialog, "currentLabel"), QString("В базе данных нет бланков."));
}

void tst_CalibrationDialog::longNamesWidenNothing()
{
    CalibrationDesk desk;
    const int width = CalibrationDialog(desk.blank).minimumSizeHint().width();
    desk.exec("UPDATE blanks SET NAME = ? WHERE ID = ?", {QString(150, QChar(0x0429)), desk.blank});
    QCOMPARE(CalibrationDialog(desk.blank).minimumSizeHint().width(), width);
}

QTEST_MAIN(tst_CalibrationDialog)
#include "tst_CalibrationDialog.moc"
