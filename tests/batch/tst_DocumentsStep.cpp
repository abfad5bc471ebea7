#include <QtTest>

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QLineEdit>
#include <QSpinBox>
#include <QTableWidget>

#include "BatchDesk.h"
#include "app/widgets/DateField.h"
#include "batch/DocumentsModel.h"
#include "batch/DocumentsStep.h"
#include "batch/HeadingCheck.h"

/// The list of documents and their blanks.
class tst_DocumentsStep : public QObject
{
    Q_OBJECT

private slots:
    void listsDocumentsAndTicksNone();
    void searchesAsOneTypes_data();
    void searchesAsOneTypes();
    void filters();
    void ticksOutliveFilters();
    void clicksTick();
    void shiftClickTicksARange();
    void spaceTicksWhatIsSelected();
    void headingTakesWhatIsShown();
    void columnsSort();
    void sheetsInTheOrderOfTheList();
    void aRowForEachBlank();
    void aFormWithoutABlank();
    void numbersOfDocuments_data();
    void numbersOfDocuments();
    void aThousandDocuments();
    void aHundredThousandDocuments();
};

namespace {

void addThree(BatchDesk& desk)
{
    desk.addForm("Диплом");
    desk.addForm("Справка");
    desk.addBlank({}, {{"NAME", "Титул"}});
    desk.addBlank({}, {{"NAME", "Приложение"}});
    desk.addDocument({}, {{"LNAME", "Петров"}, {"DOC_GROUP", "9А"}, {"BLANK_NO", "000777"}});
    desk.addDocument({},
                     {{"LNAME", "Артёмов"}, {"DOC_GROUP", "11Б"}, {"ISSUE_DATE", "2023-01-02"}});
    desk.addDocument({}, {{"LNAME", "Иванова"}, {"DOC_GROUP", "11А"}, {"DOC_TYPE", 2}});
    desk.addDocument({}, {{"LNAME", "Образец"}, {"TEMPLATE", 1}});
}

QPoint placeOf(const QTableView* table, int row, int column)
{
    const QModelIndex cell = table->model()->index(row, column);
    return table->visualRect(cell).center();
}

QVector<PlannedSheet> sheetsOf(BatchDesk& desk)
{
    return desk.window().findChild<DocumentsStep*>()->sheets();
}

} // namespace

void tst_DocumentsStep::listsDocumentsAndTicksNone()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    QCOMPARE(desk.people(), QStringList({"Артёмов", "Иванова", "Петров"}));
    QCOMPARE(desk.cell(2, DocumentsModel::PersonColumn), QString("Петров Иван Петрович"));
    QCOMPARE(desk.cell(2, DocumentsModel::GroupColumn), QString("9А"));
    QCOMPARE(desk.cell(2, DocumentsModel::FormColumn), QString("Диплом"));
    QCOMPARE(desk.cell(2, DocumentsModel::IssueDateColumn), QString("2021-06-25"));
    QCOMPARE(desk.cell(2, DocumentsModel::NumberColumn), QString("000777"));
    QCOMPARE(desk.status("documentsButton"), QString("Выбрано 0 из 3"));
    QVERIFY(sheetsOf(desk).isEmpty());
}

void tst_DocumentsStep::searchesAsOneTypes_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("found");
    QTest::newRow("part of the surname") << "ван" << QStringList({"Артёмов", "Иванова", "Петров"});
    QTest::newRow("any case") << "ПЕТРО" << QStringList({"Артёмов", "Иванова", "Петров"});
    QTest::newRow("several words") << "петров ив" << QStringList({"Артёмов", "Иванова", "Петров"});
    QTest::newRow("one") << "иванова" << QStringList({"Иванова"});
    QTest::newRow("e for yo") << "артем" << QStringList({"Артёмов"});
    QTest::newRow("number of the paper") << "00777" << QStringList({"Петров"});
    QTest::newRow("apostrophe") << "'" << QStringList();
}

void tst_DocumentsStep::searchesAsOneTypes()
{
    QFETCH(QString, typed);
    QFETCH(QStringList, found);
    BatchDesk desk;
    addThree(desk);
    desk.open();
    typeInto(named<QLineEdit>(desk.window(), "filterNameEdit"), typed);
    QCOMPARE(desk.people(), found);
}

