#include <QtTest>

#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QLineEdit>
#include <QSpinBox>

#include "DocumentFixture.h"
#include "documents/DocDialog.h"
#include "documents/DocumentContent.h"
#include "documents/NewDocDlg.h"
#include "documents/ZelvoraTableButton.h"
#include "documents/ZelvoraTextButton.h"
#include "forms/FormDefinitions.h"
#include "support/LogCatcher.h"

namespace {

const QDate initialDate(2000, 1, 1); // what a date edit shows that was never set

const QJsonArray gradeColumns = {
    tableColumn("Предмет", "0"),
    tableColumn("Оценка", "1", {{"edtColumnW", "60"}, {"listID", "7"}, {"ownKey", "x"}})};

QTableWidget* tableOf(const DocDialog& dialog)
{
    return named<QTableWidget>(&dialog, "contentTable");
}

/// Fills a dialog with a content and takes back what a save would store.
QJsonObject saved(const QJsonObject& content)
{
    DocDialog dialog;
    dialog.setContent(content);
    dialog.onDone();
    return dialog.content();
}

/// What a save would store of one entry.
QJsonObject savedEntry(const QJsonObject& entry)
{
    return saved({{"#TAG", entry}})["#TAG"].toObject();
}

QJsonObject entryOf(const DocDialog& dialog, const QString& tag)
{
    return dialog.content()[tag].toObject();
}

/// Entries of the types 0, 1, 2, 4 and 5, each tagged by its type, hold the empty value of it.
void compareWithEmptyValues(const QJsonObject& content)
{
    const auto value = [&](const QString& tag) -> QJsonValue {
        return content[tag].toObject()["value"];
    };
    QCOMPARE(value("#0"), QJsonValue(""));
    QCOMPARE(value("#1"), QJsonValue(""));
    QCOMPARE(value("#2"), QJsonValue(0));
    QCOMPARE(value("#4"), QJsonValue(QJsonArray()));
    QCOMPARE(value("#5"), QJsonValue(""));
}

} // namespace

/// The content of a document: built from a form, shown in the table, read back.
class tst_DocumentContent : public QObject
{
    Q_OBJECT

private slots:
    void builtFromAForm();
    void dateFormatOfTheFieldHolds();
    void sameTagTwice();
    void emptyForm();
    void fieldsWithMissingKeys();
    void brokenFormLeavesAll_data();
    void brokenFormLeavesAll();
    void failedSelectLeavesAll();

    void tableLooks();
    void rowsInOrderOfTheTags();
    void typeChangeTakesTheIndex();
    void captionCarriesTheTag();
    void rebuiltWithoutLeftovers();
    void longValuesGetTallerRows();

    void stringEntry();
    void unknownTypeIsAString();
    void listEntry();
    void listOffersTheItemsOfNow();
    void textOutsideTheListIsLost();
    void freeTextIsStored();
    void newListFieldStoresEmptyText();
    void listThatIsGone_data();
    void listThatIsGone();
    void unreadableListShowsAndKeepsItsValue();
    void editorOfAnotherTypeIsNotRead();
    void counterEntry_data();
    void counterEntry();
    void dateEntry();
    void dateInAnotherForm();
    void tableEntry();
    void textEntry();
    void wrongValueTypesReadAsEmpty();
    void importedEntriesWithoutKeys();
    void apostropheAndMarkupStay();
    void editedCellsAreStored();

    void entriesWithoutARowStay();
    void rowNeverAddsAnEntry();
    void contentStaysAsItWasUntilTheSave();
    void formChangesDoNotReachADocument();
    void wheelOverTheTableChangesNothing();

    void typedValuesReplaceTheOnesReachedByTab();
    void enterGoesOnAndSavesNothing();
    void letterCaseOfAListStays_data();
    void letterCaseOfAListStays();
    void listOffersWhateverTheCase();
    void enterTakesAnOfferAndGoesOn();
    void longListValueIsSeenFromItsBeginning();
};

void tst_DocumentContent::builtFromAForm()
{
    TempApplication app;
    const int form = addForm(app, "Свидетельство",
                             {formField("#SPECIALTY", "Специальность", 0, {{"list", 3}}),
                              formField("#QUALIFICATION", "Квалификация", 1, {{"list", 7}}),
                              formField("#PROTOCOL_DATE", "Дата протокола", 3,
                                        {{"format", "dd.MM.yyyy"}, {"content", QJsonArray()}}),
                              formField("#HOURS", "Часы", 2), formField("#NOTE", "Отметки", 5),
                              formField("#GRADES", "Оценки", 4, {{"content", gradeColumns}})});
    QJsonObject content;
    QVERIFY(buildContent(form, &content));
    const QJsonObject expected = {
        {"#SPECIALTY", QJsonObject{{"name", "Специальность"}, {"type", 0}, {"value", ""}}},
        {"#QUALIFICATION", QJsonObject{{"name", "Квалификация"}, {"type", 1}, {"list", 7}}},
        {"#PROTOCOL_DATE", QJsonObject{{"name", "Дата протокола"},
                                       {"type", 3},
                                       {"format", "dd.MM.yyyy"},
                                       {"value", QDate::currentDate().toString("dd.MM.yyyy")}}},
        {"#HOURS", QJsonObject{{"name", "Часы"}, {"type", 2}, {"value", ""}}},
        {"#NOTE", QJsonObject{{"name", "Отметки"}, {"type", 5}, {"value", ""}}},
        {"#GRADES", QJsonObject{{"name", "Оценки"}, {"type", 4}, {"columns", gradeColumns}}}};
    QCOMPARE(content, expected);
}

