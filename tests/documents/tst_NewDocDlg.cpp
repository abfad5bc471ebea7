#include <QtTest>

#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFrame>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTextEdit>

#include "DocumentFixture.h"
#include "app/AppStyle.h"
#include "documents/DocDialog.h"
#include "documents/NewDocDlg.h"
#include "documents/TableMemoDialog.h"
#include "documents/TextMemoDialog.h"
#include "documents/TextValDialog.h"
#include "documents/ZelvoraTableButton.h"
#include "documents/ZelvoraTextButton.h"
#include "forms/FormDefinitions.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"
#include "support/Process.h"

namespace {

const QDate initialDate(2000, 1, 1); // what a date edit shows that was never set

QString stored(const QDate& date)
{
    return date.toString("yyyy-MM-dd");
}

QComboBox* typesOf(const NewDocDlg& dialog)
{
    return named<QComboBox>(&dialog, "docTypeCmb");
}

QListWidget* templatesOf(const NewDocDlg& dialog)
{
    return named<QListWidget>(&dialog, "templatesList");
}

QDateEdit* dateOf(const NewDocDlg& dialog, const QString& name)
{
    return named<QDateEdit>(&dialog, name);
}

/// Chooses a type in the combo by its id.
void choose(const NewDocDlg& dialog, int form)
{
    typesOf(dialog)->setCurrentIndex(typesOf(dialog)->findData(form));
}

/// The dialog with a type chosen, over a database with one form without fields.
struct BegunDocument
{
    BegunDocument()
    {
        choose(dialog, form);
        dialog.show();
    }

    TempApplication app;
    const int form = addForm(app, "Ф", {});
    NewDocDlg dialog;
};

void showTemplates(const NewDocDlg& dialog)
{
    named<QTabWidget>(&dialog, "newDocTab")->setCurrentIndex(1);
}

void pressTemplateButton(NewDocDlg* dialog, const QString& name)
{
    showTemplates(*dialog);
    clickButton(dialog, name);
}

/// Plays the prompt for a template's name.
void expectName(ModalDriver* driver, const QString& name)
{
    driver->expect<TextValDialog>([name](TextValDialog* prompt) {
        QCOMPARE(prompt->windowTitle(), QString("Введите название шаблона:"));
        named<QLineEdit>(prompt, "valueEdit")->setText(name);
        QTest::mouseClick(
            named<QDialogButtonBox>(prompt, "buttonBox")->button(QDialogButtonBox::Ok),
            Qt::LeftButton);
    });
}

void expectConfirmation(ModalDriver* driver)
{
    driver->expect<DocDialog>([](DocDialog* document) { clickButton(document, "saveButton"); });
}

int addTemplateRow(TempApplication& app, const QString& name, int form, const QJsonObject& content)
{
    return app
        .exec("INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME, BIRTH_DATE, DOC_TYPE, "
              "DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE, TEMPLATE, TEMPLATE_NAME, CONTENT) "
              "VALUES ('С', 'Н', 'И', 'Ф', 'О', '1999-12-31', ?, '9А', '2023-02-01', "
              "'2023-02-02', 1, 1, ?, ?)",
              {form, name, QString(QJsonDocument(content).toJson())})
        .toInt();
}

QJsonObject stringEntry(const QString& name, const QString& value)
{
    return {{"name", name}, {"type", 0}, {"value", value}};
}

/// All rows of `docs` as a process of its own reads them, CONTENT parsed.
QJsonArray readDocs(const TempApplication& app)
{
    const ProcessResult result = runPython(R"(
import json, sqlite3, sys
db = sqlite3.connect(sys.argv[1])
db.row_factory = sqlite3.Row
rows = [dict(row) for row in db.execute("SELECT *, typeof(CONTENT) AS KIND FROM docs ORDER BY ID")]
for row in rows:
    row["INDENTED"] = "\n    " in row["CONTENT"]
    row["CONTENT"] = json.loads(row["CONTENT"])
print(json.dumps(rows))
)",
                                           {app.path("docs.db")});
    return QJsonDocument::fromJson(result.out).array();
}

} // namespace

/// The dialog in which documents and document templates are made.
class tst_NewDocDlg : public QObject
{
    Q_OBJECT

private slots:
    void looks();
    void captions();
    void dateEdits();
    void buttonsKeepTheirHeight();

    void startsWithNothingChosen();
    void closesWithoutATypeChosen();
    void choosingATypeOpensTheFields();
    void anotherTypeResetsTheDatesOnly();

    void saveTakesAllWidgets();
    void acceptedBeforeTheValuesAreTaken();
    void editDateIsTheDayOfTheChoice();
    void valueButtonsOpenTheirEditors();
    void tableSlotNeedsATableButton();

    void listsTemplatesOnly();
    void listingFails();

    void templateIsStored();
    void templateTakesWhatTheConfirmationHolds();
    void templateKeepsTableRows();
    void templateNameRejected();
    void templateConfirmationRejected();
    void emptyAndEqualTemplateNames();
    void apostropheStoresNothing_data();
    void apostropheStoresNothing();
    void savingATemplateKeepsTheEntries();
    void templateStaysWhenTheDialogIsClosed();

    void deletesTheCurrentTemplate();
    void deleteWithoutACurrentTemplate();
    void deleteFails();
    void templateReachedByTabIsNotPicked();

    void createsFromATemplate();
    void sameTypeKeepsTheDates();
    void otherTypeResetsTheDates();
    void createWithoutACurrentTemplate();
    void templateOfADeletedForm();
    void templateWithBrokenContent();
    void createFails();

    void oneTabForADateAndNoneForAFixedOne();
    void fixedDateLooksFixed();
    void wheelOverADateChangesNothing();
    void typedValuesReplaceTheOnesReachedByTab();
    void doubleClickDeletesOneTemplate();
};

