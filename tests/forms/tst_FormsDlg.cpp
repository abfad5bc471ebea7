#include <QtTest>

#include <QComboBox>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>

#include "forms/FieldEditDlg.h"
#include "forms/FormEditDlg.h"
#include "forms/FormsDlg.h"
#include "forms/TableColumFormDialog.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"
#include "support/Process.h"
#include "support/TempApplication.h"
#include "support/Widgets.h"

/// The manager of document forms and value lists.
class tst_FormsDlg : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void window();
    void opensWithMastersOnly();
    void failedFillIsLogged();

    void addForm();
    void cancelledAddFormChangesNothing();
    void editForm();
    void deleteFormSelectsTheNext();
    void deleteFormAskedAndDenied();
    void deletedFormLeavesDocuments();
    void deletedLastForm();
    void failedFormWrites();

    void drawsFields();
    void addFieldGoesLast();
    void editFieldReplaces();
    void cancelledEditFieldChangesNothing();
    void deleteFieldShiftsPositions();
    void addFieldWithoutAForm();
    void fieldOperationsOnBrokenJson();
    void failedFieldWrites();
    void readsBytesAsWellAsText();

    void addList();
    void editListInPlace();
    void deleteList();
    void failedListWrites();

    void addItemTwice();
    void editItemInPlace();
    void deleteItemTwice();
    void itemOperationsOnBrokenJson();
    void failedItemSelects();
    void failedItemWrites();
    void tabsAreIndependent();
    void rowsReachedByTabAreNotPicked();
    void newRowsAreScrolledTo();
    void enterAfterARenameLeavesTheWindowOpen();
    void shownItemsOfAnotherListAreNotCurrent();
    void cutCellsHaveTips();
    void elidedHeadingsHaveTips();

    void workedExampleThroughTheDialogs();
    void doubleClickDeletesOneField();
    void doubleClickDeletesOneItem();
    void keysOnAClosedText();

private:
    QString storedFields(int id);

    TempApplication* m_app = nullptr;
};

namespace {

QTableWidget* table(const QWidget& dialog, const char* name)
{
    return named<QTableWidget>(dialog, name);
}

void showTab(FormsDlg& dialog, int index)
{
    dialog.show();
    named<QTabWidget>(dialog, "mainTab")->setCurrentIndex(index);
}

/// Opens the dialog and makes a form current.
void showForm(FormsDlg& dialog, int row)
{
    dialog.show();
    clickRow(table(dialog, "formsWidget"), row);
}

/// Opens the dialog on the lists and makes one of them current.
void showList(FormsDlg& dialog, int row)
{
    showTab(dialog, 1);
    clickRow(table(dialog, "listsWidget"), row);
}

/// Fills the form prompt and accepts it.
void answerForm(ModalDriver& driver, const QString& type, const QString& name)
{
    driver.expect<FormEditDlg>([=](FormEditDlg* prompt) {
        named<QLineEdit>(*prompt, "typeEdit")->setText(type);
        named<QLineEdit>(*prompt, "nameEdit")->setText(name);
        clickButton(*prompt, "buttonAccept");
    });
}

/// Fills the field dialog and accepts it; `more` works on what the type needs.
void answerField(ModalDriver& driver, const QString& tag, const QString& name, int type,
                 const std::function<void(FieldEditDlg*)>& more = nullptr)
{
    driver.expect<FieldEditDlg>([=](FieldEditDlg* field) {
        named<QLineEdit>(*field, "tagEdit")->setText(tag);
        named<QLineEdit>(*field, "nameEdit")->setText(name);
        named<QComboBox>(*field, "typeCombo")->setCurrentIndex(type);
        if (more) {
            more(field);
        }
        clickButton(*field, "buttonAccept");
    });
}

const char* const twoFields = R"({"fields":[
    {"tag":"#A","name":"Первое","type":0},
    {"tag":"#B","name":"Второе","type":9}]})";

} // namespace

void tst_FormsDlg::init()
{
    m_app = new TempApplication;
    m_app->exec("INSERT INTO forms (ID, FORM_NAME, FORM_FULLNAME, FIELDS) VALUES "
                "(3, 'Аттестат', 'Аттестат о среднем общем образовании', ?), "
                "(5, 'Диплом', 'Диплом о профессиональном образовании', '{\"fields\":[]}'), "
                "(6, 'Справка', 'Справка об обучении', '{\"fields\":[]}')",
                {QString(twoFields)});
    m_app->exec("INSERT INTO lists (ID, LIST_NAME, LIST_ITEMS) VALUES "
                "(7, 'Оценки', '{\"items\":[\"отлично\",\"хорошо\",\"хорошо\"]}'), "
                "(8, 'Пустой', '{\"items\":[]}')");
}

void tst_FormsDlg::cleanup()
{
    delete m_app;
}

QString tst_FormsDlg::storedFields(int id)
{
    return m_app->value("SELECT FIELDS FROM forms WHERE ID = ?", {id}).toString();
}