void tst_DocumentContent::dateFormatOfTheFieldHolds()
{
    TempApplication app;
    const int form = addForm(app, "Ф", {formField("#D", "Д", 3, {{"format", "yyyy/MM/dd"}})});
    QJsonObject content;
    QVERIFY(buildContent(form, &content));
    QCOMPARE(content["#D"].toObject()["value"].toString(),
             QDate::currentDate().toString("yyyy/MM/dd"));
}

void tst_DocumentContent::sameTagTwice()
{
    TempApplication app;
    const int form = addForm(app, "Ф",
                             {formField("#A", "Первое", 1, {{"list", 1}}), formField("#B", "Б", 0),
                              formField("#A", "Второе", 2)});
    DocDialog dialog;
    dialog.setDocType(form);
    dialog.onDocTypeCgange(); // the only form is current from the start
    QCOMPARE(tableOf(dialog)->rowCount(), 2);
    QCOMPARE(tableOf(dialog)->item(0, 0)->text(), QString("Второе"));
    QVERIFY(editorOfTag<QSpinBox>(&dialog, "#A"));
    QVERIFY(!entryOf(dialog, "#A").contains("list"));
}

void tst_DocumentContent::emptyForm()
{
    TempApplication app;
    const int empty =
        app.exec("INSERT INTO forms (FORM_NAME, FIELDS) VALUES ('Пустая', ?)", {emptyFormFields})
            .toInt();
    const int full = addForm(app, "Полная", {formField("#A", "А", 0)});
    docTypeNames[empty] = "Пустая";
    DocDialog dialog;
    dialog.setDocType(full);
    QCOMPARE(tableOf(dialog)->rowCount(), 1);
    dialog.setDocType(empty);
    QCOMPARE(tableOf(dialog)->rowCount(), 0);
    dialog.onDone();
    QCOMPARE(dialog.content(), QJsonObject());
}

void tst_DocumentContent::fieldsWithMissingKeys()
{
    TempApplication app;
    const int form = addForm(app, "Ф",
                             {QJsonObject{{"tag", "#NOTYPE"}, {"name", "Н"}}, QJsonValue(5),
                              QJsonObject{{"tag", "#LIST"}, {"type", 1}},
                              QJsonObject{{"tag", "#TABLE"}, {"type", 4}}});
    QJsonObject content;
    QVERIFY(buildContent(form, &content));
    QCOMPARE(content["#NOTYPE"].toObject(),
             QJsonObject({{"name", "Н"}, {"type", 0}, {"value", ""}}));
    DocDialog dialog;
    dialog.setContent(content);
    dialog.onDone();
    QCOMPARE(entryOf(dialog, "#LIST")["value"], QJsonValue(""));
    QCOMPARE(entryOf(dialog, "#TABLE")["value"], QJsonValue(QJsonArray()));
}

void tst_DocumentContent::brokenFormLeavesAll_data()
{
    QTest::addColumn<QVariant>("fields");
    QTest::newRow("no JSON") << QVariant("{ broken");
    QTest::newRow("array") << QVariant("[1, 2]");
    QTest::newRow("null") << QVariant();
    QTest::newRow("empty") << QVariant("");
}

void tst_DocumentContent::brokenFormLeavesAll()
{
    QFETCH(QVariant, fields);
    TempApplication app;
    const int good = addForm(app, "Хорошая", {formField("#A", "А", 0)});
    const int broken =
        app.exec("INSERT INTO forms (FORM_NAME, FIELDS) VALUES ('Битая', ?)", {fields}).toInt();
    docTypeNames[broken] = "Битая";
    docTypeNames[4711] = "Исчезла"; // known, but its row is gone
    DocDialog dialog;
    dialog.setDocType(good);
    dialog.setContent({{"#A", QJsonObject{{"name", "А"}, {"type", 0}, {"value", "ценно"}}}});
    const QJsonObject before = dialog.content();

    LogCatcher log;
    dialog.setDocType(broken);
    QCOMPARE(log.messages(), QStringList("Not an object!"));
    dialog.setDocType(4711);
    QCOMPARE(log.messages(), QStringList({"Not an object!", "Not an object!"}));
    QCOMPARE(dialog.content(), before);
    QCOMPARE(tableOf(dialog)->item(0, 1)->text(), QString("ценно"));
}

void tst_DocumentContent::failedSelectLeavesAll()
{
    TempApplication app;
    const int first = addForm(app, "Первая", {formField("#A", "А", 0)});
    const int second = addForm(app, "Вторая", {formField("#B", "Б", 0)});
    DocDialog dialog;
    dialog.setDocType(second);
    const QJsonObject before = dialog.content();
    app.exec("DROP TABLE forms");
    LogCatcher log;
    dialog.setDocType(first);
    QVERIFY(log.contains("Unable to select from forms query"));
    QVERIFY(
        log.contains(QString("SELECT FIELDS, FORM_NAME FROM forms WHERE ID = %1 ;").arg(first)));
    QCOMPARE(dialog.content(), before);
    QCOMPARE(rowOfTag(tableOf(dialog), "#B"), 0);
}