void tst_NewDocDlg::looks()
{
    baseStyleSheet = "QLabel { color: #010203; }";
    const NewDocDlg dialog;
    baseStyleSheet.clear();
    QVERIFY(dialog.styleSheet().startsWith("QLabel { color: #010203; }\r\n"));
    QCOMPARE(dialog.windowTitle(), QString("Новый документ"));
    QCOMPARE(dialog.size(), QSize(619, 678));
    QCOMPARE(dialog.windowModality(), Qt::ApplicationModal);
    QVERIFY(!dialog.isSizeGripEnabled());
    const auto* tabs = named<QTabWidget>(&dialog, "newDocTab");
    QCOMPARE(tabs->currentIndex(), 0);
    QCOMPARE(tabs->widget(0)->objectName(), QString("newTab"));
    QCOMPARE(tabs->widget(1)->objectName(), QString("templateTab"));
    const QString tabSheet = "QTabBar::tab \n{\n\tmin-width: 180px;\n}";
    QVERIFY(tabs->styleSheet() == tabSheet || tabs->tabBar()->styleSheet() == tabSheet);
    QCOMPARE(named<QFrame>(&dialog, "mainFrame")->frameShape(), QFrame::NoFrame);
    for (const char* name : {"lnameEdit", "groupEdit", "seriesEdit", "contentTable"}) {
        QVERIFY(named<QFrame>(&dialog, "mainFrame")->isAncestorOf(named<QWidget>(&dialog, name)));
    }
    QVERIFY(!named<QFrame>(&dialog, "mainFrame")->isAncestorOf(typesOf(dialog)));
}

void tst_NewDocDlg::captions()
{
    const NewDocDlg dialog;
    const auto* tabs = named<QTabWidget>(&dialog, "newDocTab");
    QCOMPARE(tabs->tabText(0), QString("Создать документ"));
    QCOMPARE(tabs->tabText(1), QString("Шаблоны"));
    const auto text = [&](const char* name) { return named<QPushButton>(&dialog, name)->text(); };
    QCOMPARE(text("addTemplateBtn"), QString("Сохранить как шаблон"));
    QCOMPARE(text("deleteTemplateBtn"), QString("Удалить шаблон"));
    QCOMPARE(text("createFromBtn"), QString("Создать по шаблону"));
    QCOMPARE(text("saveButton"), QString("СОХРАНИТЬ"));
    QCOMPARE(text("closeButton"), QString("ЗАКРЫТЬ"));
    QStringList labels;
    const auto all = dialog.findChildren<QLabel*>();
    for (const QLabel* label : all) {
        labels << label->text();
    }
    labels.sort();
    QCOMPARE(labels, QStringList({"Дата выдачи", "Дата изменения", "Дата рождения", "Имя", "Класс",
                                  "Номер", "Отчество", "Серия", "Тип документа", "Фамилия"}));
    QCOMPARE(named<QPushButton>(&dialog, "saveButton")->property("btnRole1").toString(),
             QString("accept"));
    QCOMPARE(named<QPushButton>(&dialog, "closeButton")->property("btnRole1").toString(),
             QString("cancel"));
}

void tst_NewDocDlg::dateEdits()
{
    const NewDocDlg dialog;
    for (const char* name : {"birthDateEdit", "issueDateEdit", "editDateEdit"}) {
        QCOMPARE(dateOf(dialog, name)->displayFormat(), QString("dd-MM-yyyy"));
        QCOMPARE(dateOf(dialog, name)->buttonSymbols(), QAbstractSpinBox::NoButtons);
    }
    for (const char* name : {"birthDateEdit", "issueDateEdit"}) {
        QVERIFY(dateOf(dialog, name)->calendarPopup());
        QVERIFY(!dateOf(dialog, name)->isReadOnly());
        QCOMPARE(dateOf(dialog, name)->calendarWidget()->maximumSize(), QSize(400, 300));
    }
    QVERIFY(dateOf(dialog, "editDateEdit")->isReadOnly());
    QVERIFY(!dateOf(dialog, "editDateEdit")->calendarPopup());
}

void tst_NewDocDlg::buttonsKeepTheirHeight()
{
    baseStyleSheet = "QAbstractButton[btnRole1=\"accept\"], QAbstractButton[btnRole1=\"cancel\"] "
                     "{ border: none; min-height: 25px; padding: 5px 10px; }";
    NewDocDlg dialog;
    baseStyleSheet.clear();
    dialog.show();
    QCOMPARE(named<QPushButton>(&dialog, "saveButton")->height(), 32);
    QCOMPARE(named<QPushButton>(&dialog, "closeButton")->height(), 32);
}

void tst_NewDocDlg::startsWithNothingChosen()
{
    TempApplication app;
    const int second = addForm(app, "Вторая", {formField("#A", "А", 0)});
    docTypeNames[second + 5] = "Третья";
    NewDocDlg dialog;
    QCOMPARE(typesOf(dialog)->count(), 2);
    QCOMPARE(typesOf(dialog)->itemData(0), QVariant(second));
    QCOMPARE(typesOf(dialog)->currentIndex(), -1);
    QVERIFY(!typesOf(dialog)->isEditable());
    QVERIFY(!named<QFrame>(&dialog, "mainFrame")->isEnabled());
    QVERIFY(!named<QPushButton>(&dialog, "saveButton")->isEnabled());
    QVERIFY(!named<QPushButton>(&dialog, "addTemplateBtn")->isEnabled());
    QVERIFY(named<QPushButton>(&dialog, "deleteTemplateBtn")->isEnabled());
    QVERIFY(named<QPushButton>(&dialog, "createFromBtn")->isEnabled());
    QVERIFY(named<QPushButton>(&dialog, "closeButton")->isEnabled());
    QCOMPARE(dialog.content(), QJsonObject());
    QCOMPARE(dialog.docType(), 0);
}

