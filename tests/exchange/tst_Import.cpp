#include <QtTest>

#include <QComboBox>
#include <QFileDialog>
#include <QJsonDocument>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSqlQuery>
#include <QTimer>

#include "ExchangeFixture.h"
#include "forms/FormDefinitions.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"

/// Documents on their way out of a workbook into the database.
class tst_Import : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_fixture = std::make_unique<ExchangeFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void nothingHappensUnlessAllIsChosen();
    void fileDialog();
    void cancelledFileDialog();
    void failedQueries();
    void busyWhileItWorks();

    void fixedTags();
    void contentOfEveryFieldType();
    void fieldsWithOneTag();
    void itemsWithOneTag();
    void fixedTagThatIsAFieldToo();
    void typeIsTheChosenForm();
    void twiceMakesTwice();

    void rangeAndFormatOfTheWidgets();
    void oneRow();
    void datesInAnotherNotation();
    void dateFieldIsStoredInOneNotation();
    void duplicateWords_data();
    void duplicateWords();

    void emptyCellBeforeDuplicate();
    void emptyCellAfterDuplicate();
    void withoutDuplicate();
    void endOfTheData();
    void emptyRowsWithDuplicateFirst();
    void columnThatNamesNoCell();
    void emptyMapping();
    void apostropheStops();
    void apostropheInAFormField();
    void failedInsert();

    void cellKinds_data();
    void cellKinds();
    void emptyDateCell();
    void mergedCells();
    void anotherSheetActive();
    void savedByOpenpyxl();

    void roundTrip();

private:
    void chooseForm(int index = 0);
    QString book() const { return m_fixture->app.path("in.xlsx"); }
    void writePeople(const QStringList& surnames);
    void run(const QStringList& emptyCells = {});
    QStringList rows(const QString& columns = "LNAME");
    QJsonObject content(int id = 1);

    std::unique_ptr<ExchangeFixture> m_fixture;
};

namespace {

QJsonObject field(const char* tag, const char* name, int type, QJsonObject more = {})
{
    more["tag"] = tag;
    more["name"] = name;
    more["type"] = type;
    return more;
}

QJsonArray cell(const char* kind, const QJsonValue& value)
{
    return {kind, value};
}

} // namespace

void tst_Import::chooseForm(int index)
{
    m_fixture->child<QComboBox>("formCombo")->setCurrentIndex(index);
}

/// Writes a book of complete rows, from row 2 on, and a template and a form to import it by.
void tst_Import::writePeople(const QStringList& surnames)
{
    constexpr int firstRow = 2;
    QJsonObject cells;
    int row = firstRow;
    for (const QString& surname : surnames) {
        cells["A" + QString::number(row)] = "нет";
        cells["B" + QString::number(row)] = surname;
        ++row;
    }
    writeCells(book(), cells);
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}, {"B", "#LNAME"}}, "", firstRow, row - 1);
}

/// Imports the book by the first template into the first form, as a user does, with a box for each
/// of the cells.
void tst_Import::run(const QStringList& emptyCells)
{
    m_fixture->open();
    m_fixture->selectTemplate(0);
    chooseForm();
    ModalDriver user;
    user.expectFileDialog(book());
    for (const QString& cell : emptyCells) {
        user.expectMessage("Внимание!", "Ошибка чтения: ячейка " + cell, "OK");
    }
    m_fixture->click("importButton");
    QVERIFY2(user.finished(), user.failures());
    QVERIFY(!m_fixture->dialog().isVisible());
    QCOMPARE(m_fixture->dialog().result(), int(QDialog::Accepted));
}

/// The columns of all documents, joined by "|".
QStringList tst_Import::rows(const QString& columns)
{
    const QString joined = QString(columns).replace(", ", " || '|' || ");
    QStringList all;
    QSqlQuery query("SELECT " + joined + " FROM docs ORDER BY ID");
    while (query.next()) {
        all << query.value(0).toString();
    }
    return all;
}

QJsonObject tst_Import::content(int id)
{
    return parseJsonColumn(m_fixture->app.value("SELECT CONTENT FROM docs WHERE ID = ?", {id}));
}