void tst_DocumentContent::tableLooks()
{
    TempApplication app;
    DocDialog dialog;
    dialog.show();
    const QTableWidget* table = tableOf(dialog);
    QCOMPARE(table->columnCount(), 2);
    QVERIFY(table->horizontalHeader()->isHidden());
    QVERIFY(table->verticalHeader()->isHidden());
    QVERIFY(table->showGrid());
    QCOMPARE(table->selectionMode(), QAbstractItemView::SingleSelection);
    QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
    QCOMPARE(table->columnWidth(0), 224);
    QCOMPARE(table->columnWidth(1), table->viewport()->width() - 224);
}

void tst_DocumentContent::rowsInOrderOfTheTags()
{
    TempApplication app;
    const int form = addForm(app, "Ф",
                             {formField("#Z", "Я", 0), formField("#M", "М", 2),
                              formField("#A", "А", 5), formField("#AB", "Б", 0)});
    DocDialog dialog;
    dialog.setDocType(form);
    dialog.onDocTypeCgange();
    QStringList tags;
    for (int row = 0; row < tableOf(dialog)->rowCount(); ++row) {
        tags << tableOf(dialog)->item(row, 0)->data(Qt::UserRole).toString();
    }
    QCOMPARE(tags, QStringList({"#A", "#AB", "#M", "#Z"}));
}

void tst_DocumentContent::typeChangeTakesTheIndex()
{
    TempApplication app;
    addForm(app, "Первая", {formField("#A", "А", 0)});
    const int second = addForm(app, "Вторая", {formField("#B", "Б", 0), formField("#C", "В", 0)});
    DocDialog document;
    document.setDocType(second);
    NewDocDlg created;
    QComboBox* types = named<QComboBox>(&created, "docTypeCmb");
    types->setCurrentIndex(types->findData(second));
    for (QDialog* dialog : {static_cast<QDialog*>(&document), static_cast<QDialog*>(&created)}) {
        auto* table = named<QTableWidget>(dialog, "contentTable");
        table->item(0, 1)->setText("введено");
        // The form is the one that is chosen, whatever index comes.
        QVERIFY(QMetaObject::invokeMethod(dialog, "onDocTypeCgange", Q_ARG(int, 0)));
        QCOMPARE(table->rowCount(), 2);
        QCOMPARE(table->item(0, 1)->text(), QString());
    }
}

void tst_DocumentContent::captionCarriesTheTag()
{
    TempApplication app;
    DocDialog dialog;
    dialog.setContent({{"#A", QJsonObject{{"name", "Надпись"}, {"type", 0}}}});
    const QTableWidgetItem* item = tableOf(dialog)->item(0, 0);
    QCOMPARE(item->text(), QString("Надпись"));
    QCOMPARE(item->data(Qt::UserRole).toString(), QString("#A"));
    QVERIFY(!(item->flags() & Qt::ItemIsEditable));
    QVERIFY(tableOf(dialog)->item(0, 1)->flags() & Qt::ItemIsEditable);
}

void tst_DocumentContent::rebuiltWithoutLeftovers()
{
    TempApplication app;
    DocDialog dialog;
    dialog.setContent({{"#A", QJsonObject{{"type", 2}, {"value", 5}}},
                       {"#B", QJsonObject{{"type", 5}, {"value", "b"}}}});
    dialog.setContent({{"#A", QJsonObject{{"type", 0}, {"value", "plain"}}}});
    QCOMPARE(tableOf(dialog)->rowCount(), 1);
    QVERIFY(!tableOf(dialog)->cellWidget(0, 1));
    QCOMPARE(tableOf(dialog)->item(0, 1)->text(), QString("plain"));
}

void tst_DocumentContent::longValuesGetTallerRows()
{
    TempApplication app;
    DocDialog dialog;
    dialog.setContent({{"#A", QJsonObject{{"type", 0}, {"value", "short"}}},
                       {"#B", QJsonObject{{"type", 0}, {"value", QString("слово ").repeated(60)}}},
                       {"#C", QJsonObject{{"type", 2}, {"value", 1}}}});
    dialog.show();
    const QTableWidget* table = tableOf(dialog);
    QVERIFY(table->rowHeight(1) > table->rowHeight(0));
    QVERIFY(table->rowHeight(2) >= table->cellWidget(2, 1)->minimumSizeHint().height());
}

void tst_DocumentContent::stringEntry()
{
    TempApplication app;
    const QJsonObject entry = {{"name", "С"}, {"type", 0}, {"value", "строка"}, {"list", 9}};
    QCOMPARE(savedEntry(entry), entry);
}

void tst_DocumentContent::unknownTypeIsAString()
{
    TempApplication app;
    for (int type : {6, 99, -1}) {
        const QJsonObject entry = {{"name", "С"}, {"type", type}, {"value", "строка"}};
        QCOMPARE(savedEntry(entry), entry);
    }
}

