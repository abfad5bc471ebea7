#include <QtTest>

#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTextEdit>

#include "DocumentFixture.h"
#include "app/AppStyle.h"
#include "documents/DocDialog.h"
#include "documents/TableMemoDialog.h"
#include "documents/TextMemoDialog.h"
#include "documents/ZelvoraTableButton.h"
#include "documents/ZelvoraTextButton.h"
#include "forms/FormDefinitions.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"

namespace {

QString today()
{
    return QDate::currentDate().toString("yyyy-MM-dd");
}

/// Fills a dialog as its callers do, type before content.
void fill(DocDialog* dialog, int form, const QJsonObject& content)
{
    dialog->setSeries("107704");
    dialog->setNumber("0012345");
    dialog->setFname("Мария");
    dialog->setLname("Д'Арк");
    dialog->setMname("Александровна");
    dialog->setBirthDate("2004-03-17");
    dialog->setDocType(form);
    dialog->setDocGroup("ПК-41");
    dialog->setIssueDate("2024-06-30");
    dialog->setEditDate("2024-07-01");
    dialog->setDuplicate(0);
    dialog->setContent(content);
}

QLineEdit* lineOf(const DocDialog& dialog, const QString& name)
{
    return named<QLineEdit>(&dialog, name);
}

} // namespace

/// The dialog of one document.
class tst_DocDialog : public QObject
{
    Q_OBJECT

private slots:
    void looks();
    void labelsAndSettings_data();
    void labelsAndSettings();
    void calendarsAreDressed();
    void buttonsKeepTheirHeight();
    void typesInOrderOfTheirIds();
    void constructionBuildsNoContent();

    void settersFillWidgetsAndMembers();
    void unknownTypeLeavesNothingChosen();
    void typeFiresOnlyIfItChanges();
    void unreadableDatesKeepTheInitialOne();
    void duplicateAboveOne();

    void saveTakesAllWidgets();
    void acceptedBeforeTheValuesAreTaken();
    void closeKeepsTheMembers();
    void saveStampsTheDay();
    void enterSaves();
    void nothingChosenReadsAsTypeZero();
    void deletedFormShowsTheContent();
    void userPicksAnotherType();

    void textButtonOpensItsEditor();
    void tableButtonOpensItsEditor();
    void slotsWithoutASenderDoNothing();

    void oneTabForADate();
    void wheelOverADateChangesNothing();
    void longValuesAreSeenFromTheirBeginning();
};

void tst_DocDialog::looks()
{
    baseStyleSheet = "QLabel { color: #010203; }";
    const DocDialog dialog;
    baseStyleSheet.clear();
    QVERIFY(dialog.styleSheet().startsWith("QLabel { color: #010203; }\r\n"));
    QCOMPARE(dialog.windowTitle(), QString("Изменение документа"));
    QCOMPARE(dialog.size(), QSize(768, 696));
    const auto* save = named<QPushButton>(&dialog, "saveButton");
    const auto* close = named<QPushButton>(&dialog, "closeButton");
    QCOMPARE(save->text(), QString("СОХРАНИТЬ"));
    QCOMPARE(save->property("btnRole1").toString(), QString("accept"));
    QCOMPARE(close->text(), QString("ЗАКРЫТЬ"));
    QCOMPARE(close->property("btnRole1").toString(), QString("cancel"));
    QCOMPARE(named<QCheckBox>(&dialog, "duplicateCheck")->text(), QString("Дубликат"));
    QCOMPARE(named<QTableWidget>(&dialog, "contentTable")->styleSheet(),
             QString("background: #F7F8F9;\nfont-family: Roboto;\nfont-style: normal;\n"
                     "font-weight: normal;\nfont-size: 12px;"));
    QVERIFY(!named<QComboBox>(&dialog, "docTypeCmb")->isEditable());
    QCOMPARE(lineOf(dialog, "numberEdit")->inputMask(), QString());
}

void tst_DocDialog::labelsAndSettings_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    QTest::newRow("type") << "docTypeCmb"
                          << "Тип документа";
    QTest::newRow("group") << "groupEdit"
                           << "Класс";
    QTest::newRow("lname") << "lnameEdit"
                           << "Фамилия";
    QTest::newRow("fname") << "fnameEdit"
                           << "Имя";
    QTest::newRow("mname") << "mnameEdit"
                           << "Отчество";
    QTest::newRow("birth") << "birthDateEdit"
                           << "Дата рождения";
    QTest::newRow("issue") << "issueDateEdit"
                           << "Дата выдачи";
    QTest::newRow("edit") << "editDateEdit"
                          << "Дата изменения";
    QTest::newRow("series") << "seriesEdit"
                            << "Серия";
    QTest::newRow("number") << "numberEdit"
                            << "Номер";
}