void tst_Import::nothingHappensUnlessAllIsChosen()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}}, "", 5, 4);
    m_fixture->open();
    ModalDriver nothingExpected;
    m_fixture->click("importButton"); // no template, no form
    chooseForm();
    m_fixture->click("importButton"); // no template
    m_fixture->selectTemplate(0);
    m_fixture->click("importButton"); // the first row behind the last one
    chooseForm(-1);
    m_fixture->child<QLineEdit>("toRow")->setText("9");
    m_fixture->click("importButton"); // no form
    QVERIFY(m_fixture->dialog().isVisible());
    QVERIFY2(nothingExpected.finished(), nothingExpected.failures());
}

void tst_Import::fileDialog()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}}, "", 2, 2);
    QDir(m_fixture->app.path()).mkdir("imports");
    m_fixture->open();
    m_fixture->selectTemplate(0);
    chooseForm();
    ModalDriver user;
    user.expect<QFileDialog>([&](QFileDialog* dialog) {
        QCOMPARE(dialog->windowTitle(), QString("Укажите шаблон для импорта"));
        QCOMPARE(dialog->nameFilters(), QStringList{"Excel Files (*.xlsx *.xls)"});
        QCOMPARE(dialog->directory().path(), m_fixture->app.path("imports"));
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptOpen);
        static_cast<QDialog*>(dialog)->reject();
    });
    m_fixture->click("importButton");
    QVERIFY2(user.finished(), user.failures());
}

void tst_Import::cancelledFileDialog()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    chooseForm();
    const QByteArray before = m_fixture->app.dump();
    ModalDriver user;
    user.expectFileDialogCancelled();
    m_fixture->click("importButton");
    QVERIFY2(user.finished(), user.failures());
    QVERIFY(m_fixture->dialog().isVisible());
    QCOMPARE(m_fixture->app.dump(), before);
}

void tst_Import::failedQueries()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    chooseForm();
    ModalDriver nothingExpected;
    m_fixture->app.exec("ALTER TABLE export RENAME TO elsewhere");
    LogCatcher log;
    m_fixture->click("importButton");
    QVERIFY(log.contains("Unable to select export query"));
    QVERIFY(log.contains("no such table"));
    m_fixture->app.exec("DROP TABLE forms");
    log.clear();
    m_fixture->click("importButton");
    QVERIFY(log.contains("Unable to select from forms query"));
    QVERIFY(!log.contains("Unable to select export query"));
    QVERIFY(m_fixture->dialog().isVisible());
}

void tst_Import::busyWhileItWorks()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}}, "", 2, 2);
    writeCells(book(), {{"A2", cell("blank", "")}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    chooseForm();
    QVector<Qt::CursorShape> shapes;
    ModalDriver user;
    user.expectFileDialog(book());
    user.expect<QMessageBox>([&](QMessageBox* box) {
        shapes << m_fixture->dialog().cursor().shape();
        QTest::keyClick(box, Qt::Key_Return);
    });
    m_fixture->click("importButton");
    QVERIFY2(user.finished(), user.failures());
    shapes << m_fixture->dialog().cursor().shape();
    QCOMPARE(shapes, (QVector<Qt::CursorShape>{Qt::BusyCursor, Qt::ArrowCursor}));
}

void tst_Import::fixedTags()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон",
                           {{"A", "#BLANK_SER"},
                            {"B", "#BLANK_NO"},
                            {"C", "#LNAME"},
                            {"D", "#FNAME"},
                            {"E", "#MNAME"},
                            {"F", "#BIRTH_DATE"},
                            {"G", "#DOC_GROUP"},
                            {"H", "#ISSUE_DATE"},
                            {"I", "#EDIT_DATE"},
                            {"J", "#DUPLICATE"},
                            {"K", "#UNKNOWN"}},
                           "", 2, 2);
    writeCells(book(), {{"A2", "0077"},
                        {"B2", "0012345"},
                        {"C2", "Иванова"},
                        {"D2", "Анна"},
                        {"E2", "Петровна"},
                        {"F2", "09.03.2001"},
                        {"G2", "11 \"А\""},
                        {"H2", "25.06.2019"},
                        {"I2", "09.03.2001"},
                        {"J2", "Дубликат"},
                        {"K2", "мимо"}});
    run();
    QCOMPARE(rows("BLANK_SER, BLANK_NO, LNAME, FNAME, MNAME, BIRTH_DATE, DOC_TYPE, DOC_GROUP, "
                  "ISSUE_DATE, EDIT_DATE, DUPLICATE, TEMPLATE, TEMPLATE_NAME"),
             QStringList{"0077|0012345|Иванова|Анна|Петровна|2001-03-09|1|11 \"А\"|2019-06-25|"
                         "09.03.2001|1|0|"});
    QCOMPARE(content(), QJsonObject());
    QCOMPARE(rows("typeof(DUPLICATE), typeof(DOC_TYPE), typeof(CONTENT)"),
             QStringList{"integer|integer|text"});
}