void tst_DocumentContent::listEntry()
{
    TempApplication app;
    const int list = addList(app, {"отлично", "хорошо", "", "хорошо"});
    const QJsonObject entry = {
        {"name", "Оценка"}, {"type", 1}, {"list", list}, {"value", "хорошо"}};
    DocDialog dialog;
    dialog.setContent({{"#A", entry}});
    auto* combo = editorOfTag<QComboBox>(&dialog, "#A");
    QVERIFY(combo && combo->isEditable());
    QCOMPARE(combo->styleSheet(), QString("border: none"));
    QCOMPARE(combo->count(), 4);
    QCOMPARE(combo->itemText(0), QString("отлично"));
    QCOMPARE(combo->itemText(2), QString());
    QCOMPARE(combo->currentText(), QString("хорошо"));
    const QTableWidgetItem* item = tableOf(dialog)->item(0, 1);
    QCOMPARE(item->text(), QString());
    QCOMPARE(item->data(Qt::UserRole), QVariant(list));
    QCOMPARE(savedEntry(entry), entry);
}

void tst_DocumentContent::listOffersTheItemsOfNow()
{
    TempApplication app;
    const int list = addList(app, {"отлично"});
    const QJsonObject entry = {{"type", 1}, {"list", list}, {"value", "отлично"}};
    app.exec("UPDATE lists SET LIST_ITEMS = CAST(? AS BLOB)",
             {QString("{\"items\": [\"пять\", \"отлично\"]}")});
    DocDialog dialog;
    dialog.setContent({{"#A", entry}});
    auto* combo = editorOfTag<QComboBox>(&dialog, "#A");
    QCOMPARE(combo->itemText(0), QString("пять"));
    QCOMPARE(combo->currentText(), QString("отлично"));
}

void tst_DocumentContent::textOutsideTheListIsLost()
{
    TempApplication app;
    const int list = addList(app, {"отлично", "хорошо"});
    const QJsonObject entry = {{"type", 1}, {"list", list}, {"value", "Отлично"}};
    DocDialog dialog;
    dialog.setContent({{"#A", entry}});
    QCOMPARE(editorOfTag<QComboBox>(&dialog, "#A")->currentText(), QString());
    QCOMPARE(editorOfTag<QComboBox>(&dialog, "#A")->currentIndex(), -1);
    QCOMPARE(savedEntry(entry)["value"], QJsonValue(""));
}

void tst_DocumentContent::freeTextIsStored()
{
    TempApplication app;
    const int list = addList(app, {"good"});
    DocDialog dialog;
    dialog.setContent({{"#A", QJsonObject{{"type", 1}, {"list", list}, {"value", "good"}}}});
    dialog.show();
    typeInto(editorOfTag<QComboBox>(&dialog, "#A"), "anything");
    dialog.onDone();
    QCOMPARE(entryOf(dialog, "#A"),
             QJsonObject({{"type", 1}, {"list", list}, {"value", "anything"}}));
}

void tst_DocumentContent::newListFieldStoresEmptyText()
{
    TempApplication app;
    const int list = addList(app, {"отлично"});
    const int form = addForm(app, "Ф", {formField("#A", "А", 1, {{"list", list}})});
    DocDialog dialog;
    dialog.setDocType(form);
    dialog.onDocTypeCgange();
    dialog.onDone();
    QCOMPARE(entryOf(dialog, "#A"),
             QJsonObject({{"name", "А"}, {"type", 1}, {"list", list}, {"value", ""}}));
}

void tst_DocumentContent::listThatIsGone_data()
{
    QTest::addColumn<QString>("items");
    QTest::newRow("no row") << QString();
    QTest::newRow("no JSON") << QString("broken {");
    QTest::newRow("items is no array") << QString("{\"items\": \"отлично\"}");
}

void tst_DocumentContent::listThatIsGone()
{
    QFETCH(QString, items);
    TempApplication app;
    if (!items.isNull()) {
        app.exec("INSERT INTO lists (ID, LIST_ITEMS) VALUES (4711, ?)", {items});
    }
    DocDialog dialog;
    LogCatcher log;
    dialog.setContent({{"#A", QJsonObject{{"type", 1}, {"list", 4711}, {"value", "отлично"}}}});
    QCOMPARE(log.messages(), QStringList());
    auto* combo = editorOfTag<QComboBox>(&dialog, "#A");
    QCOMPARE(combo->count(), 0);
    QCOMPARE(combo->currentText(), QString());
    QVERIFY(combo->isEditable());
    dialog.onDone();
    QCOMPARE(entryOf(dialog, "#A")["list"], QJsonValue(4711));
}