void tst_DocDialog::labelsAndSettings()
{
    QFETCH(QString, name);
    QFETCH(QString, caption);
    DocDialog dialog;
    dialog.show();
    const auto* editor = named<QWidget>(&dialog, name);
    const auto labels = dialog.findChildren<QLabel*>();
    const auto label = std::find_if(labels.begin(), labels.end(),
                                    [&](const QLabel* one) { return one->text() == caption; });
    QVERIFY(label != labels.end());
    QCOMPARE((*label)->buddy(), editor);
    QVERIFY((*label)->geometry().bottom() < editor->geometry().top());
    QCOMPARE((*label)->geometry().left(), editor->geometry().left());
}

void tst_DocDialog::calendarsAreDressed()
{
    const DocDialog dialog;
    for (const char* name : {"birthDateEdit", "issueDateEdit", "editDateEdit"}) {
        const auto* edit = named<QDateEdit>(&dialog, name);
        QCOMPARE(edit->displayFormat(), QString("dd-MM-yyyy"));
        QCOMPARE(edit->buttonSymbols(), QAbstractSpinBox::NoButtons);
        QVERIFY(edit->calendarPopup());
        QCOMPARE(edit->calendarWidget()->minimumSize(), QSize(400, 300));
        QCOMPARE(edit->calendarWidget()->maximumSize(), QSize(400, 300));
    }
}

void tst_DocDialog::buttonsKeepTheirHeight()
{
    // The base style wants 25 and 5 of padding above and below.
    baseStyleSheet = "QAbstractButton[btnRole1=\"accept\"], QAbstractButton[btnRole1=\"cancel\"] "
                     "{ border: none; min-height: 25px; padding: 5px 10px; }";
    DocDialog dialog;
    baseStyleSheet.clear();
    dialog.show();
    QCOMPARE(named<QPushButton>(&dialog, "saveButton")->height(), 32);
    QCOMPARE(named<QPushButton>(&dialog, "closeButton")->height(), 32);
}

void tst_DocDialog::typesInOrderOfTheirIds()
{
    TempApplication app;
    docTypeNames = {{30, "Аттестат"}, {4, "Свидетельство"}, {28, ""}};
    const DocDialog dialog;
    const auto* combo = named<QComboBox>(&dialog, "docTypeCmb");
    QCOMPARE(combo->count(), 3);
    QCOMPARE(combo->itemText(0), QString("Свидетельство"));
    QCOMPARE(combo->itemData(0), QVariant(4));
    QCOMPARE(combo->itemText(1), QString());
    QCOMPARE(combo->itemData(1), QVariant(28));
    QCOMPARE(combo->itemText(2), QString("Аттестат"));
    docTypeNames[1] = "Новая";
    QCOMPARE(combo->count(), 3);
}

void tst_DocDialog::constructionBuildsNoContent()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {formField("#A", "А", 0)});
    const DocDialog dialog;
    QCOMPARE(named<QComboBox>(&dialog, "docTypeCmb")->currentData(), QVariant(form));
    QCOMPARE(dialog.content(), QJsonObject());
    QCOMPARE(named<QTableWidget>(&dialog, "contentTable")->rowCount(), 0);
}

void tst_DocDialog::settersFillWidgetsAndMembers()
{
    TempApplication app;
    addForm(app, "Первая", {});
    const int form = addForm(app, "Вторая", {formField("#A", "А", 0)});
    const QJsonObject content = {{"#X", QJsonObject{{"name", "Х"}, {"type", 0}, {"value", "х"}}}};
    DocDialog dialog;
    fill(&dialog, form, content);
    QCOMPARE(dialog.series(), QString("107704"));
    QCOMPARE(dialog.number(), QString("0012345"));
    QCOMPARE(dialog.fname(), QString("Мария"));
    QCOMPARE(dialog.lname(), QString("Д'Арк"));
    QCOMPARE(dialog.mname(), QString("Александровна"));
    QCOMPARE(dialog.birthDate(), QString("2004-03-17"));
    QCOMPARE(dialog.docType(), form);
    QCOMPARE(dialog.docGroup(), QString("ПК-41"));
    QCOMPARE(dialog.issueDate(), QString("2024-06-30"));
    QCOMPARE(dialog.editDate(), QString("2024-07-01"));
    QCOMPARE(dialog.duplicate(), 0);
    QCOMPARE(dialog.content(), content);

    QCOMPARE(lineOf(dialog, "seriesEdit")->text(), QString("107704"));
    QCOMPARE(lineOf(dialog, "numberEdit")->text(), QString("0012345"));
    QCOMPARE(lineOf(dialog, "fnameEdit")->text(), QString("Мария"));
    QCOMPARE(lineOf(dialog, "lnameEdit")->text(), QString("Д'Арк"));
    QCOMPARE(lineOf(dialog, "mnameEdit")->text(), QString("Александровна"));
    QCOMPARE(lineOf(dialog, "groupEdit")->text(), QString("ПК-41"));
    QCOMPARE(named<QDateEdit>(&dialog, "birthDateEdit")->text(), QString("17-03-2004"));
    QCOMPARE(named<QDateEdit>(&dialog, "issueDateEdit")->text(), QString("30-06-2024"));
    QCOMPARE(named<QDateEdit>(&dialog, "editDateEdit")->text(), QString("01-07-2024"));
    QCOMPARE(named<QComboBox>(&dialog, "docTypeCmb")->currentText(), QString("Вторая"));
    QVERIFY(!named<QCheckBox>(&dialog, "duplicateCheck")->isChecked());
    QCOMPARE(named<QTableWidget>(&dialog, "contentTable")->item(0, 0)->text(), QString("Х"));
}