void tst_Import::contentOfEveryFieldType()
{
    const QJsonArray columns{QJsonObject{{"name", "Предмет"}, {"typeID", "0"}}};
    m_fixture->addForm("Диплом",
                       {field("#TEXT", "Строка", 0), field("#LIST", "Список", 1, {{"list", 7}}),
                        field("#COUNT", "Счетчик", 2),
                        field("#DAY", "Дата", 3, {{"format", "d MMMM yyyy"}}),
                        field("#GRADES", "Таблица", 4, {{"content", columns}}),
                        field("#MEMO", "Текст", 5, {{"list", 3}}), field("#LATER", "Новый", 6),
                        field("#NO_TEXT", "Без", 0), field("#NO_LIST", "Без", 1, {{"list", 8}}),
                        field("#NO_DAY", "Без", 3, {{"format", "yyyy"}}),
                        field("#NO_GRADES", "Без", 4, {{"content", columns}})});
    m_fixture->addTemplate("Шаблон",
                           {{"A", "#DUPLICATE"},
                            {"B", "#TEXT"},
                            {"C", "#LIST"},
                            {"D", "#COUNT"},
                            {"E", "#DAY"},
                            {"F", "#GRADES"},
                            {"G", "#MEMO"},
                            {"H", "#LATER"}},
                           "", 2, 2);
    writeCells(book(), {{"A2", "Оригинал"},
                        {"B2", "Сварщик \"5\" \\ разряда"},
                        {"C2", "нет такого в списке"},
                        {"D2", "-12"},
                        {"E2", "15.06.2024"},
                        {"F2", "Математика 5"},
                        {"G2", "первая\nвторая"},
                        {"H2", "как есть"}});
    run();
    const QJsonObject expected{
        {"#TEXT",
         QJsonObject{{"type", 0}, {"name", "Строка"}, {"value", "Сварщик \"5\" \\ разряда"}}},
        {"#LIST",
         QJsonObject{
             {"type", 1}, {"name", "Список"}, {"list", 7}, {"value", "нет такого в списке"}}},
        {"#COUNT", QJsonObject{{"type", 2}, {"name", "Счетчик"}, {"value", -12}}},
        {"#DAY",
         QJsonObject{
             {"type", 3}, {"name", "Дата"}, {"format", "d MMMM yyyy"}, {"value", "2024-06-15"}}},
        {"#GRADES", QJsonObject{{"type", 4}, {"name", "Таблица"}, {"value", "Математика 5"}}},
        {"#MEMO", QJsonObject{{"type", 5}, {"name", "Текст"}, {"value", "первая\nвторая"}}},
        {"#LATER", QJsonObject{{"type", 6}, {"name", "Новый"}, {"value", "как есть"}}},
        {"#NO_TEXT", QJsonObject{{"type", 0}, {"name", "Без"}}},
        {"#NO_LIST", QJsonObject{{"type", 1}, {"name", "Без"}, {"list", 8}}},
        {"#NO_DAY", QJsonObject{{"type", 3}, {"name", "Без"}}},
        {"#NO_GRADES", QJsonObject{{"type", 4}, {"name", "Без"}}}};
    QCOMPARE(content(), expected);
    QVERIFY(m_fixture->app.value("SELECT CONTENT FROM docs").toString().startsWith("{\n    \"#"));
}