void tst_NewDocDlg::closesWithoutATypeChosen()
{
    TempApplication app;
    NewDocDlg dialog;
    ModalDriver driver;
    driver.expect<NewDocDlg>([](NewDocDlg* open) {
        QTest::keyClick(open, Qt::Key_Return); // the disabled button does not save
        QVERIFY(open->isVisible());
        clickButton(open, "closeButton");
    });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(dialog.docType(), 0);
}

void tst_NewDocDlg::choosingATypeOpensTheFields()
{
    TempApplication app;
    const int form =
        addForm(app, "Ф", {formField("#A", "А", 0), formField("#D", "Д", 3, {{"format", "yyyy"}})});
    NewDocDlg dialog;
    dialog.show();
    QTest::keyClick(typesOf(dialog), Qt::Key_Down);
    QCOMPARE(typesOf(dialog)->currentData(), QVariant(form));
    QVERIFY(named<QFrame>(&dialog, "mainFrame")->isEnabled());
    QVERIFY(named<QPushButton>(&dialog, "saveButton")->isEnabled());
    QVERIFY(named<QPushButton>(&dialog, "addTemplateBtn")->isEnabled());
    const QDate today = QDate::currentDate();
    QCOMPARE(dateOf(dialog, "editDateEdit")->date(), today);
    QCOMPARE(dateOf(dialog, "issueDateEdit")->date(), today);
    QCOMPARE(dateOf(dialog, "birthDateEdit")->date(), today.addYears(-20));
    QCOMPARE(named<QTableWidget>(&dialog, "contentTable")->rowCount(), 2);
    QCOMPARE(dialog.content()["#D"].toObject()["value"], QJsonValue(today.toString("yyyy")));
}

void tst_NewDocDlg::anotherTypeResetsTheDatesOnly()
{
    TempApplication app;
    const int first = addForm(app, "Первая", {formField("#A", "А", 0)});
    const int second = addForm(app, "Вторая", {formField("#B", "Б", 0)});
    NewDocDlg dialog;
    choose(dialog, first);
    for (const char* name :
         {"lnameEdit", "fnameEdit", "mnameEdit", "groupEdit", "seriesEdit", "numberEdit"})
    {
        named<QLineEdit>(&dialog, name)->setText(name);
    }
    named<QCheckBox>(&dialog, "duplicateCheck")->setChecked(true);
    dateOf(dialog, "birthDateEdit")->setDate(initialDate);
    dateOf(dialog, "issueDateEdit")->setDate(initialDate);
    choose(dialog, second);
    for (const char* name :
         {"lnameEdit", "fnameEdit", "mnameEdit", "groupEdit", "seriesEdit", "numberEdit"})
    {
        QCOMPARE(named<QLineEdit>(&dialog, name)->text(), QString(name));
    }
    QVERIFY(named<QCheckBox>(&dialog, "duplicateCheck")->isChecked());
    QCOMPARE(dateOf(dialog, "birthDateEdit")->date(), QDate::currentDate().addYears(-20));
    QCOMPARE(dateOf(dialog, "issueDateEdit")->date(), QDate::currentDate());
    QCOMPARE(dialog.content().keys(), QStringList("#B"));
}

void tst_NewDocDlg::saveTakesAllWidgets()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {formField("#N", "Ч", 2), formField("#S", "С", 0)});
    NewDocDlg dialog;
    ModalDriver driver;
    driver.expect<NewDocDlg>([](NewDocDlg* open) {
        QTest::keyClick(named<QComboBox>(open, "docTypeCmb"), Qt::Key_Down);
        typeInto(named<QLineEdit>(open, "lnameEdit"), "O'Neil");
        typeInto(named<QLineEdit>(open, "fnameEdit"), "Ivan");
        typeInto(named<QLineEdit>(open, "mnameEdit"), "P");
        typeInto(named<QLineEdit>(open, "groupEdit"), "11A");
        typeInto(named<QLineEdit>(open, "seriesEdit"), "AB");
        typeInto(named<QLineEdit>(open, "numberEdit"), "77");
        for (const char* name : {"birthDateEdit", "issueDateEdit"}) {
            auto* edit = named<QDateEdit>(open, name);
            edit->setFocus();
            edit->setSelectedSection(QDateTimeEdit::DaySection);
            QTest::keyClicks(edit, name[0] == 'b' ? "02012001" : "03022020");
        }
        QTest::mouseClick(named<QCheckBox>(open, "duplicateCheck"), Qt::LeftButton, Qt::NoModifier,
                          QPoint(8, 10));
        typeInto(editorOfTag<QSpinBox>(open, "#N"), "12");
        auto* table = named<QTableWidget>(open, "contentTable");
        typeIntoCell(table, rowOfTag(table, "#S"), 1, "text");
        clickButton(open, "saveButton");
    });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(dialog.lname(), QString("O'Neil"));
    QCOMPARE(dialog.fname(), QString("Ivan"));
    QCOMPARE(dialog.mname(), QString("P"));
    QCOMPARE(dialog.docGroup(), QString("11A"));
    QCOMPARE(dialog.series(), QString("AB"));
    QCOMPARE(dialog.number(), QString("77"));
    QCOMPARE(dialog.birthDate(), QString("2001-01-02"));
    QCOMPARE(dialog.issueDate(), QString("2020-02-03"));
    QCOMPARE(dialog.editDate(), stored(QDate::currentDate()));
    QCOMPARE(dialog.duplicate(), 1);
    QCOMPARE(dialog.docType(), form);
    QCOMPARE(dialog.content(),
             QJsonObject({{"#N", QJsonObject{{"name", "Ч"}, {"type", 2}, {"value", 12}}},
                          {"#S", stringEntry("С", "text")}}));
    // The document itself is the caller's to store.
    QCOMPARE(app.value("SELECT COUNT(*) FROM docs").toInt(), 0);
}