void tst_DocumentsStep::filters()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    typeInto(named<QLineEdit>(desk.window(), "filterGroupEdit"), "11");
    QCOMPARE(desk.people(), QStringList({"Артёмов", "Иванова"}));
    auto* types = named<QComboBox>(desk.window(), "filterTypeCmb");
    types->setFocus();
    pressKey(Qt::Key_Down); // Диплом
    QCOMPARE(types->currentText(), QString("Диплом"));
    QCOMPARE(desk.people(), QStringList({"Артёмов"}));
    clickButton(desk.window(), "filterResetBtn");
    QCOMPARE(desk.people().size(), 3);

    named<QDateEdit>(desk.window(), "fromDate")->setDate(QDate(2022, 1, 1));
    QCOMPARE(desk.people().size(), 3);
    named<QCheckBox>(desk.window(), "dateCheck")->click();
    QCOMPARE(desk.people(), QStringList({"Артёмов"}));
    named<QDateEdit>(desk.window(), "fromDate")->setDate(QDate(2021, 6, 25)); // the day itself
    QCOMPARE(desk.people().size(), 3);
    named<QDateEdit>(desk.window(), "toDate")->setDate(QDate(2021, 6, 25)); // likewise
    QCOMPARE(desk.people(), QStringList({"Иванова", "Петров"}));
}

void tst_DocumentsStep::ticksOutliveFilters()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    desk.tick(1);
    auto* search = named<QLineEdit>(desk.window(), "filterNameEdit");
    typeInto(search, "Иванова");
    desk.tick(1);
    QCOMPARE(desk.status("documentsButton"), QString("Выбрано 2 из 3"));
    search->clear();
    QVERIFY(desk.isTicked(0));
    QVERIFY(desk.isTicked(1));
    QVERIFY(!desk.isTicked(2));
}

void tst_DocumentsStep::clicksTick()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    desk.tick(1);
    QVERIFY(desk.isTicked(0));
    desk.tick(1);
    QVERIFY(!desk.isTicked(0));
    // Elsewhere a click chooses the row alone.
    QTableView* table = desk.documents();
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                      placeOf(table, 1, DocumentsModel::PersonColumn));
    QVERIFY(!desk.isTicked(1));
}

void tst_DocumentsStep::shiftClickTicksARange()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addDocuments(8);
    desk.open();
    QTableView* table = desk.documents();
    const auto click = [&](int row, int column, Qt::KeyboardModifiers keys) {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, keys, placeOf(table, row, column));
    };
    const auto ticked = [&] {
        QVector<int> rows;
        for (int row = 0; row < 8; ++row) {
            if (desk.isTicked(row)) {
                rows << row;
            }
        }
        return rows;
    };
    click(1, DocumentsModel::TickColumn, Qt::NoModifier);
    click(4, DocumentsModel::TickColumn, Qt::ShiftModifier);
    QCOMPARE(ticked(), QVector<int>({1, 2, 3, 4}));
    click(3, DocumentsModel::TickColumn, Qt::NoModifier); // takes one off, and then more of them
    click(2, DocumentsModel::TickColumn, Qt::ShiftModifier);
    QCOMPARE(ticked(), QVector<int>({1, 4}));
    click(7, DocumentsModel::PersonColumn, Qt::NoModifier);
    click(6, DocumentsModel::PersonColumn, Qt::ShiftModifier);
    QCOMPARE(ticked(), QVector<int>({1, 4, 6, 7}));
}

void tst_DocumentsStep::spaceTicksWhatIsSelected()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addDocuments(4);
    desk.open();
    desk.documents()->setFocus();
    pressKey(Qt::Key_Down);
    pressKey(Qt::Key_Space);
    QVERIFY(!desk.isTicked(0));
    QVERIFY(desk.isTicked(1));
    pressKey(Qt::Key_Down);
    pressKey(Qt::Key_Down, Qt::ShiftModifier);
    pressKey(Qt::Key_Space);
    QVERIFY(desk.isTicked(2));
    QVERIFY(desk.isTicked(3));
    pressKey(Qt::Key_A, Qt::ControlModifier);
    pressKey(Qt::Key_Space); // the current one is ticked, so all are taken off
    QCOMPARE(desk.status("documentsButton"), QString("Выбрано 0 из 4"));
}