void tst_Import::fieldsWithOneTag()
{
    // The entry comes from the last field of the tag, what is put into it from the first.
    m_fixture->addForm("Диплом", {field("#X", "Первое", 2), field("#X", "Второе", 0)});
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}, {"B", "#X"}}, "", 2, 2);
    writeCells(book(), {{"A2", "нет"}, {"B2", "7"}});
    run();
    QCOMPARE(content(),
             (QJsonObject{{"#X", QJsonObject{{"type", 0}, {"name", "Второе"}, {"value", 7}}}}));
}

void tst_Import::itemsWithOneTag()
{
    m_fixture->addForm("Диплом", {field("#X", "Поле", 0)});
    m_fixture->addTemplate(
        "Шаблон", {{"A", "#DUPLICATE"}, {"B", "#X"}, {"C", "#X"}, {"B", "#LNAME"}, {"C", "#LNAME"}},
        "", 2, 2);
    writeCells(book(), {{"A2", "нет"}, {"B2", "раньше"}, {"C2", "позже"}});
    run();
    QCOMPARE(rows(), QStringList{"позже"});
    QCOMPARE(content()["#X"].toObject()["value"], QJsonValue("позже"));
}

void tst_Import::fixedTagThatIsAFieldToo()
{
    m_fixture->addForm("Диплом", {field("#DUPLICATE", "Отметка", 2), field("#LNAME", "Имя", 0)});
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}, {"B", "#LNAME"}}, "", 2, 2);
    writeCells(book(), {{"A2", "дубликат"}, {"B2", "Иванов"}});
    run();
    QCOMPARE(rows("LNAME, DUPLICATE"), QStringList{"Иванов|1"});
    QCOMPARE(content()["#DUPLICATE"].toObject()["value"], QJsonValue(1));
    QCOMPARE(content()["#LNAME"].toObject()["value"], QJsonValue("Иванов"));
}

void tst_Import::typeIsTheChosenForm()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addForm("Диплом");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}, {"B", "#DOC_TYPE"}, {"C", "#DOC_NAME"}},
                           "", 2, 2);
    writeCells(book(), {{"A2", "нет"}, {"B2", "1"}, {"C2", "Аттестат"}});
    m_fixture->open();
    m_fixture->selectTemplate(0);
    chooseForm(1);
    ModalDriver user;
    user.expectFileDialog(book());
    m_fixture->click("importButton");
    QCOMPARE(rows("DOC_TYPE"), QStringList{"2"});
}

void tst_Import::twiceMakesTwice()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}, {"B", "#LNAME"}}, "", 2, 2);
    writeCells(book(), {{"A2", "нет"}, {"B2", "Иванов"}});
    run();
    run();
    QCOMPARE(rows(), (QStringList{"Иванов", "Иванов"}));
}

void tst_Import::rangeAndFormatOfTheWidgets()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}, {"B", "#LNAME"}, {"C", "#BIRTH_DATE"}});
    QJsonObject cells;
    for (int row = 2; row <= 6; ++row) {
        const QString number = QString::number(row);
        cells["A" + number] = "нет";
        cells["B" + number] = "ряд " + number;
        cells["C" + number] = number + "/3/2001";
    }
    writeCells(book(), cells);
    m_fixture->open();
    m_fixture->selectTemplate(0);
    chooseForm();
    // Nothing of this is in the database.
    m_fixture->child<QLineEdit>("fromRow")->setText("3");
    m_fixture->child<QLineEdit>("toRow")->setText("5");
    m_fixture->child<QLineEdit>("dateFormat")->setText("d/M/yyyy");
    ModalDriver user;
    user.expectFileDialog(book());
    m_fixture->click("importButton");
    QCOMPARE(rows("LNAME, BIRTH_DATE"),
             (QStringList{"ряд 3|2001-03-03", "ряд 4|2001-03-04", "ряд 5|2001-03-05"}));
    QCOMPARE(m_fixture->app.value("SELECT FROM_ROW || DATE_FORMAT FROM export").toString(),
             QString("2dd.MM.yyyy"));
}