void tst_NewDocDlg::acceptedBeforeTheValuesAreTaken()
{
    TempApplication app;
    addForm(app, "Ф", {});
    NewDocDlg dialog;
    choose(dialog, 1);
    named<QLineEdit>(&dialog, "fnameEdit")->setText("Анна");
    QString atAccept = "?";
    connect(&dialog, &QDialog::accepted, this, [&] { atAccept = dialog.fname(); });
    ModalDriver driver;
    driver.expect<NewDocDlg>([](NewDocDlg* open) { clickButton(open, "saveButton"); });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(atAccept, QString());
    QCOMPARE(dialog.fname(), QString("Анна"));
}

void tst_NewDocDlg::editDateIsTheDayOfTheChoice()
{
    TempApplication app;
    addForm(app, "Ф", {});
    NewDocDlg dialog;
    choose(dialog, 1);
    dateOf(dialog, "editDateEdit")->setDate(QDate(2024, 2, 29)); // chosen on that day
    dialog.onDone();
    QCOMPARE(dialog.editDate(), QString("2024-02-29"));
}

void tst_NewDocDlg::valueButtonsOpenTheirEditors()
{
    TempApplication app;
    const int form =
        addForm(app, "Ф",
                {formField("#T", "Т", 5),
                 formField("#G", "О", 4, {{"content", QJsonArray{tableColumn("Предмет", "0")}}})});
    NewDocDlg dialog;
    choose(dialog, form);
    dialog.show();
    ModalDriver driver;
    driver.expect<TextMemoDialog>([&](TextMemoDialog* memo) {
        QCOMPARE(memo->parentWidget(), &dialog);
        QTest::keyClicks(named<QTextEdit>(memo, "textEdit"), "memo");
        clickButton(memo, "buttonAccept");
    });
    QTest::mouseClick(editorOfTag<ZelvoraTextButton>(&dialog, "#T"), Qt::LeftButton);
    driver.expect<TableMemoDialog>([&](TableMemoDialog* memo) {
        QCOMPARE(memo->parentWidget(), &dialog);
        clickButton(memo, "buttonAddRow");
        clickButton(memo, "buttonAccept");
    });
    QTest::mouseClick(editorOfTag<ZelvoraTableButton>(&dialog, "#G"), Qt::LeftButton);
    QVERIFY2(driver.finished(), driver.failures());
    clickButton(&dialog, "saveButton");
    QCOMPARE(dialog.content()["#T"].toObject()["value"], QJsonValue("memo"));
    QCOMPARE(dialog.content()["#G"].toObject()["value"], QJsonValue(oneRow(QJsonArray{""})));
}

void tst_NewDocDlg::tableSlotNeedsATableButton()
{
    NewDocDlg dialog;
    ModalDriver driver; // expects no dialog
    LogCatcher log;
    dialog.onTableEdit();
    QCOMPARE(log.messages(), QStringList("cast error in NewDocDlg::onTableEdit()"));
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_NewDocDlg::listsTemplatesOnly()
{
    TempApplication app;
    app.exec("INSERT INTO docs (ID, TEMPLATE, TEMPLATE_NAME) VALUES (3, 1, 'Третий'), "
             "(1, 0, ''), (2, 2, 'Второй'), (4, 1, NULL), (5, 0, 'Документ')");
    const NewDocDlg dialog;
    const QListWidget* list = templatesOf(dialog);
    QCOMPARE(list->count(), 3);
    QCOMPARE(list->item(0)->text(), QString("Второй"));
    QCOMPARE(list->item(0)->data(Qt::UserRole).toInt(), 2);
    QCOMPARE(list->item(1)->text(), QString("Третий"));
    QCOMPARE(list->item(2)->text(), QString());
}

void tst_NewDocDlg::listingFails()
{
    TempApplication app;
    app.exec("DROP TABLE docs");
    LogCatcher log;
    const NewDocDlg dialog;
    QVERIFY(log.contains("Unable to execute select query"));
    QVERIFY(log.contains("no such table: docs"));
    QCOMPARE(templatesOf(dialog)->count(), 0);
}

void tst_NewDocDlg::templateIsStored()
{
    TempApplication app;
    addForm(app, "Первая", {});
    const int form = addForm(app, "Вторая", {formField("#S", "С", 0)});
    NewDocDlg dialog;
    choose(dialog, form);
    for (const char* name : {"lnameEdit", "fnameEdit", "mnameEdit", "seriesEdit", "numberEdit"}) {
        named<QLineEdit>(&dialog, name)->setText("not handed over");
    }
    named<QCheckBox>(&dialog, "duplicateCheck")->setChecked(true);
    named<QLineEdit>(&dialog, "groupEdit")->setText("11А");
    dateOf(dialog, "birthDateEdit")->setDate(QDate(2005, 4, 3));
    dateOf(dialog, "issueDateEdit")->setDate(QDate(2024, 6, 30));
    dateOf(dialog, "editDateEdit")->setDate(QDate(2024, 7, 1));
    dialog.show();
    typeIntoCell(named<QTableWidget>(&dialog, "contentTable"), 0, 1, "entered");

    ModalDriver driver;
    expectName(&driver, "Класс 11А");
    driver.expect<DocDialog>([&](DocDialog* document) {
        QCOMPARE(document->parentWidget(), dialog.parentWidget());
        QCOMPARE(document->windowTitle(), QString("Изменение документа"));
        QCOMPARE(document->docType(), form);
        QCOMPARE(document->docGroup(), QString("11А"));
        QCOMPARE(document->birthDate(), QString("2005-04-03"));
        QCOMPARE(document->issueDate(), QString("2024-06-30"));
        QCOMPARE(document->editDate(), QString("2024-07-01"));
        QCOMPARE(document->lname() + document->series(), QString());
        QCOMPARE(document->duplicate(), 0);
        QCOMPARE(document->content()["#S"].toObject()["value"], QJsonValue("entered"));
        clickButton(document, "saveButton");
    });
    pressTemplateButton(&dialog, "addTemplateBtn");
    QVERIFY2(driver.finished(), driver.failures());

    const QJsonArray rows = readDocs(app);
    QCOMPARE(rows.size(), 1);
    const QJsonObject expected = {
        {"ID", 1},
        {"BLANK_SER", ""},
        {"BLANK_NO", ""},
        {"FNAME", ""},
        {"LNAME", ""},
        {"MNAME", ""},
        {"BIRTH_DATE", "2005-04-03"},
        {"DOC_TYPE", form},
        {"DOC_GROUP", "11А"},
        {"ISSUE_DATE", "2024-06-30"},
        {"EDIT_DATE", stored(QDate::currentDate())}, // the day of the confirmation
        {"DUPLICATE", 0},
        {"TEMPLATE", 1},
        {"TEMPLATE_NAME", "Класс 11А"},
        {"CONTENT", QJsonObject{{"#S", stringEntry("С", "entered")}}},
        {"KIND", "text"},
        {"INDENTED", true}};
    QCOMPARE(rows.at(0).toObject(), expected);
    QCOMPARE(templatesOf(dialog)->count(), 1);
    QCOMPARE(templatesOf(dialog)->item(0)->text(), QString("Класс 11А"));
    QCOMPARE(templatesOf(dialog)->item(0)->data(Qt::UserRole).toInt(), 1);
}

void tst_NewDocDlg::templateTakesWhatTheConfirmationHolds()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {formField("#S", "С", 0)});
    NewDocDlg dialog;
    choose(dialog, form);
    dialog.show();
    ModalDriver driver;
    expectName(&driver, "Ш");
    driver.expect<DocDialog>([](DocDialog* document) {
        typeInto(named<QLineEdit>(document, "lnameEdit"), "Smith");
        typeInto(named<QLineEdit>(document, "groupEdit"), "9B");
        typeInto(named<QLineEdit>(document, "seriesEdit"), "S");
        typeInto(named<QLineEdit>(document, "numberEdit"), "1");
        named<QCheckBox>(document, "duplicateCheck")->setChecked(true);
        typeIntoCell(named<QTableWidget>(document, "contentTable"), 0, 1, "changed");
        clickButton(document, "saveButton");
    });
    pressTemplateButton(&dialog, "addTemplateBtn");
    QVERIFY2(driver.finished(), driver.failures());
    const QJsonObject row = readDocs(app).at(0).toObject();
    QCOMPARE(row["LNAME"], QJsonValue("Smith"));
    QCOMPARE(row["DOC_GROUP"], QJsonValue("9B"));
    QCOMPARE(row["BLANK_SER"], QJsonValue("S"));
    QCOMPARE(row["BLANK_NO"], QJsonValue("1"));
    QCOMPARE(row["DUPLICATE"], QJsonValue(1));
    QCOMPARE(row["CONTENT"], QJsonValue(QJsonObject{{"#S", stringEntry("С", "changed")}}));
    // What this dialog holds is not touched by the confirmation.
    dialog.onDone();
    QCOMPARE(dialog.content()["#S"].toObject()["value"], QJsonValue(""));
    QCOMPARE(dialog.docGroup(), QString());
}