void tst_DocumentsStep::headingTakesWhatIsShown()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    auto* heading = named<QCheckBox>(desk.window(), "selectAllCheck");
    typeInto(named<QLineEdit>(desk.window(), "filterGroupEdit"), "11");
    heading->click();
    QCOMPARE(desk.status("documentsButton"), QString("Выбрано 2 из 3"));
    QCOMPARE(heading->checkState(), Qt::Checked);
    named<QLineEdit>(desk.window(), "filterGroupEdit")->clear();
    QCOMPARE(heading->checkState(), Qt::PartiallyChecked);
    heading->click(); // asks for the rest
    QCOMPARE(desk.status("documentsButton"), QString("Выбрано 3 из 3"));
    heading->setFocus();
    pressKey(Qt::Key_Space);
    QCOMPARE(desk.status("documentsButton"), QString("Выбрано 0 из 3"));
}

void tst_DocumentsStep::columnsSort()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    QHeaderView* header = desk.documents()->horizontalHeader();
    const auto clickHeading = [header](int column) {
        const QPoint place(header->sectionViewportPosition(column) +
                               header->sectionSize(column) / 2,
                           header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    };
    clickHeading(DocumentsModel::PersonColumn); // the other way round
    QCOMPARE(desk.people(), QStringList({"Петров", "Иванова", "Артёмов"}));
    clickHeading(DocumentsModel::GroupColumn);
    QCOMPARE(desk.people(), QStringList({"Иванова", "Артёмов", "Петров"}));
}

void tst_DocumentsStep::sheetsInTheOrderOfTheList()
{
    BatchDesk desk;
    addThree(desk);
    desk.addBlank({}, {{"NAME", ""}, {"FORM_ID", 2}});
    desk.open();
    named<QCheckBox>(desk.window(), "selectAllCheck")->click();
    desk.documents()->sortByColumn(DocumentsModel::PersonColumn, Qt::DescendingOrder);
    typeInto(named<QLineEdit>(desk.window(), "filterNameEdit"), "Иванова"); // hides, and no more
    const QVector<PlannedSheet> sheets = sheetsOf(desk);
    QCOMPARE(sheets.size(), 3);
    QCOMPARE(sheets[0].sheet.document.surname, QString("Петров"));
    QCOMPARE(sheets[0].form, QString("Диплом"));
    QCOMPARE(sheets[0].group, QString("9А"));
    QCOMPARE(sheets[0].blankName, QString("Титул"));
    QCOMPARE(sheets[0].blankSeries, QString("АБ"));
    QCOMPARE(sheets[0].blankNumber, QString("000777"));
    QCOMPARE(sheets[1].blankName, QString("Бланк 3")); // has no name of its own
    QCOMPARE(sheets[2].sheet.document.surname, QString("Артёмов"));
}

void tst_DocumentsStep::aRowForEachBlank()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    typeInto(named<QLineEdit>(desk.window(), "filterNameEdit"), "Петров 000777");
    desk.tick(1);
    auto* blanks = named<QTableWidget>(desk.window(), "blanksTable");
    QCOMPARE(blanks->rowCount(), 2);
    QCOMPARE(blanks->item(0, 0)->text(), QString("Титул"));
    QCOMPARE(blanks->item(0, 0)->checkState(), Qt::Checked);
    QCOMPARE(blanks->item(1, 0)->checkState(), Qt::Unchecked);

    blanks->setFocus();
    blanks->setCurrentCell(1, 0);
    pressKey(Qt::Key_Space);
    auto* copies = qobject_cast<QSpinBox*>(blanks->cellWidget(1, 3));
    QVERIFY(copies);
    typeInto(copies, "3");
    blanks->setFocus();
    blanks->setCurrentCell(1, 4);
    pressKey(Qt::Key_Space);
    const QVector<PlannedSheet> sheets = sheetsOf(desk);
    QCOMPARE(sheets.size(), 2);
    QCOMPARE(sheets[0].sheet.copies, 1);
    QVERIFY(!sheets[0].sheet.withBackground);
    QCOMPARE(sheets[1].blankName, QString("Приложение"));
    QCOMPARE(sheets[1].sheet.copies, 3);
    QVERIFY(sheets[1].sheet.withBackground);

    // What was set stays when other documents are chosen.
    desk.tick(1);
    QVERIFY(sheetsOf(desk).isEmpty());
    desk.tick(1);
    QCOMPARE(sheetsOf(desk).size(), 2);
    // And when the database is read again.
    QVERIFY(desk.window().reload());
    QCOMPARE(sheetsOf(desk).size(), 2);
    QCOMPARE(sheetsOf(desk)[1].sheet.copies, 3);
}