void tst_Import::oneRow()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}}, "", 1, 1);
    writeCells(book(), {{"A1", "нет"}, {"A2", "нет"}});
    run();
    QCOMPARE(rows("ID").size(), 1);
}

void tst_Import::datesInAnotherNotation()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate(
        "Шаблон", {{"A", "#DUPLICATE"}, {"B", "#BIRTH_DATE"}, {"C", "#ISSUE_DATE"}}, "", 2, 3);
    writeCells(book(), {{"A2", "нет"},
                        {"B2", "2001-03-09"},
                        {"C2", "09.03.01"},
                        {"A3", "нет"},
                        {"B3", "30.02.2001"},
                        {"C3", "01.12.2020"}});
    run();
    QCOMPARE(rows("BIRTH_DATE, ISSUE_DATE"), (QStringList{"|", "|2020-12-01"}));
}

void tst_Import::dateFieldIsStoredInOneNotation()
{
    m_fixture->addForm("Диплом", {field("#DAY", "Дата", 3, {{"format", "dd.MM.yyyy"}})});
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}, {"B", "#DAY"}}, "", 2, 3);
    writeCells(book(), {{"A2", "нет"}, {"B2", "15.06.2024"}, {"A3", "нет"}, {"B3", "летом"}});
    run();
    QCOMPARE(
        content(1)["#DAY"].toObject(),
        (QJsonObject{
            {"type", 3}, {"name", "Дата"}, {"format", "dd.MM.yyyy"}, {"value", "2024-06-15"}}));
    QCOMPARE(content(2)["#DAY"].toObject()["value"], QJsonValue(""));
}

void tst_Import::duplicateWords_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("stored");
    QTest::newRow("Дубликат") << "Дубликат"
                              << "1";
    QTest::newRow("ДУБЛИКАТ") << "ДУБЛИКАТ"
                              << "1";
    QTest::newRow("дубликат") << "дубликат"
                              << "1";
    QTest::newRow("Оригинал") << "Оригинал"
                              << "0";
    QTest::newRow("blank behind") << "дубликат "
                                  << "0";
    QTest::newRow("number") << "1"
                            << "0";
    QTest::newRow("empty text") << ""
                                << "0";
}

void tst_Import::duplicateWords()
{
    QFETCH(QString, word);
    QFETCH(QString, stored);
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}}, "", 2, 2);
    writeCells(book(), {{"A2", word}});
    run();
    QCOMPARE(rows("DUPLICATE"), QStringList{stored});
}

void tst_Import::emptyCellBeforeDuplicate()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}, {"B", "#MNAME"}, {"C", "#DUPLICATE"}}, "", 2,
                           4);
    writeCells(book(), {{"A2", "Иванов"},
                        {"B2", "Иванович"},
                        {"C2", "нет"},
                        {"A3", "Ким"},
                        {"C3", "нет"},
                        {"A4", "Петров"},
                        {"B4", "Петрович"},
                        {"C4", "нет"}});
    LogCatcher log;
    run({"B3"});
    QCOMPARE(rows(), QStringList{"Иванов"});
    QCOMPARE(log.count("error insert into docs "), 1);
}

void tst_Import::emptyCellAfterDuplicate()
{
    m_fixture->addForm("Диплом", {field("#X", "Поле", 0)});
    m_fixture->addTemplate(
        "Шаблон",
        {{"C", "#DUPLICATE"}, {"A", "#LNAME"}, {"B", "#MNAME"}, {"D", "#FNAME"}, {"E", "#X"}}, "",
        2, 4);
    QJsonObject cells;
    for (const char* row : {"2", "3", "4"}) {
        for (const char* column : {"A", "B", "C", "D", "E"}) {
            cells[QString(column) + row] = QString(column) + row;
        }
    }
    cells.remove("B3");
    writeCells(book(), cells);
    run({"B3"});
    QCOMPARE(rows("LNAME, MNAME, FNAME"), (QStringList{"A2|B2|D2", "A3||", "A4|B4|D4"}));
    // The row's values do not spill over from the row before.
    QCOMPARE(content(2)["#X"].toObject(), (QJsonObject{{"type", 0}, {"name", "Поле"}}));
}