void tst_DocumentContent::unreadableListShowsAndKeepsItsValue()
{
    TempApplication app;
    app.exec("DROP TABLE lists");
    const QJsonObject content = {
        {"#A", QJsonObject{{"name", "О"}, {"type", 1}, {"list", 7}, {"value", "отлично"}}},
        {"#B", QJsonObject{{"name", "Ч"}, {"type", 2}, {"value", 5}}}};
    DocDialog dialog;
    LogCatcher log;
    dialog.setContent(content);
    QVERIFY(log.contains("Unable to select from lists query"));
    QVERIFY(log.contains("SELECT LIST_ITEMS FROM lists WHERE ID = 7 ;"));
    QCOMPARE(tableOf(dialog)->rowCount(), 2);
    QCOMPARE(tableOf(dialog)->item(0, 0)->text(), QString("О"));
    QVERIFY(!tableOf(dialog)->cellWidget(0, 1));
    QCOMPARE(tableOf(dialog)->item(0, 1)->text(), QString("отлично"));

    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    const QPoint cell = tableOf(dialog)->visualItemRect(tableOf(dialog)->item(0, 1)).center();
    QTest::mouseClick(tableOf(dialog)->viewport(), Qt::LeftButton, Qt::NoModifier, cell);
    QTest::mouseDClick(tableOf(dialog)->viewport(), Qt::LeftButton, Qt::NoModifier, cell);
    typeKeys("other");
    pressKey(Qt::Key_Delete);
    dialog.onDone();
    QCOMPARE(dialog.content(), content);
}

void tst_DocumentContent::editorOfAnotherTypeIsNotRead()
{
    TempApplication app;
    const int list = addList(app, {"отлично"});
    DocDialog dialog;
    dialog.setContent({{"#A", QJsonObject{{"type", 2}, {"value", 9}}},
                       {"#B", QJsonObject{{"type", 1}, {"list", list}, {"value", "отлично"}}},
                       {"#C", QJsonObject{{"type", 0}, {"value", "строка"}}}});
    for (int type = 0; type < 6; ++type) {
        if (type == 0 || type == 2) {
            continue;
        }
        QJsonObject other = {{"#A", QJsonObject{{"type", type}, {"value", "сохранено"}}},
                             {"#C", QJsonObject{{"type", type}, {"value", "сохранено"}}}};
        const QJsonObject before = other;
        saveContentTable(&other, tableOf(dialog));
        QCOMPARE(other, before);
    }
    QJsonObject other = {{"#A", QJsonObject{{"type", 0}, {"value", "сохранено"}}},
                         {"#B", QJsonObject{{"type", 2}, {"value", 5}}}};
    const QJsonObject before = other;
    saveContentTable(&other, tableOf(dialog));
    QCOMPARE(other, before);
}

void tst_DocumentContent::counterEntry_data()
{
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<int>("stored");
    QTest::newRow("number") << QJsonValue(42) << 42;
    QTest::newRow("empty text") << QJsonValue("") << 0;
    QTest::newRow("text") << QJsonValue("42") << 0;
    QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined) << 0;
    QTest::newRow("smallest") << QJsonValue(-2147483647 - 1) << -2147483647 - 1;
    QTest::newRow("largest") << QJsonValue(2147483647) << 2147483647;
}

void tst_DocumentContent::counterEntry()
{
    QFETCH(QJsonValue, value);
    QFETCH(int, stored);
    TempApplication app;
    const QJsonObject entry = {{"type", 2}, {"value", value}};
    DocDialog dialog;
    dialog.setContent({{"#A", entry}});
    auto* spin = editorOfTag<QSpinBox>(&dialog, "#A");
    QCOMPARE(spin->minimum(), -2147483647 - 1);
    QCOMPARE(spin->maximum(), 2147483647);
    QCOMPARE(spin->styleSheet(), QString("border: none"));
    QCOMPARE(savedEntry(entry), QJsonObject({{"type", 2}, {"value", stored}}));
}

void tst_DocumentContent::dateEntry()
{
    TempApplication app;
    const QJsonObject entry = {{"type", 3}, {"format", "d.M.yyyy 'г.'"}, {"value", "5.6.2024 г."}};
    DocDialog dialog;
    dialog.setContent({{"#A", entry}});
    auto* edit = editorOfTag<QDateEdit>(&dialog, "#A");
    QCOMPARE(edit->date(), QDate(2024, 6, 5));
    QCOMPARE(edit->displayFormat(), QString("d.M.yyyy 'г.'"));
    QCOMPARE(edit->styleSheet(), QString("border: none"));
    QCOMPARE(edit->buttonSymbols(), QAbstractSpinBox::NoButtons);
    QVERIFY(edit->calendarPopup());
    QCOMPARE(edit->calendarWidget()->minimumSize(), QSize(400, 300));
    QCOMPARE(edit->calendarWidget()->maximumSize(), QSize(400, 300));
    QCOMPARE(savedEntry(entry), entry);
}

void tst_DocumentContent::dateInAnotherForm()
{
    TempApplication app;
    const QJsonObject entry = {{"type", 3}, {"format", "dd.MM.yyyy"}, {"value", "2024-06-15"}};
    DocDialog dialog;
    dialog.setContent({{"#A", entry}});
    QCOMPARE(editorOfTag<QDateEdit>(&dialog, "#A")->date(), initialDate);
    QCOMPARE(savedEntry(entry)["value"], QJsonValue("01.01.2000"));
}