void tst_DocDialog::unknownTypeLeavesNothingChosen()
{
    TempApplication app;
    addForm(app, "Ф", {});
    DocDialog dialog;
    LogCatcher log;
    dialog.setDocType(4711);
    QCOMPARE(named<QComboBox>(&dialog, "docTypeCmb")->currentIndex(), -1);
    QCOMPARE(dialog.docType(), 4711);
    QVERIFY(log.contains("Unable to select from forms query"));
    QVERIFY(log.contains("SELECT FIELDS, FORM_NAME FROM forms WHERE ID =  ;"));
}

void tst_DocDialog::typeFiresOnlyIfItChanges()
{
    TempApplication app;
    const int first = addForm(app, "Первая", {formField("#A", "А", 0)});
    const int second = addForm(app, "Вторая", {formField("#B", "Б", 0)});
    DocDialog dialog;
    dialog.setDocType(first); // current from the start
    QCOMPARE(dialog.content(), QJsonObject());
    dialog.setDocType(second);
    QCOMPARE(dialog.content().keys(), QStringList("#B"));
}

void tst_DocDialog::unreadableDatesKeepTheInitialOne()
{
    TempApplication app;
    DocDialog dialog;
    dialog.setBirthDate("17.03.2004");
    dialog.setIssueDate("");
    QCOMPARE(dialog.birthDate(), QString("17.03.2004"));
    dialog.onDone();
    QCOMPARE(dialog.birthDate(), QString("2000-01-01"));
    QCOMPARE(dialog.issueDate(), QString("2000-01-01"));
}

void tst_DocDialog::duplicateAboveOne()
{
    TempApplication app;
    DocDialog dialog;
    dialog.setDuplicate(5);
    QVERIFY(named<QCheckBox>(&dialog, "duplicateCheck")->isChecked());
    QCOMPARE(dialog.duplicate(), 5);
    dialog.onDone();
    QCOMPARE(dialog.duplicate(), 1);
    dialog.setDuplicate(0);
    dialog.onDone();
    QCOMPARE(dialog.duplicate(), 0);
}

void tst_DocDialog::saveTakesAllWidgets()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {});
    DocDialog dialog;
    fill(&dialog, form, {{"#N", QJsonObject{{"type", 2}, {"value", 1}}}});
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    typeInto(lineOf(dialog, "seriesEdit"), "AB");
    typeInto(lineOf(dialog, "numberEdit"), "77");
    typeInto(lineOf(dialog, "fnameEdit"), "Ivan");
    typeInto(lineOf(dialog, "lnameEdit"), "O'Neil");
    typeInto(lineOf(dialog, "mnameEdit"), "");
    typeInto(lineOf(dialog, "groupEdit"), "11A");
    for (const char* name : {"birthDateEdit", "issueDateEdit", "editDateEdit"}) {
        auto* edit = named<QDateEdit>(&dialog, name);
        edit->setFocus();
        edit->setSelectedSection(QDateTimeEdit::DaySection);
        QTest::keyClicks(edit, name[0] == 'b' ? "02012001" : "03022020");
    }
    QTest::mouseClick(named<QCheckBox>(&dialog, "duplicateCheck"), Qt::LeftButton, Qt::NoModifier,
                      QPoint(8, 10));
    typeInto(editorOfTag<QSpinBox>(&dialog, "#N"), "12");
    clickButton(&dialog, "saveButton");

    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.series(), QString("AB"));
    QCOMPARE(dialog.number(), QString("77"));
    QCOMPARE(dialog.fname(), QString("Ivan"));
    QCOMPARE(dialog.lname(), QString("O'Neil"));
    QCOMPARE(dialog.mname(), QString());
    QCOMPARE(dialog.docGroup(), QString("11A"));
    QCOMPARE(dialog.birthDate(), QString("2001-01-02"));
    QCOMPARE(dialog.issueDate(), QString("2020-02-03"));
    QCOMPARE(dialog.editDate(), today()); // not the 3rd of February
    QCOMPARE(dialog.duplicate(), 1);
    QCOMPARE(dialog.docType(), form);
    QCOMPARE(dialog.content(), QJsonObject({{"#N", QJsonObject{{"type", 2}, {"value", 12}}}}));
}