void tst_Import::withoutDuplicate()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}}, "", 2, 3);
    writeCells(book(), {{"A2", "Иванов"}, {"A3", "Петров"}});
    LogCatcher log;
    run();
    QCOMPARE(rows(), QStringList());
    QCOMPARE(log.count("error insert into docs "), 1);
    QVERIFY(log.contains("syntax error"));
    QVERIFY(
        log.contains("INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME,BIRTH_DATE, "));
}

void tst_Import::endOfTheData()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#LNAME"}, {"B", "#DUPLICATE"}}, "", 2, 99);
    writeCells(book(), {{"A2", "Иванов"}, {"B2", "нет"}, {"A3", "Петров"}, {"B3", "нет"}});
    run({"A4"});
    QCOMPARE(rows(), (QStringList{"Иванов", "Петров"}));
}

void tst_Import::emptyRowsWithDuplicateFirst()
{
    // The first cell read is the empty one: the statement lacks its value and the import ends.
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"B", "#DUPLICATE"}, {"A", "#LNAME"}}, "", 2, 99);
    writeCells(book(), {{"A2", "Иванов"}, {"B2", "нет"}});
    run({"B3"});
    QCOMPARE(rows(), QStringList{"Иванов"});
}

void tst_Import::columnThatNamesNoCell()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate(
        "Шаблон", {{"A", "#DUPLICATE"}, {"колонка excel", "#TAG"}, {"B", "#LNAME"}}, "", 2, 3);
    writeCells(book(), {{"A2", "нет"}, {"B2", "Иванов"}, {"A3", "нет"}, {"B3", "Петров"}});
    run({"колонка excel2", "колонка excel3"});
    QCOMPARE(rows(), (QStringList{"", ""}));
}

void tst_Import::emptyMapping()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {}, "", 2, 3);
    writeCells(book(), {{"A2", "нет"}});
    LogCatcher log;
    run();
    QCOMPARE(rows(), QStringList());
    QCOMPARE(log.count("error insert into docs "), 1);
}

void tst_Import::apostropheStops()
{
    writePeople({"Иванов", "О'Нил", "Петров"});
    LogCatcher log;
    run();
    QCOMPARE(rows(), QStringList{"Иванов"});
    QVERIFY(log.contains("error insert into docs "));
    QVERIFY(log.contains("syntax error"));
    QVERIFY(log.contains("О'Нил"));
}

void tst_Import::apostropheInAFormField()
{
    m_fixture->addForm("Диплом", {field("#X", "Поле", 0)});
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}, {"B", "#X"}}, "", 2, 2);
    writeCells(book(), {{"A2", "нет"}, {"B2", "л'Этуаль"}});
    run();
    QCOMPARE(rows(), QStringList());
}

void tst_Import::failedInsert()
{
    writePeople({"Иванов", "Петров", "Сидоров"});
    m_fixture->app.exec("CREATE TRIGGER no BEFORE INSERT ON docs WHEN NEW.LNAME = 'Петров' "
                        "BEGIN SELECT RAISE(ABORT, 'refused'); END;");
    LogCatcher log;
    run();
    QCOMPARE(rows(), QStringList{"Иванов"});
    QVERIFY(log.contains("error insert into docs "));
    QVERIFY(log.contains("refused"));
}