void tst_DocumentContent::tableEntry()
{
    TempApplication app;
    QJsonArray rows = oneRow({"Математика", "отлично"});
    rows.append(QJsonArray{"Химия", "5"});
    const QJsonObject entry = {
        {"name", "Оценки"}, {"type", 4}, {"columns", gradeColumns}, {"value", rows}};
    DocDialog dialog;
    dialog.setContent({{"#A", entry}});
    auto* button = editorOfTag<ZelvoraTableButton>(&dialog, "#A");
    QVERIFY(button);
    QCOMPARE(button->text(), QString("Изменить"));
    QCOMPARE(button->columns, gradeColumns);
    QCOMPARE(button->value, rows);
    QCOMPARE(savedEntry(entry), entry);

    QJsonObject untouched = entry;
    untouched.remove("value");
    QCOMPARE(savedEntry(untouched)["value"], QJsonValue(QJsonArray()));
    QCOMPARE(savedEntry(untouched)["columns"], QJsonValue(gradeColumns));
}

void tst_DocumentContent::textEntry()
{
    TempApplication app;
    const QJsonObject entry = {{"type", 5}, {"value", "первая\nвторая\n"}};
    DocDialog dialog;
    dialog.setContent({{"#A", entry}});
    auto* button = editorOfTag<ZelvoraTextButton>(&dialog, "#A");
    QVERIFY(button);
    QCOMPARE(button->text(), QString("Изменить"));
    QCOMPARE(button->property("text").toString(), QString("первая\nвторая\n"));
    QCOMPARE(savedEntry(entry), entry);
}

void tst_DocumentContent::wrongValueTypesReadAsEmpty()
{
    TempApplication app;
    const int list = addList(app, {"а"});
    const QJsonObject content =
        saved({{"#0", QJsonObject{{"type", 0}, {"value", 5}}},
               {"#1", QJsonObject{{"type", 1}, {"list", list}, {"value", 5}}},
               {"#2", QJsonObject{{"type", 2}, {"value", QJsonArray()}}},
               {"#4", QJsonObject{{"type", 4}, {"value", "text"}}},
               {"#5", QJsonObject{{"type", 5}, {"value", QJsonObject()}}},
               {"#6", "no object"}});
    compareWithEmptyValues(content);
    QCOMPARE(content["#6"].toObject()["value"], QJsonValue(""));
}

void tst_DocumentContent::importedEntriesWithoutKeys()
{
    TempApplication app;
    const int list = addList(app, {"отлично"});
    const QJsonObject content =
        saved({{"#0", QJsonObject{{"name", "С"}, {"type", 0}}},
               {"#1", QJsonObject{{"name", "О"}, {"type", 1}, {"list", list}}},
               {"#2", QJsonObject{{"name", "Ч"}, {"type", 2}}},
               {"#4", QJsonObject{{"name", "Т"}, {"type", 4}}},
               {"#5", QJsonObject{{"name", "Д"}, {"type", 5}}}});
    compareWithEmptyValues(content);
}

void tst_DocumentContent::apostropheAndMarkupStay()
{
    TempApplication app;
    const QJsonObject content = {
        {"#0", QJsonObject{{"type", 0}, {"value", "О'Генри \"<b>\" \\ %1 𝄞"}}},
        {"#5", QJsonObject{{"type", 5}, {"value", "it's\n'"}}}};
    QCOMPARE(saved(content), content);
}

void tst_DocumentContent::editedCellsAreStored()
{
    TempApplication app;
    DocDialog dialog;
    dialog.setContent({{"#0", QJsonObject{{"type", 0}, {"value", "old"}}},
                       {"#2", QJsonObject{{"type", 2}, {"value", 1}}},
                       {"#3", QJsonObject{{"type", 3}, {"format", "dd.MM.yyyy"}, {"value", ""}}}});
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    typeIntoCell(tableOf(dialog), 0, 1, "new");
    typeInto(editorOfTag<QSpinBox>(&dialog, "#2"), "-17");
    auto* date = editorOfTag<QDateEdit>(&dialog, "#3");
    date->setFocus();
    date->setSelectedSection(QDateTimeEdit::DaySection);
    QTest::keyClicks(date, "15062024");
    clickButton(&dialog, "saveButton");
    QCOMPARE(entryOf(dialog, "#0")["value"], QJsonValue("new"));
    QCOMPARE(entryOf(dialog, "#2")["value"], QJsonValue(-17));
    QCOMPARE(entryOf(dialog, "#3")["value"], QJsonValue("15.06.2024"));
}

void tst_DocumentContent::entriesWithoutARowStay()
{
    TempApplication app;
    DocDialog dialog;
    dialog.setContent({{"#A", QJsonObject{{"type", 0}, {"value", "а"}}}});
    QJsonObject other = {{"#A", QJsonObject{{"type", 0}, {"value", "?"}, {"ownKey", 1}}},
                         {"#B", QJsonObject{{"type", 0}, {"value", "б"}}}};
    saveContentTable(&other, tableOf(dialog));
    QCOMPARE(other, QJsonObject({{"#A", QJsonObject{{"type", 0}, {"value", "а"}, {"ownKey", 1}}},
                                 {"#B", QJsonObject{{"type", 0}, {"value", "б"}}}}));
}

void tst_DocumentContent::rowNeverAddsAnEntry()
{
    TempApplication app;
    DocDialog dialog;
    dialog.setContent({{"#A", QJsonObject{{"type", 0}, {"value", "а"}}}});
    QJsonObject other = {{"#B", QJsonObject{{"type", 0}, {"value", "б"}}}};
    const QJsonObject before = other;
    saveContentTable(&other, tableOf(dialog));
    QCOMPARE(other, before);
}