void tst_DocDialog::acceptedBeforeTheValuesAreTaken()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {});
    DocDialog dialog;
    fill(&dialog, form, {});
    lineOf(dialog, "fnameEdit")->setText("Анна");
    QString atAccept;
    connect(&dialog, &QDialog::accepted, this, [&] { atAccept = dialog.fname(); });
    ModalDriver driver;
    driver.expect<DocDialog>([](DocDialog* open) { clickButton(open, "saveButton"); });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(atAccept, QString("Мария"));
    QCOMPARE(dialog.fname(), QString("Анна"));
}

void tst_DocDialog::closeKeepsTheMembers()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {});
    const QJsonObject content = {{"#N", QJsonObject{{"type", 2}, {"value", 1}}}};
    DocDialog dialog;
    fill(&dialog, form, content);
    dialog.setDuplicate(5);
    lineOf(dialog, "fnameEdit")->setText("Анна");
    editorOfTag<QSpinBox>(&dialog, "#N")->setValue(9);
    ModalDriver driver;
    driver.expect<DocDialog>([](DocDialog* open) { clickButton(open, "closeButton"); });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(dialog.fname(), QString("Мария"));
    QCOMPARE(dialog.editDate(), QString("2024-07-01"));
    QCOMPARE(dialog.duplicate(), 5);
    QCOMPARE(dialog.content(), content);
}

void tst_DocDialog::saveStampsTheDay()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {});
    DocDialog dialog;
    fill(&dialog, form, {});
    dialog.show();
    clickButton(&dialog, "saveButton");
    QCOMPARE(dialog.editDate(), today());
    QCOMPARE(named<QDateEdit>(&dialog, "editDateEdit")->date(), QDate(2024, 7, 1));
}

void tst_DocDialog::enterSaves()
{
    TempApplication app;
    DocDialog dialog;
    dialog.setContent({{"#A", QJsonObject{{"type", 5}, {"value", "text"}}}});
    dialog.show();
    typeInto(lineOf(dialog, "lnameEdit"), "Smith");
    QTest::keyClick(lineOf(dialog, "lnameEdit"), Qt::Key_Return);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.lname(), QString("Smith"));
}

void tst_DocDialog::nothingChosenReadsAsTypeZero()
{
    TempApplication app; // no form at all
    DocDialog dialog;
    dialog.onDone();
    QCOMPARE(dialog.docType(), 0);
}

void tst_DocDialog::deletedFormShowsTheContent()
{
    TempApplication app;
    addForm(app, "Другая", {formField("#B", "Б", 0)});
    const QJsonObject content = {{"#A", QJsonObject{{"name", "А"}, {"type", 0}, {"value", "а"}}}};
    DocDialog dialog;
    fill(&dialog, 4711, content);
    QCOMPARE(named<QTableWidget>(&dialog, "contentTable")->item(0, 1)->text(), QString("а"));
    dialog.show();
    clickButton(&dialog, "saveButton");
    QCOMPARE(dialog.docType(), 0);
    QCOMPARE(dialog.content(), content);
}

void tst_DocDialog::userPicksAnotherType()
{
    TempApplication app;
    const int first = addForm(app, "Первая", {formField("#A", "А", 0)});
    const int second = addForm(app, "Вторая", {formField("#B", "Б", 0)});
    DocDialog dialog;
    fill(&dialog, first, {{"#A", QJsonObject{{"name", "А"}, {"type", 0}, {"value", "а"}}}});
    dialog.show();
    auto* combo = named<QComboBox>(&dialog, "docTypeCmb");
    QTest::keyClick(combo, Qt::Key_Down);
    QCOMPARE(combo->currentData(), QVariant(second));
    QCOMPARE(dialog.content().keys(), QStringList("#B"));
    QCOMPARE(lineOf(dialog, "lnameEdit")->text(), QString("Д'Арк"));
    QCOMPARE(named<QDateEdit>(&dialog, "issueDateEdit")->date(), QDate(2024, 6, 30));
    QTest::keyClick(combo, Qt::Key_Up);
    clickButton(&dialog, "saveButton");
    QCOMPARE(dialog.docType(), first);
    QCOMPARE(dialog.content()["#A"].toObject()["value"], QJsonValue(""));
}