void tst_Import::cellKinds_data()
{
    QTest::addColumn<QString>("writer");
    QTest::addColumn<QJsonValue>("cell");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");

    const auto add = [](const char* name, const QJsonValue& value, const char* text, int number) {
        QTest::newRow(qPrintable(QString("excel ") + name))
            << "excel" << value << QString(text) << number;
    };
    const auto addLibre = [](const char* name, const QJsonValue& value, const char* text,
                             int number) {
        QTest::newRow(qPrintable(QString("libreoffice ") + name))
            << "libreoffice" << value << QString(text) << number;
    };
    add("shared", "текст", "текст", 0);
    add("shared digits", "0077", "0077", 77);
    add("shared blanks", "  a b ", "  a b ", 0);
    add("rich", cell("rich", QJsonArray{"жир", "ный"}), "жирный", 0);
    add("inline", cell("inline", "текст <&>"), "текст <&>", 0);
    add("rich inline", cell("inlinerich", QJsonArray{"раз", "два"}), "раздва", 0);
    // Written without a type, a number comes as it stands in the file.
    add("number", cell("number", "42"), "42", 42);
    add("large number", cell("number", "10000000"), "10000000", 10000000);
    add("fraction", cell("number", "2.75"), "2.75", 0);
    add("negative", cell("number", "-3"), "-3", -3);
    add("scientific", cell("number", "1.2E+3"), "1.2E+3", 0);
    // Written as a number, it comes as one.
    addLibre("number", cell("number", "42"), "42", 42);
    addLibre("large number", cell("number", "10000000"), "1e+07", 10000000);
    addLibre("fraction", cell("number", "2.75"), "2.75", 3);
    addLibre("date", cell("date", "36959"), "2001-03-09", 0);
    addLibre("shared", "текст", "текст", 0);
    add("date", cell("date", "36959"), "2001-03-09", 0);
    add("date and time", cell("datetime", "36959.5"), "2001-03-09T12:00:00.000", 0);
    add("time", cell("time", "0.25"), "06:00:00.000", 0);
    add("true", cell("bool", true), "true", 1);
    add("false", cell("bool", false), "false", 0);
    add("error", cell("error", "#N/A"), "#N/A", 0);
    // The formula itself is read and not what it came to.
    add("formula of a text", cell("formula", QJsonArray{"A1&\"x\"", "кэш"}), "=A1&\"x\"", 0);
    add("formula of a number", cell("formula", QJsonArray{"1+1", 2}), "=1+1", 0);
    addLibre("formula of a number", cell("formula", QJsonArray{"1+1", 2}), "=1+1", 0);
}

void tst_Import::cellKinds()
{
    QFETCH(QString, writer);
    QFETCH(QJsonValue, cell);
    QFETCH(QString, text);
    QFETCH(int, number);
    m_fixture->addForm("Диплом", {field("#N", "Число", 2), field("#S", "Строка", 0)});
    m_fixture->addTemplate(
        "Шаблон", {{"A", "#DUPLICATE"}, {"B", "#LNAME"}, {"B", "#N"}, {"B", "#S"}}, "", 2, 2);
    writeWorkbook(
        book(),
        {{"writer", writer},
         {"sheets", QJsonArray{QJsonObject{{"name", "Лист1"},
                                           {"cells", QJsonObject{{"A2", "нет"}, {"B2", cell}}}}}}});
    run();
    QCOMPARE(rows(), QStringList{text});
    QCOMPARE(content()["#S"].toObject()["value"], QJsonValue(text));
    QCOMPARE(content()["#N"].toObject()["value"], QJsonValue(number));
}

void tst_Import::emptyDateCell()
{
    // The format of a date makes no value of an empty cell.
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}, {"B", "#EDIT_DATE"}}, "", 2, 2);
    writeCells(book(), {{"A2", "нет"}, {"B2", cell("blankdate", "")}});
    run({"B2"});
    QCOMPARE(rows("EDIT_DATE"), QStringList{""});
}

void tst_Import::mergedCells()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}, {"B", "#LNAME"}, {"C", "#FNAME"}}, "", 2,
                           2);
    writeWorkbook(
        book(),
        {{"sheets", QJsonArray{QJsonObject{{"name", "Лист1"},
                                           {"merged", QJsonArray{"B2:C2"}},
                                           {"cells", QJsonObject{{"A2", "нет"},
                                                                 {"B2", "на двоих"},
                                                                 {"C2", cell("blank", "")}}}}}}});
    run({"C2"});
    QCOMPARE(rows("LNAME, FNAME"), QStringList{"на двоих|"});
}