void tst_DocumentContent::contentStaysAsItWasUntilTheSave()
{
    TempApplication app;
    DocDialog dialog;
    const QJsonObject content = {{"#A", QJsonObject{{"type", 2}, {"value", 1}}}};
    dialog.setContent(content);
    editorOfTag<QSpinBox>(&dialog, "#A")->setValue(9);
    QCOMPARE(dialog.content(), content);
    dialog.onDone();
    QCOMPARE(entryOf(dialog, "#A")["value"], QJsonValue(9));
}

void tst_DocumentContent::formChangesDoNotReachADocument()
{
    TempApplication app;
    const int other = addForm(app, "Первая", {});
    const int form = addForm(app, "Вторая", {formField("#A", "А", 0), formField("#B", "Б", 0)});
    const QJsonObject stored = {{"#A", QJsonObject{{"name", "А"}, {"type", 0}, {"value", "а"}}},
                                {"#B", QJsonObject{{"name", "Б"}, {"type", 0}, {"value", "б"}}}};
    writeFormFields(
        form, {{"fields", QJsonArray{formField("#A", "Новое имя", 2), formField("#C", "В", 0)}}});
    DocDialog dialog;
    dialog.setDocType(form);
    dialog.setContent(stored);
    dialog.onDone();
    QCOMPARE(dialog.content(), stored);

    // Another type and back: the form as it is now, and what was entered is gone.
    dialog.setDocType(other);
    dialog.setDocType(form);
    QCOMPARE(dialog.content().keys(), QStringList({"#A", "#C"}));
    QCOMPARE(entryOf(dialog, "#A")["name"], QJsonValue("Новое имя"));
}

void tst_DocumentContent::wheelOverTheTableChangesNothing()
{
    TempApplication app;
    const int list = addList(app, {"а", "б", "в"});
    const QJsonObject content = {
        {"#1", QJsonObject{{"type", 1}, {"list", list}, {"value", "б"}}},
        {"#2", QJsonObject{{"type", 2}, {"value", 5}}},
        {"#3", QJsonObject{{"type", 3}, {"format", "dd.MM.yyyy"}, {"value", "15.06.2024"}}}};
    DocDialog dialog;
    dialog.setContent(content);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    for (int row = 0; row < 3; ++row) {
        QWidget* editor = tableOf(dialog)->cellWidget(row, 1);
        const QPoint centre = editor->rect().center();
        QWheelEvent event(centre, editor->mapToGlobal(centre), QPoint(), QPoint(0, -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(editor, &event);
    }
    dialog.onDone();
    QCOMPARE(dialog.content(), content);
}

void tst_DocumentContent::typedValuesReplaceTheOnesReachedByTab()
{
    TempApplication app;
    const int list = addList(app, {"good", "bad"});
    DocDialog dialog;
    dialog.setContent(
        {{"#0", QJsonObject{{"type", 0}, {"value", "old"}}},
         {"#1", QJsonObject{{"type", 1}, {"list", list}, {"value", "bad"}}},
         {"#2", QJsonObject{{"type", 2}, {"value", 0}}},
         {"#3", QJsonObject{{"type", 3}, {"format", "dd.MM.yyyy"}, {"value", "15.06.2024"}}}});
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    named<QWidget>(&dialog, "duplicateCheck")->setFocus();
    pressKey(Qt::Key_Tab);
    typeKeys("new");
    pressKey(Qt::Key_Tab);
    typeKeys("5");
    pressKey(Qt::Key_Tab);
    typeKeys("144");
    pressKey(Qt::Key_Tab);
    typeKeys("02.03.2001");
    pressKey(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), named<QWidget>(&dialog, "saveButton"));
    dialog.onDone();
    QCOMPARE(entryOf(dialog, "#0")["value"], QJsonValue("new"));
    QCOMPARE(entryOf(dialog, "#1")["value"], QJsonValue("5"));
    QCOMPARE(entryOf(dialog, "#2")["value"], QJsonValue(144));
    QCOMPARE(entryOf(dialog, "#3")["value"], QJsonValue("02.03.2001"));
}

void tst_DocumentContent::enterGoesOnAndSavesNothing()
{
    TempApplication app;
    const int list = addList(app, {"good"});
    DocDialog dialog;
    dialog.setContent({{"#1", QJsonObject{{"type", 1}, {"list", list}, {"value", "good"}}},
                       {"#2", QJsonObject{{"type", 2}, {"value", 0}}},
                       {"#3", QJsonObject{{"type", 3}, {"format", "dd.MM.yyyy"}, {"value", ""}}},
                       {"#6", QJsonObject{{"type", 0}, {"value", "old"}}}});
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    named<QWidget>(&dialog, "duplicateCheck")->setFocus();
    pressKey(Qt::Key_Tab);
    for (const char* text : {"5", "144", "02032001"}) {
        typeKeys(text);
        pressKey(Qt::Key_Return);
    }
    typeKeys("new");
    pressKey(Qt::Key_Return);
    QTRY_COMPARE(tableOf(dialog)->item(3, 1)->text(), QString("new"));
    QVERIFY(dialog.isVisible());
    dialog.onDone();
    QCOMPARE(entryOf(dialog, "#1")["value"], QJsonValue("5"));
    QCOMPARE(entryOf(dialog, "#2")["value"], QJsonValue(144));
    QCOMPARE(entryOf(dialog, "#3")["value"], QJsonValue("02.03.2001"));
}

void tst_DocumentContent::letterCaseOfAListStays_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<Qt::Key>("end");
    for (const Qt::Key end : {Qt::Key_Tab, Qt::Key_Return}) {
        const char* name = end == Qt::Key_Tab ? "Tab" : "Enter";
        QTest::addRow("other case, %s", name) << "Хорошо" << end;
        QTest::addRow("beginning, %s", name) << "хор" << end;
        QTest::addRow("beginning of another case, %s", name) << "ХОР" << end;
    }
}