void tst_NewDocDlg::templateKeepsTableRows()
{
    TempApplication app;
    const QJsonArray columns = {tableColumn("Предмет", "0")};
    const int form = addForm(app, "Ф", {formField("#G", "О", 4, {{"content", columns}})});
    NewDocDlg dialog;
    choose(dialog, form);
    editorOfTag<ZelvoraTableButton>(&dialog, "#G")->value = oneRow(QJsonArray{"Химия"});
    ModalDriver driver;
    expectName(&driver, "Ш");
    expectConfirmation(&driver);
    dialog.show();
    pressTemplateButton(&dialog, "addTemplateBtn");
    QVERIFY2(driver.finished(), driver.failures());

    NewDocDlg other;
    templatesOf(other)->setCurrentRow(0);
    other.createFromTemplate();
    QCOMPARE(other.content()["#G"].toObject(),
             QJsonObject({{"name", "О"},
                          {"type", 4},
                          {"columns", columns},
                          {"value", oneRow(QJsonArray{"Химия"})}}));
    QCOMPARE(editorOfTag<ZelvoraTableButton>(&other, "#G")->value, oneRow(QJsonArray{"Химия"}));
}

void tst_NewDocDlg::templateNameRejected()
{
    BegunDocument begun;
    ModalDriver driver;
    driver.expect<TextValDialog>([&](TextValDialog* prompt) {
        QCOMPARE(prompt->parentWidget(), &begun.dialog);
        QTest::mouseClick(
            named<QDialogButtonBox>(prompt, "buttonBox")->button(QDialogButtonBox::Cancel),
            Qt::LeftButton);
    });
    pressTemplateButton(&begun.dialog, "addTemplateBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(readDocs(begun.app).size(), 0);
    QCOMPARE(templatesOf(begun.dialog)->count(), 0);
}

void tst_NewDocDlg::templateConfirmationRejected()
{
    BegunDocument begun;
    ModalDriver driver;
    expectName(&driver, "Ш");
    driver.expect<DocDialog>([](DocDialog* document) { clickButton(document, "closeButton"); });
    pressTemplateButton(&begun.dialog, "addTemplateBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(readDocs(begun.app).size(), 0);
    QCOMPARE(templatesOf(begun.dialog)->count(), 0);
}

void tst_NewDocDlg::emptyAndEqualTemplateNames()
{
    BegunDocument begun;
    ModalDriver driver;
    for (const char* name : {"", "одно имя", "одно имя"}) {
        expectName(&driver, name);
        expectConfirmation(&driver);
        pressTemplateButton(&begun.dialog, "addTemplateBtn");
    }
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(templatesOf(begun.dialog)->count(), 3);
    QCOMPARE(templatesOf(begun.dialog)->item(0)->text(), QString());
    QCOMPARE(templatesOf(begun.dialog)->item(1)->text(),
             templatesOf(begun.dialog)->item(2)->text());
    QVERIFY(templatesOf(begun.dialog)->item(1)->data(Qt::UserRole) !=
            templatesOf(begun.dialog)->item(2)->data(Qt::UserRole));
    QCOMPARE(readDocs(begun.app).size(), 3);
}

void tst_NewDocDlg::apostropheStoresNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("value");
    QTest::newRow("name") << "О'Генри"
                          << ""
                          << "";
    QTest::newRow("group") << "Ш"
                           << "11'А"
                           << "";
    QTest::newRow("content") << "Ш"
                             << ""
                             << "it's";
    QTest::newRow("second statement") << "Ш'); DELETE FROM docs; --"
                                      << ""
                                      << "";
}

void tst_NewDocDlg::apostropheStoresNothing()
{
    QFETCH(QString, name);
    QFETCH(QString, group);
    QFETCH(QString, value);
    TempApplication app;
    const int form = addForm(app, "Ф", {formField("#S", "С", 0)});
    addTemplateRow(app, "Прежний", form, {});
    const QByteArray before = app.dump();
    QVERIFY(before.contains("Прежний"));
    NewDocDlg dialog;
    choose(dialog, form);
    named<QLineEdit>(&dialog, "groupEdit")->setText(group);
    named<QTableWidget>(&dialog, "contentTable")->item(0, 1)->setText(value);
    dialog.show();
    ModalDriver driver;
    expectName(&driver, name);
    expectConfirmation(&driver);
    LogCatcher log;
    pressTemplateButton(&dialog, "addTemplateBtn");
    QVERIFY2(driver.finished(), driver.failures());

    QCOMPARE(app.dump(), before);
    QCOMPARE(templatesOf(dialog)->count(), 1);
    QVERIFY(dialog.isVisible());
    const QStringList lines = log.messages();
    const int at = lines.indexOf(QRegularExpression(".*error insert into docs .*"));
    QVERIFY(at >= 0 && lines.size() == at + 3);
    QVERIFY(!lines.at(at + 1).isEmpty()); // the driver's text
    QVERIFY(lines.at(at + 2).contains("INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME"));
}

void tst_NewDocDlg::savingATemplateKeepsTheEntries()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {formField("#S", "С", 0)});
    NewDocDlg dialog;
    choose(dialog, form);
    named<QLineEdit>(&dialog, "lnameEdit")->setText("Иванова");
    named<QTableWidget>(&dialog, "contentTable")->item(0, 1)->setText("ценно");
    const QJsonObject before = dialog.content();
    dialog.show();
    ModalDriver driver;
    expectName(&driver, "Ш");
    expectConfirmation(&driver);
    pressTemplateButton(&dialog, "addTemplateBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QVERIFY(dialog.isVisible());
    QCOMPARE(dialog.content(), before);
    QCOMPARE(named<QLineEdit>(&dialog, "lnameEdit")->text(), QString("Иванова"));
    QCOMPARE(named<QTableWidget>(&dialog, "contentTable")->item(0, 1)->text(), QString("ценно"));
}