void tst_Import::anotherSheetActive()
{
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}, {"B", "#LNAME"}}, "", 2, 2);
    QJsonArray sheets;
    for (const char* name : {"Первый", "Второй", "Третий"}) {
        sheets.append(
            QJsonObject{{"name", name}, {"cells", QJsonObject{{"A2", "нет"}, {"B2", name}}}});
    }
    writeWorkbook(book(), {{"active", 1}, {"sheets", sheets}});
    run();
    // The library's current sheet is the first one.
    QCOMPARE(rows(), QStringList{"Первый"});
}

void tst_Import::savedByOpenpyxl()
{
    // openpyxl names its parts from the root on, and keeps texts in the cells.
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}, {"B", "#LNAME"}}, "", 2, 2);
    workbooks({"openpyxl", book(),
               QJsonObject{{"sheets", QJsonArray{QJsonObject{
                                          {"cells", QJsonObject{{"A2", "нет"}, {"B2", "x"}}}}}}}});
    run();
    QCOMPARE(rows(), QStringList{"x"});
}

void tst_Import::roundTrip()
{
    m_fixture->addForm("Аттестат");
    docTypeNames[1] = "Аттестат";
    m_fixture->app.exec("BEGIN");
    for (int i = 0; i < 200; ++i) {
        const QString number = QString::number(i);
        m_fixture->addDocument(
            {{"BLANK_SER", QString("%1").arg(i % 7, 4, 10, QChar('0'))},
             {"BLANK_NO", QString("%1").arg(i * 37, 7, 10, QChar('0'))},
             {"LNAME", "Фамилия-" + number},
             {"FNAME", i % 3 ? "Имя " + number : "=Имя"},
             {"MNAME", i % 5 ? "Отчество" : ""},
             {"BIRTH_DATE", QDate(2000, 1, 1).addDays(i * 11LL).toString("yyyy-MM-dd")},
             {"DOC_GROUP", QString("%1 \"%2\"").arg(9 + i % 3).arg(QString("АБВ")[i % 3])},
             {"ISSUE_DATE", i % 9 ? QDate(2019, 6, 25).addDays(i).toString("yyyy-MM-dd") : ""},
             {"EDIT_DATE", QDate(2020, 1, 1).addDays(i).toString("yyyy-MM-dd")},
             {"DUPLICATE", i % 4 == 0}});
    }
    m_fixture->app.exec("COMMIT");
    m_fixture->addTemplate("Шаблон",
                           {{"J", "#DUPLICATE"},
                            {"A", "#BLANK_SER"},
                            {"B", "#BLANK_NO"},
                            {"C", "#LNAME"},
                            {"D", "#FNAME"},
                            {"E", "#MNAME"},
                            {"F", "#BIRTH_DATE"},
                            {"G", "#DOC_GROUP"},
                            {"H", "#ISSUE_DATE"},
                            {"I", "#EDIT_DATE"}},
                           "", 2, 201, "yyyy-MM-dd");
    const QString fixed = "BLANK_SER, BLANK_NO, LNAME, FNAME, MNAME, BIRTH_DATE, DOC_TYPE, "
                          "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE, TEMPLATE, TEMPLATE_NAME";
    const QStringList before = rows(fixed);
    QCOMPARE(before.size(), 200);

    m_fixture->open();
    m_fixture->selectTemplate(0);
    {
        ModalDriver user;
        user.expectFileDialog(book());
        user.expectMessageStarting("Экспорт данных", "Документ\n");
        m_fixture->click("exportButton");
        QVERIFY2(user.finished(), user.failures());
    }
    m_fixture->app.exec("DELETE FROM docs");
    run();
    QCOMPARE(rows(fixed), before);

    // The same by a reading of the workbook and the database that shares no code with ours.
    const QJsonObject cells = readCells(book(), "Sheet1");
    QSqlQuery query("SELECT LNAME, BIRTH_DATE FROM docs ORDER BY ID");
    for (int row = 2; query.next(); ++row) {
        const QString number = QString::number(row);
        QCOMPARE(query.value(0).toString(), cells["C" + number].toString());
        QCOMPARE(query.value(1).toString(), cells["F" + number].toString());
    }
}

QTEST_MAIN(tst_Import)
#include "tst_Import.moc"