void tst_DocumentContent::letterCaseOfAListStays()
{
    QFETCH(QString, typed);
    QFETCH(Qt::Key, end);
    TempApplication app;
    const int list = addList(app, {"отлично", "хорошо", "хорошо с отличием"});
    DocDialog dialog;
    dialog.setContent({{"#1", QJsonObject{{"type", 1}, {"list", list}, {"value", "отлично"}}},
                       {"#2", QJsonObject{{"type", 2}, {"value", 0}}}});
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    named<QWidget>(&dialog, "duplicateCheck")->setFocus();
    pressKey(Qt::Key_Tab);
    typeKeys(typed);
    pressKey(end);
    QCOMPARE(QApplication::focusWidget(), editorOfTag<QSpinBox>(&dialog, "#2"));
    dialog.onDone();
    QCOMPARE(entryOf(dialog, "#1")["value"], QJsonValue(typed));
    QCOMPARE(editorOfTag<QComboBox>(&dialog, "#1")->count(), 3);
}

void tst_DocumentContent::listOffersWhateverTheCase()
{
    TempApplication app;
    const int list = addList(app, {"отлично", "хорошо", "хорошо с отличием"});
    DocDialog dialog;
    dialog.setContent({{"#1", QJsonObject{{"type", 1}, {"list", list}, {"value", "отлично"}}}});
    tableOf(dialog)->horizontalHeader()->setStretchLastSection(false);
    tableOf(dialog)->setColumnWidth(1, 80);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    editorOfTag<QComboBox>(&dialog, "#1")->setFocus(Qt::TabFocusReason);
    typeKeys("ХОР");
    auto* offers = qobject_cast<QAbstractItemView*>(QApplication::activePopupWidget());
    QVERIFY(offers);
    QCOMPARE(offers->model()->rowCount(), 2);
    QVERIFY(offers->viewport()->width() >
            offers->fontMetrics().horizontalAdvance("хорошо с отличием"));
    const QModelIndex offer = offers->model()->index(1, 0);
    QTest::mouseClick(offers->viewport(), Qt::LeftButton, Qt::NoModifier,
                      offers->visualRect(offer).center());
    dialog.onDone();
    QCOMPARE(entryOf(dialog, "#1")["value"], QJsonValue("хорошо с отличием"));
}

void tst_DocumentContent::enterTakesAnOfferAndGoesOn()
{
    TempApplication app;
    const int list = addList(app, {"отлично", "хорошо"});
    DocDialog dialog;
    dialog.setContent({{"#1", QJsonObject{{"type", 1}, {"list", list}, {"value", "отлично"}}},
                       {"#2", QJsonObject{{"type", 2}, {"value", 0}}}});
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    editorOfTag<QComboBox>(&dialog, "#1")->setFocus(Qt::TabFocusReason);
    typeKeys("ХОР");
    pressKey(Qt::Key_Down);
    pressKey(Qt::Key_Return);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(QApplication::focusWidget(), editorOfTag<QSpinBox>(&dialog, "#2"));
    dialog.onDone();
    QCOMPARE(entryOf(dialog, "#1")["value"], QJsonValue("хорошо"));
    QCOMPARE(editorOfTag<QComboBox>(&dialog, "#1")->currentIndex(), 1);
}

void tst_DocumentContent::longListValueIsSeenFromItsBeginning()
{
    TempApplication app;
    const QString longText = QString("слово ").repeated(80);
    const int list = addList(app, {longText, longText + "ещё"});
    DocDialog dialog;
    dialog.setContent({{"#1", QJsonObject{{"type", 1}, {"list", list}, {"value", longText}}}});
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto* combo = editorOfTag<QComboBox>(&dialog, "#1");
    QCOMPARE(combo->lineEdit()->cursorPosition(), 0);
    // Also after another one was chosen, and after the user typed at its end and left.
    combo->setFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_Down);
    QCOMPARE(combo->currentIndex(), 1);
    QCOMPARE(combo->lineEdit()->cursorPosition(), 0);
    pressKey(Qt::Key_End);
    typeKeys("!");
    pressKey(Qt::Key_Tab);
    QCOMPARE(combo->currentText(), longText + "ещё!");
    QCOMPARE(combo->lineEdit()->cursorPosition(), 0);
}

QTEST_MAIN(tst_DocumentContent)
#include "tst_DocumentContent.moc"