void tst_NewDocDlg::templateStaysWhenTheDialogIsClosed()
{
    BegunDocument begun;
    ModalDriver driver;
    expectName(&driver, "Ш");
    expectConfirmation(&driver);
    pressTemplateButton(&begun.dialog, "addTemplateBtn");
    clickButton(&begun.dialog, "closeButton");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(readDocs(begun.app).size(), 1);
    QCOMPARE(templatesOf(NewDocDlg())->count(), 1);
}

void tst_NewDocDlg::deletesTheCurrentTemplate()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {});
    addTemplateRow(app, "Первый", form, {});
    const int second = addTemplateRow(app, "Второй", form, {});
    app.exec("INSERT INTO docs (TEMPLATE, CONTENT) VALUES (0, '{}')");
    NewDocDlg dialog;
    dialog.show();
    showTemplates(dialog);
    templatesOf(dialog)->setCurrentRow(1);
    ModalDriver driver; // no question
    clickButton(&dialog, "deleteTemplateBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(templatesOf(dialog)->count(), 1);
    QCOMPARE(templatesOf(dialog)->item(0)->text(), QString("Первый"));
    QCOMPARE(app.value("SELECT COUNT(*) FROM docs WHERE ID = ?", {second}).toInt(), 0);
    QCOMPARE(readDocs(app).size(), 2);
}

void tst_NewDocDlg::deleteWithoutACurrentTemplate()
{
    TempApplication app;
    addTemplateRow(app, "Ш", 1, {});
    NewDocDlg dialog;
    dialog.show();
    pressTemplateButton(&dialog, "deleteTemplateBtn");
    QCOMPARE(templatesOf(dialog)->count(), 1);
    QCOMPARE(readDocs(app).size(), 1);
}

void tst_NewDocDlg::deleteFails()
{
    TempApplication app;
    addTemplateRow(app, "Ш", 1, {});
    app.exec("CREATE TRIGGER keep BEFORE DELETE ON docs BEGIN SELECT RAISE(ABORT, 'kept'); END");
    NewDocDlg dialog;
    dialog.show();
    showTemplates(dialog);
    templatesOf(dialog)->setCurrentRow(0);
    LogCatcher log;
    clickButton(&dialog, "deleteTemplateBtn");
    QVERIFY(log.contains("error delete from forms "));
    QVERIFY(log.contains("kept"));
    QCOMPARE(templatesOf(dialog)->count(), 1);
    QCOMPARE(readDocs(app).size(), 1);
}