void tst_DocumentsStep::aFormWithoutABlank()
{
    BatchDesk desk;
    addThree(desk);
    desk.open();
    typeInto(named<QLineEdit>(desk.window(), "filterNameEdit"), "Иванова");
    desk.tick(1);
    auto* blanks = named<QTableWidget>(desk.window(), "blanksTable");
    QCOMPARE(blanks->rowCount(), 1);
    QVERIFY(blanks->item(0, 0)->text().startsWith("У типа «Справка» нет бланка: 1 документ"));
    QVERIFY(blanks->item(0, 0)->text().contains("«БЛАНКИ»"));
    QCOMPARE(sheetsOf(desk).size(), 1);
    QCOMPARE(sheetsOf(desk).first().sheet.blank.problem, BlankChoice::Problem::NoBlanks);
}

void tst_DocumentsStep::numbersOfDocuments_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("words");
    QTest::newRow("2") << 2 << "2 документа";
    QTest::newRow("4") << 4 << "4 документа";
    QTest::newRow("5") << 5 << "5 документов";
    QTest::newRow("10") << 10 << "10 документов";
    QTest::newRow("11") << 11 << "11 документов";
    QTest::newRow("14") << 14 << "14 документов";
    QTest::newRow("21") << 21 << "21 документ";
    QTest::newRow("102") << 102 << "102 документа";
    QTest::newRow("112") << 112 << "112 документов";
}

void tst_DocumentsStep::numbersOfDocuments()
{
    QFETCH(int, number);
    QFETCH(QString, words);
    BatchDesk desk;
    desk.addForm("Справка");
    desk.addDocuments(number);
    desk.open();
    named<QCheckBox>(desk.window(), "selectAllCheck")->click();
    const QString text = named<QTableWidget>(desk.window(), "blanksTable")->item(0, 0)->text();
    QVERIFY2(text.startsWith("У типа «Справка» нет бланка: " + words + " не на чем"),
             qPrintable(text));
}

void tst_DocumentsStep::aThousandDocuments()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.addDocuments(1000);
    desk.open();
    const qint64 before = workedMs();
    QVERIFY(desk.window().reload());
    QCoreApplication::processEvents();
    const qint64 elapsed = workedMs() - before;
    QCOMPARE(desk.people().size(), 1000);
    QVERIFY2(elapsed < 300, qPrintable(QString::number(elapsed)));
}

void tst_DocumentsStep::aHundredThousandDocuments()
{
    BatchDesk desk;
    desk.addForm("Диплом");
    desk.exec("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100000) "
              "INSERT INTO docs (LNAME, FNAME, MNAME, DOC_TYPE, DOC_GROUP, ISSUE_DATE, TEMPLATE) "
              "SELECT 'Фамилия' || (i * 7919 % 100000), 'Анна', 'Сергеевна', 1, '9А', "
              "'2024-06-25', 0 FROM n");
    desk.open();
    QCOMPARE(desk.status("documentsButton"), QString("Выбрано 0 из 100000"));
    const qint64 before = workedMs();
    typeInto(named<QLineEdit>(desk.window(), "filterNameEdit"), "99999");
    const qint64 elapsed = workedMs() - before; // of five letters, each of which is a search
    QCOMPARE(desk.people(), QStringList("Фамилия99999"));
    QVERIFY2(elapsed < 2000, qPrintable(QString::number(elapsed)));
}

QTEST_MAIN(tst_DocumentsStep)
#include "tst_DocumentsStep.moc"