void tst_DocDialog::textButtonOpensItsEditor()
{
    TempApplication app;
    DocDialog dialog;
    dialog.setContent({{"#A", QJsonObject{{"type", 5}, {"value", "old"}}}});
    dialog.show();
    ModalDriver driver;
    driver.expect<TextMemoDialog>([&](TextMemoDialog* memo) {
        QCOMPARE(memo->parentWidget(), &dialog);
        QVERIFY(!named<QTextEdit>(memo, "textEdit")->isReadOnly());
        QTest::keyClicks(named<QTextEdit>(memo, "textEdit"), "very ");
        clickButton(memo, "buttonAccept");
    });
    QTest::mouseClick(editorOfTag<ZelvoraTextButton>(&dialog, "#A"), Qt::LeftButton);
    QVERIFY2(driver.finished(), driver.failures());
    clickButton(&dialog, "saveButton");
    QCOMPARE(dialog.content()["#A"].toObject()["value"], QJsonValue("very old"));
}

void tst_DocDialog::tableButtonOpensItsEditor()
{
    TempApplication app;
    DocDialog dialog;
    dialog.setContent({{"#A", QJsonObject{{"type", 4},
                                          {"columns", QJsonArray{tableColumn("Предмет", "0"),
                                                                 tableColumn("Часы", "2")}}}}});
    dialog.show();
    ModalDriver driver;
    driver.expect<TableMemoDialog>([&](TableMemoDialog* memo) {
        QCOMPARE(memo->parentWidget(), &dialog);
        QVERIFY(named<QPushButton>(memo, "buttonAccept")->isVisible());
        clickButton(memo, "buttonAddRow");
        typeIntoCell(named<QTableWidget>(memo, "tableWidget"), 0, 0, "Physics");
        clickButton(memo, "buttonAccept");
    });
    QTest::mouseClick(editorOfTag<ZelvoraTableButton>(&dialog, "#A"), Qt::LeftButton);
    QVERIFY2(driver.finished(), driver.failures());
    clickButton(&dialog, "saveButton");
    QCOMPARE(dialog.content()["#A"].toObject()["value"],
             QJsonValue(oneRow(QJsonArray{"Physics", "0"})));
}

void tst_DocDialog::slotsWithoutASenderDoNothing()
{
    DocDialog dialog;
    ModalDriver driver; // expects no dialog
    dialog.onTextEdit();
    dialog.onTalbeEdit();
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_DocDialog::oneTabForADate()
{
    TempApplication app;
    DocDialog dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    lineOf(dialog, "mnameEdit")->setFocus();
    for (const char* next : {"birthDateEdit", "issueDateEdit", "editDateEdit", "seriesEdit"}) {
        pressKey(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget()->objectName(), QString(next));
    }
}

void tst_DocDialog::wheelOverADateChangesNothing()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {});
    DocDialog dialog;
    fill(&dialog, form, {});
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    for (const char* name : {"birthDateEdit", "issueDateEdit", "editDateEdit"}) {
        wheelOver(named<QDateEdit>(&dialog, name));
    }
    QCOMPARE(named<QDateEdit>(&dialog, "editDateEdit")->date(), QDate(2024, 7, 1));
    dialog.onDone();
    QCOMPARE(dialog.birthDate(), QString("2004-03-17"));
    QCOMPARE(dialog.issueDate(), QString("2024-06-30"));
}

void tst_DocDialog::longValuesAreSeenFromTheirBeginning()
{
    TempApplication app;
    DocDialog dialog;
    const QString longText = QString("слово ").repeated(60);
    dialog.setLname(longText);
    dialog.setFname(longText);
    dialog.setDocGroup(longText);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    for (const char* name : {"lnameEdit", "fnameEdit", "groupEdit"}) {
        QCOMPARE(lineOf(dialog, name)->cursorPosition(), 0);
    }
    pressKey(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), lineOf(dialog, "fnameEdit"));
    QCOMPARE(lineOf(dialog, "fnameEdit")->cursorPosition(), 0);
    QCOMPARE(lineOf(dialog, "fnameEdit")->selectedText(), longText);
}

QTEST_MAIN(tst_DocDialog)
#include "tst_DocDialog.moc"