void tst_NewDocDlg::templateReachedByTabIsNotPicked()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {});
    addTemplateRow(app, "Первый", form, {});
    addTemplateRow(app, "Второй", form, {});
    NewDocDlg dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    showTemplates(dialog);
    QListWidget* templates = templatesOf(dialog);
    QVERIFY(tabTo(templates));
    QCOMPARE(templates->currentRow(), -1);
    // A delete asks nothing, so that it must not find a template that nobody picked.
    clickButton(&dialog, "deleteTemplateBtn");
    clickButton(&dialog, "createFromBtn");
    QCOMPARE(readDocs(app).size(), 2);
    QCOMPARE(typesOf(dialog)->currentIndex(), -1);

    QVERIFY(tabTo(templates));
    QTest::keyClick(templates, Qt::Key_Down);
    QCOMPARE(templates->selectedItems().size(), 1);
    QCOMPARE(templates->currentRow(), 0);
    const QPoint first = templates->visualItemRect(templates->item(0)).center();
    QTest::mouseClick(templates->viewport(), Qt::LeftButton, Qt::ControlModifier, first);
    QCOMPARE(templates->selectedItems().size(), 0);
    clickButton(&dialog, "deleteTemplateBtn");
    QCOMPARE(readDocs(app).size(), 2);
}

void tst_NewDocDlg::createsFromATemplate()
{
    TempApplication app;
    addForm(app, "Первая", {});
    const int form = addForm(app, "Вторая", {formField("#NEW", "Новое", 0)});
    const QJsonObject content = {{"#S", stringEntry("С", "из шаблона")}};
    addTemplateRow(app, "Ш", form, content);
    NewDocDlg dialog;
    named<QLineEdit>(&dialog, "lnameEdit")->setText("Иванова");
    named<QLineEdit>(&dialog, "seriesEdit")->setText("1");
    dialog.show();
    showTemplates(dialog);
    templatesOf(dialog)->setCurrentRow(0);
    clickButton(&dialog, "createFromBtn");

    QCOMPARE(named<QTabWidget>(&dialog, "newDocTab")->currentIndex(), 0);
    QVERIFY(named<QFrame>(&dialog, "mainFrame")->isEnabled());
    QVERIFY(named<QPushButton>(&dialog, "saveButton")->isEnabled());
    QVERIFY(named<QPushButton>(&dialog, "addTemplateBtn")->isEnabled());
    QCOMPARE(typesOf(dialog)->currentData(), QVariant(form));
    QCOMPARE(dialog.docType(), form);
    QCOMPARE(dialog.docGroup(), QString("9А"));
    QCOMPARE(named<QLineEdit>(&dialog, "groupEdit")->text(), QString("9А"));
    QCOMPARE(dialog.issueDate(), QString("2023-02-01"));
    QCOMPARE(dateOf(dialog, "issueDateEdit")->date(), QDate(2023, 2, 1));
    QCOMPARE(dialog.duplicate(), 1);
    QVERIFY(named<QCheckBox>(&dialog, "duplicateCheck")->isChecked());
    QCOMPARE(dialog.content(), content);
    // Names, numbers, birth and edit date of the template stay behind.
    QCOMPARE(named<QLineEdit>(&dialog, "lnameEdit")->text(), QString("Иванова"));
    QCOMPARE(named<QLineEdit>(&dialog, "fnameEdit")->text(), QString());
    QCOMPARE(named<QLineEdit>(&dialog, "seriesEdit")->text(), QString("1"));
    QCOMPARE(dateOf(dialog, "birthDateEdit")->date(), QDate::currentDate().addYears(-20));

    clickButton(&dialog, "saveButton");
    QCOMPARE(dialog.docType(), form);
    QCOMPARE(dialog.issueDate(), QString("2023-02-01"));
    QCOMPARE(dialog.editDate(), stored(QDate::currentDate()));
    QCOMPARE(dialog.content(), content);
}

void tst_NewDocDlg::sameTypeKeepsTheDates()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {formField("#S", "С", 0)});
    addTemplateRow(app, "Ш", form, {{"#S", stringEntry("С", "из шаблона")}});
    NewDocDlg dialog;
    choose(dialog, form);
    dateOf(dialog, "birthDateEdit")->setDate(QDate(2001, 1, 2));
    dateOf(dialog, "editDateEdit")->setDate(QDate(2002, 1, 2));
    templatesOf(dialog)->setCurrentRow(0);
    dialog.createFromTemplate();
    QCOMPARE(dateOf(dialog, "birthDateEdit")->date(), QDate(2001, 1, 2));
    QCOMPARE(dateOf(dialog, "editDateEdit")->date(), QDate(2002, 1, 2));
    QCOMPARE(dateOf(dialog, "issueDateEdit")->date(), QDate(2023, 2, 1));
    QCOMPARE(named<QTableWidget>(&dialog, "contentTable")->item(0, 1)->text(),
             QString("из шаблона"));
}

void tst_NewDocDlg::otherTypeResetsTheDates()
{
    TempApplication app;
    const int first = addForm(app, "Первая", {});
    const int second = addForm(app, "Вторая", {});
    addTemplateRow(app, "Ш", second, {});
    NewDocDlg dialog;
    choose(dialog, first);
    dateOf(dialog, "birthDateEdit")->setDate(QDate(2001, 1, 2));
    dateOf(dialog, "editDateEdit")->setDate(QDate(2002, 1, 2));
    templatesOf(dialog)->setCurrentRow(0);
    dialog.createFromTemplate();
    QCOMPARE(dateOf(dialog, "birthDateEdit")->date(), QDate::currentDate().addYears(-20));
    QCOMPARE(dateOf(dialog, "editDateEdit")->date(), QDate::currentDate());
    QCOMPARE(dateOf(dialog, "issueDateEdit")->date(), QDate(2023, 2, 1));
}

void tst_NewDocDlg::createWithoutACurrentTemplate()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {});
    addTemplateRow(app, "Ш", form, {});
    NewDocDlg dialog;
    dialog.show();
    pressTemplateButton(&dialog, "createFromBtn");
    QCOMPARE(named<QTabWidget>(&dialog, "newDocTab")->currentIndex(), 1);
    QCOMPARE(typesOf(dialog)->currentIndex(), -1);
    QVERIFY(!named<QPushButton>(&dialog, "saveButton")->isEnabled());
}