void tst_FormsDlg::window()
{
    FormsDlg dialog;
    dialog.show();
    QCOMPARE(dialog.windowTitle(), QString("Формы и списки"));
    QCOMPARE(dialog.size(), QSize(822, 442));
    const auto* tabs = named<QTabWidget>(dialog, "mainTab");
    QCOMPARE(tabs->styleSheet(), QString("QTabBar::tab \n{\n\tmin-width: 90px;\n}"));
    QCOMPARE(tabs->widget(0)->objectName(), QString("formsTab"));
    QCOMPARE(tabs->tabText(0), QString("Формы"));
    QCOMPARE(tabs->widget(1)->objectName(), QString("listsTab"));
    QCOMPARE(tabs->tabText(1), QString("Списки"));

    const QMap<QString, QString> texts{{"addFrmBtn", "ADD"},   {"delFrmBtn", "DEL"},
                                       {"fldAddBtn", ""},      {"fldDelBtn", "..."},
                                       {"addListBtn", ""},     {"delListBtn", "DEL"},
                                       {"listItemAddBtn", ""}, {"listItemDelBtn", "..."}};
    for (auto text = texts.begin(); text != texts.end(); ++text) {
        const auto* button = named<QPushButton>(dialog, text.key());
        QCOMPARE(button->text(), text.value());
        QCOMPARE(button->property("btnRole1").toString(), QString("whiteButton"));
    }
    QCOMPARE(table(dialog, "formsWidget")->columnWidth(0), 128);
    QCOMPARE(table(dialog, "fieldsWidget")->columnWidth(0), 64);
    QCOMPARE(table(dialog, "fieldsWidget")->columnWidth(1), 64);
    QCOMPARE(table(dialog, "fieldsWidget")->horizontalHeaderItem(0)->text(), QString("Метка"));
    QCOMPARE(table(dialog, "fieldsWidget")->horizontalHeaderItem(1)->text(), QString("Поле"));
    QCOMPARE(table(dialog, "fieldsWidget")->horizontalHeaderItem(2)->text(), QString("Тип"));
    QCOMPARE(table(dialog, "formsWidget")->horizontalHeaderItem(0)->text(),
             QString("Тип документа"));
    QCOMPARE(table(dialog, "formsWidget")->horizontalHeaderItem(1)->text(),
             QString("Полное название"));
    for (const char* name : {"formsWidget", "fieldsWidget", "listsWidget", "itemsWidget"}) {
        QCOMPARE(table(dialog, name)->selectionMode(), QAbstractItemView::SingleSelection);
        QCOMPARE(table(dialog, name)->selectionBehavior(), QAbstractItemView::SelectRows);
    }
    clickButton(dialog, "buttonReject");
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    dialog.show();
    clickButton(dialog, "buttonAccept");
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void tst_FormsDlg::opensWithMastersOnly()
{
    FormsDlg dialog;
    QCOMPARE(columnTexts(table(dialog, "formsWidget"), 0),
             (QStringList{"Аттестат", "Диплом", "Справка"}));
    QCOMPARE(table(dialog, "formsWidget")->item(1, 1)->text(),
             QString("Диплом о профессиональном образовании"));
    QCOMPARE(table(dialog, "formsWidget")->item(1, 0)->data(Qt::UserRole).toInt(), 5);
    QCOMPARE(columnTexts(table(dialog, "listsWidget"), 0), (QStringList{"Оценки", "Пустой"}));
    QCOMPARE(table(dialog, "listsWidget")->item(0, 0)->data(Qt::UserRole).toInt(), 7);
    QCOMPARE(table(dialog, "fieldsWidget")->rowCount(), 0);
    QCOMPARE(table(dialog, "itemsWidget")->rowCount(), 0);
}

void tst_FormsDlg::failedFillIsLogged()
{
    m_app->exec("DROP TABLE forms");
    m_app->exec("DROP TABLE lists");
    LogCatcher log;
    FormsDlg dialog;
    QCOMPARE(log.count("Unable to execute select query"), 2);
    QVERIFY(log.contains("no such table: forms"));
    QVERIFY(log.contains("no such table: lists"));
}

void tst_FormsDlg::addForm()
{
    FormsDlg dialog;
    dialog.show();
    ModalDriver driver;
    answerForm(driver, "Сертификат", "Сертификат о прохождении курса 'А'");
    clickButton(dialog, "addFrmBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QTableWidget* forms = table(dialog, "formsWidget");
    QCOMPARE(forms->rowCount(), 4);
    QCOMPARE(forms->item(3, 0)->text(), QString("Сертификат"));
    const int id = forms->item(3, 0)->data(Qt::UserRole).toInt();
    QCOMPARE(m_app->value("SELECT FORM_NAME FROM forms WHERE ID = ?", {id}).toString(),
             QString("Сертификат"));
    QCOMPARE(m_app->value("SELECT FORM_FULLNAME FROM forms WHERE ID = ?", {id}).toString(),
             QString("Сертификат о прохождении курса 'А'"));
    QCOMPARE(storedFields(id), QString("{\n\t\"fields\":\n\t\t[\n\t\t]\n}"));
    QCOMPARE(m_app->value("SELECT typeof(FIELDS) FROM forms WHERE ID = ?", {id}).toString(),
             QString("text"));
}

void tst_FormsDlg::cancelledAddFormChangesNothing()
{
    const QByteArray before = m_app->dump();
    FormsDlg dialog;
    dialog.show();
    ModalDriver driver;
    driver.expect<FormEditDlg>([](FormEditDlg* prompt) { clickButton(*prompt, "buttonReject"); });
    clickButton(dialog, "addFrmBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(table(dialog, "formsWidget")->rowCount(), 3);
    QCOMPARE(m_app->dump(), before);
}

void tst_FormsDlg::editForm()
{
    FormsDlg dialog;
    dialog.show();
    ModalDriver driver;
    driver.expect<FormEditDlg>([](FormEditDlg* prompt) {
        QCOMPARE(named<QLineEdit>(*prompt, "typeEdit")->text(), QString("Диплом"));
        QCOMPARE(named<QLineEdit>(*prompt, "nameEdit")->text(),
                 QString("Диплом о профессиональном образовании"));
        named<QLineEdit>(*prompt, "typeEdit")->setText("Диплом СПО");
        named<QLineEdit>(*prompt, "nameEdit")->setText("");
        clickButton(*prompt, "buttonAccept");
    });
    doubleClickRow(table(dialog, "formsWidget"), 1);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(table(dialog, "formsWidget")->item(1, 0)->text(), QString("Диплом СПО"));
    QCOMPARE(table(dialog, "formsWidget")->item(1, 1)->text(), QString());
    QCOMPARE(m_app->value("SELECT FORM_NAME FROM forms WHERE ID = 5").toString(),
             QString("Диплом СПО"));
    QCOMPARE(m_app->value("SELECT FORM_FULLNAME FROM forms WHERE ID = 5").toString(), QString());
    QCOMPARE(m_app->value("SELECT FORM_NAME FROM forms WHERE ID = 3").toString(),
             QString("Аттестат"));
}

void tst_FormsDlg::deleteFormSelectsTheNext()
{
    FormsDlg dialog;
    dialog.show();
    QTableWidget* forms = table(dialog, "formsWidget");
    clickRow(forms, 0);
    QCOMPARE(table(dialog, "fieldsWidget")->rowCount(), 2);
    ModalDriver driver;
    driver.expectMessage("Zelvora", "Удалить форму?", "Да");
    clickButton(dialog, "delFrmBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(columnTexts(forms, 0), (QStringList{"Диплом", "Справка"}));
    QCOMPARE(forms->currentRow(), 0);
    QVERIFY(forms->item(0, 0)->isSelected());
    QCOMPARE(table(dialog, "fieldsWidget")->rowCount(), 0);
    QCOMPARE(m_app->value("SELECT COUNT(*) FROM forms WHERE ID = 3").toInt(), 0);
}

void tst_FormsDlg::deleteFormAskedAndDenied()
{
    FormsDlg dialog;
    dialog.show();
    clickButton(dialog, "delFrmBtn"); // nothing is current: no question
    clickRow(table(dialog, "formsWidget"), 0);
    const QByteArray before = m_app->dump();
    ModalDriver driver;
    driver.expectMessage("Zelvora", "Удалить форму?", "Нет");
    clickButton(dialog, "delFrmBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(table(dialog, "formsWidget")->rowCount(), 3);
    QCOMPARE(m_app->dump(), before);
}

void tst_FormsDlg::deletedFormLeavesDocuments()
{
    m_app->exec("INSERT INTO docs (LNAME, DOC_TYPE, TEMPLATE) VALUES ('Иванов', 3, 0)");
    m_app->exec("INSERT INTO blanks (NAME, FORM_ID) VALUES ('Бланк', 3)");
    FormsDlg dialog;
    showForm(dialog, 0);
    ModalDriver driver;
    driver.expectMessage("Zelvora", "Удалить форму?", "Да");
    clickButton(dialog, "delFrmBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_app->value("SELECT DOC_TYPE FROM docs").toInt(), 3);
    QCOMPARE(m_app->value("SELECT FORM_ID FROM blanks").toInt(), 3);
}

void tst_FormsDlg::deletedLastForm()
{
    m_app->exec("DELETE FROM forms WHERE ID <> 3");
    FormsDlg dialog;
    showForm(dialog, 0);
    ModalDriver driver;
    driver.expectMessage("Zelvora", "Удалить форму?", "Да");
    clickButton(dialog, "delFrmBtn");
    QCOMPARE(table(dialog, "formsWidget")->rowCount(), 0);
    QCOMPARE(table(dialog, "fieldsWidget")->rowCount(), 2);

    LogCatcher log;
    answerField(driver, "#C", "Третье", 0);
    clickButton(dialog, "fldAddBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(log.count("Not an object!"), 1);
    QCOMPARE(table(dialog, "fieldsWidget")->rowCount(), 2);
}

void tst_FormsDlg::failedFormWrites()
{
    FormsDlg dialog;
    showForm(dialog, 0);
    m_app->exec("ALTER TABLE forms RENAME TO gone");
    LogCatcher log;
    ModalDriver driver;
    answerForm(driver, "Новая", "");
    clickButton(dialog, "addFrmBtn");
    QCOMPARE(log.count("error insert into forms "), 1);
    driver.expectMessage("Zelvora", "Удалить форму?", "Да");
    clickButton(dialog, "delFrmBtn");
    QCOMPARE(log.count("error delete from forms "), 1);
    answerForm(driver, "Новая", "");
    doubleClickRow(table(dialog, "formsWidget"), 0);
    QCOMPARE(log.count("error update into forms "), 1);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(log.count("no such table"), 3);
    QCOMPARE(columnTexts(table(dialog, "formsWidget"), 0),
             (QStringList{"Аттестат", "Диплом", "Справка"}));

    clickRow(table(dialog, "formsWidget"), 1);
    QCOMPARE(log.count("Unable to execute select query"), 1);
    QCOMPARE(table(dialog, "fieldsWidget")->rowCount(), 2);
}

void tst_FormsDlg::drawsFields()
{
    FormsDlg dialog;
    showForm(dialog, 0);
    QTableWidget* fields = table(dialog, "fieldsWidget");
    QCOMPARE(columnTexts(fields, 0), (QStringList{"#A", "#B"}));
    QCOMPARE(columnTexts(fields, 1), (QStringList{"Первое", "Второе"}));
    QCOMPARE(columnTexts(fields, 2), (QStringList{"Строка", ""}));
    QCOMPARE(fields->item(1, 0)->data(Qt::UserRole).toInt(), 1);
    QCOMPARE(fields->item(1, 2)->data(Qt::UserRole).toInt(), 9);
}

void tst_FormsDlg::addFieldGoesLast()
{
    FormsDlg dialog;
    showForm(dialog, 0);
    ModalDriver driver;
    answerField(driver, "#c", "Третье", 5);
    clickButton(dialog, "fldAddBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(columnTexts(table(dialog, "fieldsWidget"), 0), (QStringList{"#A", "#B", "#C"}));
    QCOMPARE(m_app->value("SELECT typeof(FIELDS) FROM forms WHERE ID = 3").toString(),
             QString("blob"));
    const QByteArray stored = storedFields(3).toUtf8();
    QCOMPARE(stored, QJsonDocument::fromJson(stored).toJson(QJsonDocument::Indented));
    QCOMPARE(QJsonDocument::fromJson(stored).object()["fields"].toArray()[2].toObject(),
             (QJsonObject{{"tag", "#C"}, {"name", "Третье"}, {"type", 5}}));
}

void tst_FormsDlg::editFieldReplaces()
{
    FormsDlg dialog;
    showForm(dialog, 0);
    ModalDriver driver;
    driver.expect<FieldEditDlg>([](FieldEditDlg* field) {
        QCOMPARE(named<QLineEdit>(*field, "tagEdit")->text(), QString("#A"));
        named<QLineEdit>(*field, "nameEdit")->setText("Иначе");
        clickButton(*field, "buttonAccept");
    });
    doubleClickRow(table(dialog, "fieldsWidget"), 0);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(columnTexts(table(dialog, "fieldsWidget"), 1), (QStringList{"Иначе", "Второе"}));
    const QJsonArray fields =
        QJsonDocument::fromJson(storedFields(3).toUtf8()).object()["fields"].toArray();
    QCOMPARE(fields[0].toObject()["name"].toString(), QString("Иначе"));
    QCOMPARE(fields[1].toObject()["type"].toInt(), 9);
}

void tst_FormsDlg::cancelledEditFieldChangesNothing()
{
    FormsDlg dialog;
    showForm(dialog, 0);
    const QByteArray before = m_app->dump();
    ModalDriver driver;
    driver.expect<FieldEditDlg>([](FieldEditDlg* field) {
        named<QLineEdit>(*field, "nameEdit")->setText("Иначе");
        clickButton(*field, "buttonReject");
    });
    doubleClickRow(table(dialog, "fieldsWidget"), 0);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_app->dump(), before);
    QCOMPARE(columnTexts(table(dialog, "fieldsWidget"), 1), (QStringList{"Первое", "Второе"}));
}

void tst_FormsDlg::deleteFieldShiftsPositions()
{
    FormsDlg dialog;
    showForm(dialog, 0);
    QTableWidget* fields = table(dialog, "fieldsWidget");
    clickButton(dialog, "fldDelBtn"); // nothing is current
    QCOMPARE(fields->rowCount(), 2);
    clickRow(fields, 0);
    clickButton(dialog, "fldDelBtn");
    QCOMPARE(columnTexts(fields, 0), QStringList{"#B"});
    QCOMPARE(fields->item(0, 0)->data(Qt::UserRole).toInt(), 0);
    clickRow(fields, 0);
    clickButton(dialog, "fldDelBtn");
    QCOMPARE(fields->rowCount(), 0);
    QCOMPARE(QJsonDocument::fromJson(storedFields(3).toUtf8()).object(),
             (QJsonObject{{"fields", QJsonArray()}}));
}

void tst_FormsDlg::addFieldWithoutAForm()
{
    const QByteArray before = m_app->dump();
    FormsDlg dialog;
    dialog.show();
    LogCatcher log;
    ModalDriver driver;
    answerField(driver, "#C", "Третье", 0);
    clickButton(dialog, "fldAddBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(log.count("Unable to execute select fields query"), 1);
    QVERIFY(log.contains("syntax error"));
    QCOMPARE(m_app->dump(), before);
}

void tst_FormsDlg::fieldOperationsOnBrokenJson()
{
    FormsDlg dialog;
    showForm(dialog, 0);
    m_app->exec("UPDATE forms SET FIELDS = '[1, 2' WHERE ID = 3");
    const QByteArray before = m_app->dump();
    QTableWidget* fields = table(dialog, "fieldsWidget");
    LogCatcher log;
    ModalDriver driver;
    answerField(driver, "#C", "Третье", 0);
    clickButton(dialog, "fldAddBtn");
    QCOMPARE(log.count("Not an object!"), 1);
    doubleClickRow(fields, 0); // stops before its dialog
    QCOMPARE(log.count("Not an object!"), 2);
    clickButton(dialog, "fldDelBtn");
    QCOMPARE(log.count("not an object!"), 1);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_app->dump(), before);
    QCOMPARE(fields->rowCount(), 2);

    clickRow(table(dialog, "formsWidget"), 1);
    clickRow(table(dialog, "formsWidget"), 0);
    QCOMPARE(fields->rowCount(), 0);
    QCOMPARE(m_app->dump(), before);
}

void tst_FormsDlg::failedFieldWrites()
{
    FormsDlg dialog;
    showForm(dialog, 0);
    m_app->exec("CREATE TRIGGER refuse BEFORE UPDATE ON forms BEGIN "
                "SELECT RAISE(ABORT, 'refused'); END");
    const QByteArray before = m_app->dump();
    LogCatcher log;
    ModalDriver driver;
    answerField(driver, "#C", "Третье", 0);
    clickButton(dialog, "fldAddBtn");
    answerField(driver, "#A", "Иначе", 0);
    doubleClickRow(table(dialog, "fieldsWidget"), 0);
    clickButton(dialog, "fldDelBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(log.count("error update forms fields"), 3);
    QCOMPARE(log.count("refused"), 3);
    QCOMPARE(columnTexts(table(dialog, "fieldsWidget"), 1), (QStringList{"Первое", "Второе"}));
    QCOMPARE(m_app->dump(), before);
}

void tst_FormsDlg::readsBytesAsWellAsText()
{
    m_app->exec("UPDATE forms SET FIELDS = ? WHERE ID = 3", {QByteArray(twoFields)});
    FormsDlg dialog;
    showForm(dialog, 0);
    QCOMPARE(columnTexts(table(dialog, "fieldsWidget"), 1), (QStringList{"Первое", "Второе"}));
}

void tst_FormsDlg::addList()
{
    FormsDlg dialog;
    showTab(dialog, 1);
    clickButton(dialog, "addListBtn");
    clickButton(dialog, "addListBtn");
    QTableWidget* lists = table(dialog, "listsWidget");
    QCOMPARE(columnTexts(lists, 0),
             (QStringList{"Оценки", "Пустой", "Новый список", "Новый список"}));
    const int id = lists->item(3, 0)->data(Qt::UserRole).toInt();
    QCOMPARE(m_app->value("SELECT LIST_NAME FROM lists WHERE ID = ?", {id}).toString(),
             QString("Новый список"));
    QCOMPARE(m_app->value("SELECT LIST_ITEMS FROM lists WHERE ID = ?", {id}).toString(),
             QString("{\n\t\"items\":\n\t\t[\n\t\t]\n}"));
}

void tst_FormsDlg::editListInPlace()
{
    FormsDlg dialog;
    showTab(dialog, 1);
    typeIntoCell(table(dialog, "listsWidget"), 1, 0, "Не пустой");
    QCOMPARE(m_app->value("SELECT LIST_NAME FROM lists WHERE ID = 8").toString(),
             QString("Не пустой"));
    typeIntoCell(table(dialog, "listsWidget"), 1, 0, "");
    QCOMPARE(m_app->value("SELECT LIST_NAME FROM lists WHERE ID = 8").toString(), QString(""));
    QCOMPARE(m_app->value("SELECT LIST_NAME FROM lists WHERE ID = 7").toString(),
             QString("Оценки"));
    // A new list next to a current one renames nothing.
    clickButton(dialog, "addListBtn");
    QCOMPARE(m_app->value("SELECT LIST_NAME FROM lists WHERE ID = 8").toString(), QString(""));
}

void tst_FormsDlg::deleteList()
{
    FormsDlg dialog;
    showTab(dialog, 1);
    QTableWidget* lists = table(dialog, "listsWidget");
    clickRow(lists, 0);
    QCOMPARE(table(dialog, "itemsWidget")->rowCount(), 3);
    ModalDriver driver;
    driver.expectMessage("Zelvora", "Удалить список?", "Нет");
    clickButton(dialog, "delListBtn");
    QCOMPARE(lists->rowCount(), 2);
    driver.expectMessage("Zelvora", "Удалить список?", "Да");
    clickButton(dialog, "delListBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(columnTexts(lists, 0), QStringList{"Пустой"});
    QCOMPARE(lists->currentRow(), 0);
    QCOMPARE(table(dialog, "itemsWidget")->rowCount(), 0);
    QCOMPARE(m_app->value("SELECT group_concat(ID) FROM lists").toString(), QString("8"));
}

void tst_FormsDlg::failedListWrites()
{
    FormsDlg dialog;
    showList(dialog, 0);
    m_app->exec("ALTER TABLE lists RENAME TO gone");
    LogCatcher log;
    ModalDriver driver;
    clickButton(dialog, "addListBtn");
    QCOMPARE(log.count("error insert into lists"), 1);
    driver.expectMessage("Zelvora", "Удалить список?", "Да");
    clickButton(dialog, "delListBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(log.count("error delete from lists "), 1);
    typeIntoCell(table(dialog, "listsWidget"), 0, 0, "Иначе");
    QCOMPARE(log.count("error update into forms "), 1);
    clickRow(table(dialog, "listsWidget"), 1);
    QCOMPARE(log.count("Unable to execute select query"), 1);
    QCOMPARE(table(dialog, "itemsWidget")->rowCount(), 3);
    QCOMPARE(table(dialog, "listsWidget")->rowCount(), 2);
}

void tst_FormsDlg::addItemTwice()
{
    FormsDlg dialog;
    showList(dialog, 1);
    clickButton(dialog, "listItemAddBtn");
    clickButton(dialog, "listItemAddBtn");
    QCOMPARE(columnTexts(table(dialog, "itemsWidget"), 0),
             (QStringList{"Новый элемент", "Новый элемент"}));
    const QByteArray stored =
        m_app->value("SELECT LIST_ITEMS FROM lists WHERE ID = 8").toByteArray();
    QCOMPARE(QJsonDocument::fromJson(stored).object(),
             (QJsonObject{{"items", QJsonArray{"Новый элемент", "Новый элемент"}}}));
    QCOMPARE(stored, QJsonDocument::fromJson(stored).toJson());
    QCOMPARE(m_app->value("SELECT typeof(LIST_ITEMS) FROM lists WHERE ID = 8").toString(),
             QString("blob"));
}

void tst_FormsDlg::editItemInPlace()
{
    FormsDlg dialog;
    showList(dialog, 0);
    typeIntoCell(table(dialog, "itemsWidget"), 2, 0, "удовлетворительно");
    QCOMPARE(columnTexts(table(dialog, "itemsWidget"), 0),
             (QStringList{"отлично", "хорошо", "удовлетворительно"}));
    typeIntoCell(table(dialog, "itemsWidget"), 0, 0, "");
    const QByteArray stored =
        m_app->value("SELECT LIST_ITEMS FROM lists WHERE ID = 7").toByteArray();
    QCOMPARE(QJsonDocument::fromJson(stored).object()["items"].toArray(),
             (QJsonArray{"", "хорошо", "удовлетворительно"}));
}

void tst_FormsDlg::deleteItemTwice()
{
    FormsDlg dialog;
    showTab(dialog, 1);
    clickButton(dialog, "listItemDelBtn"); // nothing is current
    clickRow(table(dialog, "listsWidget"), 0);
    QTableWidget* items = table(dialog, "itemsWidget");
    clickRow(items, 1);
    clickButton(dialog, "listItemDelBtn");
    QCOMPARE(columnTexts(items, 0), (QStringList{"отлично", "хорошо"}));
    QCOMPARE(items->item(1, 0)->data(Qt::UserRole).toInt(), 1);
    clickButton(dialog, "listItemDelBtn");
    QCOMPARE(columnTexts(items, 0), QStringList{"отлично"});
    const QByteArray stored =
        m_app->value("SELECT LIST_ITEMS FROM lists WHERE ID = 7").toByteArray();
    QCOMPARE(QJsonDocument::fromJson(stored).object()["items"].toArray(), QJsonArray{"отлично"});
}

void tst_FormsDlg::itemOperationsOnBrokenJson()
{
    FormsDlg dialog;
    showList(dialog, 0);
    clickRow(table(dialog, "itemsWidget"), 0);
    m_app->exec("UPDATE lists SET LIST_ITEMS = 'x' WHERE ID = 7");
    const QByteArray before = m_app->dump();
    LogCatcher log;
    clickButton(dialog, "listItemAddBtn");
    QCOMPARE(log.count("Not an object!"), 1);
    typeIntoCell(table(dialog, "itemsWidget"), 0, 0, "иначе");
    QCOMPARE(log.count("Not an object!"), 2);
    clickButton(dialog, "listItemDelBtn");
    QCOMPARE(log.count("not an object!"), 1);
    QCOMPARE(m_app->dump(), before);
}

void tst_FormsDlg::failedItemSelects()
{
    FormsDlg dialog;
    showList(dialog, 0);
    clickRow(table(dialog, "itemsWidget"), 0);
    m_app->exec("ALTER TABLE lists RENAME TO gone");
    LogCatcher log;
    clickButton(dialog, "listItemAddBtn");
    QCOMPARE(log.count("Unable to execute select items query"), 1);
    typeIntoCell(table(dialog, "itemsWidget"), 0, 0, "иначе");
    QCOMPARE(log.count("Unable to execute select lists query"), 1);
    clickButton(dialog, "listItemDelBtn");
    QCOMPARE(log.count("Unable to execute select fields query"), 1);
    QCOMPARE(log.count("no such table: lists"), 3);
}

void tst_FormsDlg::failedItemWrites()
{
    FormsDlg dialog;
    showList(dialog, 0);
    clickRow(table(dialog, "itemsWidget"), 0);
    m_app->exec("CREATE TRIGGER refuse BEFORE UPDATE ON lists BEGIN "
                "SELECT RAISE(ABORT, 'refused'); END");
    LogCatcher log;
    clickButton(dialog, "listItemAddBtn");
    QCOMPARE(log.count("error update lists fields"), 1);
    typeIntoCell(table(dialog, "itemsWidget"), 0, 0, "иначе");
    QCOMPARE(log.count("error update forms lists"), 1);
    clickButton(dialog, "listItemDelBtn");
    QCOMPARE(log.count("error update list items"), 1);
    QCOMPARE(log.count("refused"), 3);
    QCOMPARE(table(dialog, "itemsWidget")->rowCount(), 3);
}

void tst_FormsDlg::rowsReachedByTabAreNotPicked()
{
    FormsDlg dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    const QByteArray before = m_app->dump();
    ModalDriver nothingExpected;
    QTableWidget* forms = table(dialog, "formsWidget");
    QVERIFY(tabTo(forms));
    QCOMPARE(forms->currentRow(), -1);
    clickButton(dialog, "delFrmBtn");

    clickRow(forms, 0);
    QTableWidget* fields = table(dialog, "fieldsWidget");
    QVERIFY(tabTo(fields));
    QCOMPARE(fields->currentRow(), -1);
    clickButton(dialog, "fldDelBtn");

    showTab(dialog, 1);
    QTableWidget* lists = table(dialog, "listsWidget");
    QVERIFY(tabTo(lists));
    QCOMPARE(lists->currentRow(), -1);
    clickButton(dialog, "delListBtn");

    clickRow(lists, 0);
    QTableWidget* items = table(dialog, "itemsWidget");
    QVERIFY(tabTo(items));
    QCOMPARE(items->currentRow(), -1);
    clickButton(dialog, "listItemDelBtn");
    clickRow(items, 1);
    clickRow(items, 1, Qt::ControlModifier); // taken out of the selection again
    QCOMPARE(items->currentRow(), -1);
    clickButton(dialog, "listItemDelBtn");

    QVERIFY2(nothingExpected.finished(), nothingExpected.failures());
    QCOMPARE(m_app->dump(), before);
}

void tst_FormsDlg::newRowsAreScrolledTo()
{
    for (int i = 0; i < 40; ++i) {
        m_app->exec("INSERT INTO forms (FORM_NAME, FORM_FULLNAME, FIELDS) VALUES ('Ф', '', '')");
        m_app->exec("INSERT INTO lists (LIST_NAME, LIST_ITEMS) VALUES ('С', '')");
    }
    const auto isLastInSight = [](const QTableWidget* rows) {
        const QRect last = rows->visualItemRect(rows->item(rows->rowCount() - 1, 0));
        return rows->viewport()->rect().contains(last);
    };
    FormsDlg dialog;
    dialog.show();
    QVERIFY(!isLastInSight(table(dialog, "formsWidget")));
    ModalDriver driver;
    answerForm(driver, "Новая", "Новая форма");
    clickButton(dialog, "addFrmBtn");
    QVERIFY2(driver.finished(), driver.failures());
    QVERIFY(isLastInSight(table(dialog, "formsWidget")));

    showTab(dialog, 1);
    QVERIFY(!isLastInSight(table(dialog, "listsWidget")));
    clickButton(dialog, "addListBtn");
    QVERIFY(isLastInSight(table(dialog, "listsWidget")));
}

void tst_FormsDlg::enterAfterARenameLeavesTheWindowOpen()
{
    FormsDlg dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    showTab(dialog, 1);
    clickRow(table(dialog, "listsWidget"), 0);
    for (const char* name : {"itemsWidget", "listsWidget"}) {
        QTableWidget* rows = table(dialog, name);
        typeIntoCell(rows, 0, 0, "иначе");
        QCOMPARE(QApplication::focusWidget(), rows);
        QCOMPARE(rows->currentRow(), 0);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Enter);
        QVERIFY(dialog.isVisible());
    }
    QCOMPARE(columnTexts(table(dialog, "itemsWidget"), 0),
             (QStringList{"иначе", "хорошо", "хорошо"}));
    QCOMPARE(m_app->value("SELECT LIST_NAME FROM lists WHERE ID = 7").toString(), QString("иначе"));
    // On a button Enter still presses it.
    named<QPushButton>(dialog, "buttonAccept")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!dialog.isVisible());
}

void tst_FormsDlg::shownItemsOfAnotherListAreNotCurrent()
{
    m_app->exec("INSERT INTO lists (LIST_NAME, LIST_ITEMS) VALUES "
                "('Да/Нет', '{\"items\":[\"а\",\"б\",\"в\"]}')");
    FormsDlg dialog;
    showList(dialog, 0);
    QTableWidget* items = table(dialog, "itemsWidget");
    clickRow(items, 1);
    clickRow(table(dialog, "listsWidget"), 2); // with as many items
    QCOMPARE(columnTexts(items, 0), (QStringList{"а", "б", "в"}));
    QCOMPARE(items->currentRow(), -1);
    clickButton(dialog, "listItemDelBtn");
    QCOMPARE(items->rowCount(), 3);
}

void tst_FormsDlg::cutCellsHaveTips()
{
    m_app->exec("UPDATE forms SET FIELDS = ? WHERE ID = 3",
                {R"({"fields":[{"tag":"#A","name":"Предмет","type":0},
                    {"tag":"#QUALIFICATION_LEVEL","name":"Квалификационная<b>категория","type":0}
                    ]})"});
    FormsDlg dialog;
    showForm(dialog, 0);
    QTableWidget* fields = table(dialog, "fieldsWidget");
    const auto tip = [&](int row, int column) {
        const QPoint centre = fields->visualItemRect(fields->item(row, column)).center();
        return toolTipAt(fields->viewport(), centre);
    };
    QCOMPARE(tip(0, 0), QString());
    QCOMPARE(tip(0, 2), QString());
    QCOMPARE(tip(1, 0), QString("#QUALIFICATION_LEVEL"));
    QVERIFY(tip(1, 1).contains("Квалификационная&lt;b&gt;категория")); // to the letter
    fields->setColumnWidth(0, 300);
    QCOMPARE(tip(1, 0), QString());
}

void tst_FormsDlg::elidedHeadingsHaveTips()
{
    FormsDlg dialog;
    dialog.show();
    QHeaderView* header = table(dialog, "formsWidget")->horizontalHeader();
    const auto tip = [&](int section) {
        const int left = header->sectionViewportPosition(section);
        return toolTipAt(header->viewport(), QPoint(left + 5, header->height() / 2));
    };
    QCOMPARE(header->textElideMode(), Qt::ElideRight);
    header->resizeSection(0, 250);
    QCOMPARE(tip(0), QString());
    header->resizeSection(0, 50);
    QCOMPARE(tip(0), QString("Тип документа"));
    QCOMPARE(tip(1), QString());
}

void tst_FormsDlg::tabsAreIndependent()
{
    FormsDlg dialog;
    showForm(dialog, 0);
    named<QTabWidget>(dialog, "mainTab")->setCurrentIndex(1);
    clickRow(table(dialog, "listsWidget"), 0);
    QCOMPARE(table(dialog, "fieldsWidget")->rowCount(), 2);
    QCOMPARE(table(dialog, "formsWidget")->currentRow(), 0);
    named<QTabWidget>(dialog, "mainTab")->setCurrentIndex(0);
    clickRow(table(dialog, "formsWidget"), 1);
    QCOMPARE(table(dialog, "itemsWidget")->rowCount(), 3);
    QCOMPARE(table(dialog, "listsWidget")->currentRow(), 0);
}

void tst_FormsDlg::workedExampleThroughTheDialogs()
{
    m_app->exec("DELETE FROM forms");
    m_app->exec("DELETE FROM lists WHERE ID = 8");
    FormsDlg dialog;
    showTab(dialog, 1);
    QTableWidget* items = table(dialog, "itemsWidget");
    clickRow(table(dialog, "listsWidget"), 0);
    typeIntoCell(items, 2, 0, "удовлетворительно");

    showTab(dialog, 0);
    ModalDriver driver;
    answerForm(driver, "Аттестат", "Аттестат об образовании");
    clickButton(dialog, "addFrmBtn");
    clickRow(table(dialog, "formsWidget"), 0);

    answerField(driver, "#SPECIALTY", "Специальность", 0);
    clickButton(dialog, "fldAddBtn");
    answerField(driver, "#QUALIFICATION", "Квалификация", 1, [](FieldEditDlg* field) {
        auto* lists = named<QComboBox>(*field, "listCombo");
        lists->setCurrentIndex(lists->findText("Оценки"));
    });
    clickButton(dialog, "fldAddBtn");
    answerField(driver, "#PROTOCOL_DATE", "Дата протокола", 3);
    clickButton(dialog, "fldAddBtn");
    driver.expect<FieldEditDlg>([](FieldEditDlg* field) {
        named<QLineEdit>(*field, "tagEdit")->setText("#GRADES");
        named<QLineEdit>(*field, "nameEdit")->setText("Оценки");
        named<QComboBox>(*field, "typeCombo")->setCurrentIndex(4);
        clickButton(*field, "buttonAddTableRow");
        clickButton(*field, "buttonAddTableRow");
        QTableWidget* columns = table(*field, "tableFieldsWidget");
        typeIntoCell(columns, 0, 0, "Предмет");
        typeIntoCell(columns, 1, 0, "Оценка");
        qobject_cast<QComboBox*>(columns->cellWidget(1, 1))->setCurrentText("Список");
        QTest::mouseClick(columns->cellWidget(1, 2), Qt::LeftButton);
        clickButton(*field, "buttonAccept");
    });
    driver.expect<TableColumFormDialog>([](TableColumFormDialog* settings) {
        named<QSpinBox>(*settings, "spinBoxWidthInEditor")->setValue(60);
        named<QComboBox>(*settings, "comboBoxList")->setCurrentIndex(1);
        clickButton(*settings, "buttonAccept");
    });
    clickButton(dialog, "fldAddBtn");
    QVERIFY2(driver.finished(), driver.failures());

    const ProcessResult check = runPython(R"(
import json, sqlite3, sys
db = sqlite3.connect(sys.argv[1])
fields = json.loads(bytes(db.execute("SELECT FIELDS FROM forms").fetchone()[0]))
items = json.loads(bytes(db.execute("SELECT LIST_ITEMS FROM lists WHERE ID = 7").fetchone()[0]))
assert fields == {"fields": [
    {"tag": "#SPECIALTY", "name": "Специальность", "type": 0},
    {"tag": "#QUALIFICATION", "name": "Квалификация", "type": 1, "list": 7},
    {"tag": "#PROTOCOL_DATE", "name": "Дата протокола", "type": 3, "format": "dd.MM.yyyy"},
    {"tag": "#GRADES", "name": "Оценки", "type": 4, "content": [
        {"name": "Предмет", "typeID": "0"},
        {"name": "Оценка", "typeID": "1", "edtColumnW": "60", "listID": "7"}]}]}, fields
assert items == {"items": ["отлично", "хорошо", "удовлетворительно"]}, items
)",
                                          {m_app->path("docs.db")});
    QVERIFY2(check.exitCode == 0, check.err);
}

void tst_FormsDlg::doubleClickDeletesOneField()
{
    FormsDlg dialog;
    showForm(dialog, 0);
    QTableWidget* fields = table(dialog, "fieldsWidget");
    clickRow(fields, 0);
    doubleClickButton(dialog, "fldDelBtn");
    QCOMPARE(columnTexts(fields, 0), QStringList{"#B"});
    clickButton(dialog, "fldDelBtn");
    QCOMPARE(fields->rowCount(), 0);
}

void tst_FormsDlg::doubleClickDeletesOneItem()
{
    FormsDlg dialog;
    showList(dialog, 0);
    QTableWidget* items = table(dialog, "itemsWidget");
    clickRow(items, 0);
    doubleClickButton(dialog, "listItemDelBtn");
    QCOMPARE(items->rowCount(), 2);
    clickButton(dialog, "listItemDelBtn");
    QCOMPARE(items->rowCount(), 1);
}

void tst_FormsDlg::keysOnAClosedText()
{
    FormsDlg dialog;
    showList(dialog, 0);
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTableWidget* items = table(dialog, "itemsWidget");
    clickRow(items, 0);
    pressKey(Qt::Key_C, Qt::ControlModifier);
    pressKey(Qt::Key_Delete);
    clickRow(items, 2);
    pressKey(Qt::Key_V, Qt::ControlModifier);
    const QByteArray stored =
        m_app->value("SELECT LIST_ITEMS FROM lists WHERE ID = 7").toByteArray();
    QCOMPARE(QJsonDocument::fromJson(stored).object()["items"].toArray(),
             (QJsonArray{"", "хорошо", "отлично"}));

    clickRow(table(dialog, "listsWidget"), 1);
    pressKey(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(m_app->value("SELECT LIST_NAME FROM lists WHERE ID = 8").toString(),
             QString("отлично"));
    // What is edited in a window of its own takes none of these keys.
    showForm(dialog, 0);
    named<QTabWidget>(dialog, "mainTab")->setCurrentIndex(0);
    const QByteArray before = m_app->dump();
    clickRow(table(dialog, "formsWidget"), 0);
    pressKey(Qt::Key_Delete);
    pressKey(Qt::Key_V, Qt::ControlModifier);
    clickRow(table(dialog, "fieldsWidget"), 0);
    pressKey(Qt::Key_Delete);
    QCOMPARE(columnTexts(table(dialog, "fieldsWidget"), 0), QStringList({"#A", "#B"}));
    QCOMPARE(m_app->dump(), before);
}

QTEST_MAIN(tst_FormsDlg)
#include "tst_FormsDlg.moc"