void tst_NewDocDlg::templateOfADeletedForm()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {});
    addTemplateRow(app, "Ш", 4711, {{"#S", stringEntry("С", "с")}});
    NewDocDlg dialog;
    choose(dialog, form);
    templatesOf(dialog)->setCurrentRow(0);
    dialog.createFromTemplate();
    QCOMPARE(typesOf(dialog)->currentIndex(), -1);
    QCOMPARE(dialog.docType(), 4711);
    QCOMPARE(named<QTableWidget>(&dialog, "contentTable")->item(0, 1)->text(), QString("с"));
    dialog.show();
    clickButton(&dialog, "saveButton");
    QCOMPARE(dialog.docType(), 0);
}

void tst_NewDocDlg::templateWithBrokenContent()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {formField("#S", "С", 0)});
    const int id = addTemplateRow(app, "Ш", form, {});
    app.exec("UPDATE docs SET CONTENT = 'broken {' WHERE ID = ?", {id});
    NewDocDlg dialog;
    templatesOf(dialog)->setCurrentRow(0);
    dialog.createFromTemplate();
    QCOMPARE(dialog.content(), QJsonObject());
    QCOMPARE(named<QTableWidget>(&dialog, "contentTable")->rowCount(), 0);
    QCOMPARE(app.value("SELECT CONTENT FROM docs").toString(), QString("broken {"));
}

void tst_NewDocDlg::createFails()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {});
    const int id = addTemplateRow(app, "Ш", form, {});
    NewDocDlg dialog;
    templatesOf(dialog)->setCurrentRow(0);
    app.exec("DELETE FROM docs WHERE ID = ?", {id}); // gone behind the dialog's back
    dialog.createFromTemplate();
    QCOMPARE(typesOf(dialog)->currentIndex(), -1);

    app.exec("DROP TABLE docs");
    LogCatcher log;
    dialog.createFromTemplate();
    QVERIFY(log.contains("Unable to execute select query"));
    QVERIFY(log.contains("no such table: docs"));
    QCOMPARE(typesOf(dialog)->currentIndex(), -1);
    QVERIFY(!named<QFrame>(&dialog, "mainFrame")->isEnabled());
}

void tst_NewDocDlg::oneTabForADateAndNoneForAFixedOne()
{
    BegunDocument document;
    QVERIFY(QTest::qWaitForWindowActive(&document.dialog));
    named<QLineEdit>(&document.dialog, "groupEdit")->setFocus();
    for (const char* next : {"birthDateEdit", "issueDateEdit", "seriesEdit"}) {
        pressKey(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget()->objectName(), QString(next));
    }
    pressKey(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget()->objectName(), QString("issueDateEdit"));
    // The mouse still gets there, to copy the date.
    QTest::mouseClick(dateOf(document.dialog, "editDateEdit"), Qt::LeftButton);
    QCOMPARE(QApplication::focusWidget()->objectName(), QString("editDateEdit"));
}

void tst_NewDocDlg::fixedDateLooksFixed()
{
    QVERIFY(loadBaseStyle());
    BegunDocument document;
    baseStyleSheet.clear();
    const auto background = [&](const char* name) {
        const QImage picture = dateOf(document.dialog, name)->grab().toImage();
        return picture.pixelColor(picture.width() - 10, picture.height() / 2);
    };
    QCOMPARE(background("issueDateEdit").name(), background("birthDateEdit").name());
    QVERIFY(background("editDateEdit") != QColor(Qt::white));
    // No arrow of a calendar at its right end, so both places show the background.
    QCOMPARE(background("editDateEdit").name(), QString("#f7f8f9"));
}

void tst_NewDocDlg::wheelOverADateChangesNothing()
{
    BegunDocument document;
    QVERIFY(QTest::qWaitForWindowActive(&document.dialog));
    for (const char* name : {"birthDateEdit", "issueDateEdit", "editDateEdit"}) {
        const QDate before = dateOf(document.dialog, name)->date();
        wheelOver(dateOf(document.dialog, name));
        QCOMPARE(dateOf(document.dialog, name)->date(), before);
    }
}

void tst_NewDocDlg::typedValuesReplaceTheOnesReachedByTab()
{
    TempApplication app;
    const int list = addList(app, {"good", "bad"});
    const int form =
        addForm(app, "Ф", {formField("#1", "С", 1, {{"list", list}}), formField("#2", "Ч", 2)});
    NewDocDlg dialog;
    choose(dialog, form);
    editorOfTag<QComboBox>(&dialog, "#1")->setCurrentIndex(1);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    named<QCheckBox>(&dialog, "duplicateCheck")->setFocus();
    pressKey(Qt::Key_Tab);
    typeKeys("Good");
    pressKey(Qt::Key_Return);
    typeKeys("144");
    pressKey(Qt::Key_Return);
    QVERIFY(dialog.isVisible());
    dialog.onDone();
    QCOMPARE(dialog.content()["#1"].toObject()["value"], QJsonValue("Good"));
    QCOMPARE(dialog.content()["#2"].toObject()["value"], QJsonValue(144));
}

void tst_NewDocDlg::doubleClickDeletesOneTemplate()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {});
    addTemplateRow(app, "Первый", form, {});
    addTemplateRow(app, "Второй", form, {});
    NewDocDlg dialog;
    dialog.show();
    showTemplates(dialog);
    templatesOf(dialog)->setCurrentRow(0);
    doubleClickButton(dialog, "deleteTemplateBtn");
    QCOMPARE(app.value("SELECT group_concat(TEMPLATE_NAME) FROM docs").toString(),
             QString("Второй"));
}

QTEST_MAIN(tst_NewDocDlg)
#include "tst_NewDocDlg.moc"
