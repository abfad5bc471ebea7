#include <QtTest>

#include <QCalendarWidget>
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

#include "DocumentFixture.h"
#include "app/AppStyle.h"
#include "documents/DocumentContent.h"
#include "documents/TableMemoDialog.h"
#include "documents/ZelvoraTableButton.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"

namespace {

const QDate initialDate(2000, 1, 1); // what a date edit shows that was never set

QTableWidget* tableOf(const TableMemoDialog& dialog)
{
    return named<QTableWidget>(&dialog, "tableWidget");
}

template <class Editor>
Editor* editorAt(const TableMemoDialog& dialog, int row, int column)
{
    return qobject_cast<Editor*>(tableOf(dialog)->cellWidget(row, column));
}

void clickCell(QTableWidget* table, int row, int column)
{
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                      table->visualRect(table->model()->index(row, column)).center());
}

int automaticWidth(const QTableWidget* table, const QString& heading)
{
    return QFontMetrics(table->font()).boundingRect(heading).width() + 10;
}

QJsonArray plainColumns(int count)
{
    QJsonArray columns;
    for (int i = 0; i < count; ++i) {
        columns << tableColumn(QString("Колонка %1").arg(i), "0");
    }
    return columns;
}

QString today()
{
    return QDate::currentDate().toString("dd.MM.yyyy");
}

} // namespace

/// The editor of table values.
class tst_TableMemoDialog : public QObject
{
    Q_OBJECT

private slots:
    void init() { rearmListErrorNotice(); }

    void looks();
    void noColumns();
    void noColumnsThroughTheButton();
    void editorsByType();
    void readsStoredRows();
    void rowsOfAnotherLength();
    void rowsAndColumnsOfWrongShape();
    void typeAsNumberIsPlain();
    void columnWidths();
    void singleColumnStretches();
    void lastColumnFitsWithoutScrolling();
    void headingsInTheShownFont();

    void newRowStoresDefaults();
    void everyCellIsAString();
    void countersAreClamped();
    void emptyListCellTakesTheFirstItem();
    void listTakesTypedText();
    void unreadableDateKeepsTheInitialOne();
    void typedCellsAreStored();
    void emptyRowsAreKept();

    void addsBelowTheSelection();
    void removesTheSelectedRow();
    void removesTheLastRowWithoutSelection();
    void editorOnlyRowCannotBeSelected();

    void readOnlyLeavesACloseButton();
    void readOnlyIgnoresTheResult();

    void listWithoutId();
    void listIsGone();
    void listNoticeComesOncePerRun();
    void listQueryFails();
    void listItemsThatAreNoList();

    void acceptReplacesTheValue();
    void cancelKeepsTheValue();
    void wheelOverAnEditorChangesNothing();

    void noColumnsNoRows();
    void doubleClickRemovesOneRow();
    void typedValuesReplaceTheOnesReachedByTab();
    void enterGoesOnAndClosesNothing();
    void letterCaseOfAListStays_data();
    void letterCaseOfAListStays();
    void narrowListIsSeenFromItsBeginning();
    void keysOnAClosedText();
};

void tst_TableMemoDialog::looks()
{
    baseStyleSheet = "QLabel { color: #010203; }";
    const TableMemoDialog dialog;
    baseStyleSheet.clear();
    QVERIFY(dialog.styleSheet().startsWith("QLabel { color: #010203; }\r\n"));
    QCOMPARE(dialog.windowTitle(), QString("Zelvora - Таблица"));
    QCOMPARE(dialog.size(), QSize(464, 513));
    QCOMPARE(named<QLabel>(&dialog, "label")->text(), QString("Редактирование таблицы:"));
    const QTableWidget* table = tableOf(dialog);
    QCOMPARE(table->selectionMode(), QAbstractItemView::SingleSelection);
    QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
    QVERIFY(table->verticalHeader()->isHidden());

    const auto* add = named<QPushButton>(&dialog, "buttonAddRow");
    const auto* remove = named<QPushButton>(&dialog, "buttonRemoveRow");
    QCOMPARE(add->toolTip(), QString("Добавить строку"));
    QCOMPARE(remove->toolTip(), QString("Удалить строку"));
    for (const QPushButton* button : {add, remove}) {
        QCOMPARE(button->iconSize(), QSize(32, 32));
        QCOMPARE(button->styleSheet(), QString(" background: #FFFFFF; border: 1px solid #7C99FF;"));
    }
    compareDialogButtons(dialog);
}

void tst_TableMemoDialog::noColumns()
{
    TableMemoDialog dialog;
    ModalDriver driver;
    driver.expectMessage("Ошибка", "В таблице нет полей");
    QVERIFY(!dialog.setData({}, oneRow(QJsonArray{"a"})));
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(tableOf(dialog)->rowCount(), 0);
    QCOMPARE(dialog.tableValue(), QJsonArray());
}

void tst_TableMemoDialog::noColumnsThroughTheButton()
{
    ZelvoraTableButton button;
    button.value = oneRow(QJsonArray{"a"});
    ModalDriver driver;
    driver.expectMessage("Ошибка", "В таблице нет полей");
    driver.expect<TableMemoDialog>(
        [](TableMemoDialog* dialog) { clickButton(dialog, "buttonAccept"); });
    runTableEditor(&button, nullptr);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(button.value, QJsonArray());
}

void tst_TableMemoDialog::editorsByType()
{
    TempApplication app;
    const QString list = QString::number(addList(app, {"отлично", "", "отлично"}));
    TableMemoDialog dialog;
    QVERIFY(dialog.setData(
        {tableColumn("Предмет", "0"), tableColumn("Оценка", "1", {{"listID", list}}),
         tableColumn("Часы", "2"), tableColumn("Дата", "3"), tableColumn("Прочее", "7")},
        oneRow(QJsonArray{"Химия", "отлично", "72", "15.06.2024", "x"})));
    QTableWidget* table = tableOf(dialog);
    QCOMPARE(table->columnCount(), 5);
    QCOMPARE(table->horizontalHeaderItem(1)->text(), QString("Оценка"));
    QCOMPARE(table->item(0, 0)->text(), QString("Химия"));
    QVERIFY(table->item(0, 0)->flags() & Qt::ItemIsEditable);
    QCOMPARE(table->item(0, 4)->text(), QString("x"));

    auto* combo = editorAt<QComboBox>(dialog, 0, 1);
    QVERIFY(combo && combo->isEditable());
    QCOMPARE(combo->property("inTable"), QVariant(true));
    QCOMPARE(combo->count(), 3);
    QCOMPARE(combo->itemText(1), QString());
    QCOMPARE(combo->currentText(), QString("отлично"));

    auto* spin = editorAt<QSpinBox>(dialog, 0, 2);
    QVERIFY(spin);
    QCOMPARE(spin->property("inTable"), QVariant(true));
    QCOMPARE(spin->minimum(), -99999);
    QCOMPARE(spin->maximum(), 99999);
    QCOMPARE(spin->value(), 72);

    auto* date = editorAt<QDateEdit>(dialog, 0, 3);
    QVERIFY(date && date->calendarPopup());
    QCOMPARE(date->property("inTable"), QVariant(true));
    QCOMPARE(date->buttonSymbols(), QAbstractSpinBox::NoButtons);
    QCOMPARE(date->calendarWidget()->minimumSize(), QSize(400, 300));
    QCOMPARE(date->calendarWidget()->maximumSize(), QSize(400, 300));
    QCOMPARE(date->displayFormat(), QDateEdit().displayFormat());
    QCOMPARE(date->date(), QDate(2024, 6, 15));
    for (int column : {1, 2, 3}) {
        QVERIFY(!table->item(0, column));
    }
}

void tst_TableMemoDialog::readsStoredRows()
{
    TempApplication app;
    const QString list = QString::number(addList(app, {"отлично", "хорошо"}));
    const QJsonArray columns = {tableColumn("Предмет", "0"),
                                tableColumn("Оценка", "1", {{"listID", list}}),
                                tableColumn("Часы", "2"), tableColumn("Дата", "3")};
    const QJsonArray rows = {QJsonArray{"О'Генри", "хорошо", "-7", "29.02.2024"},
                             QJsonArray{"", "своё", "0", "01.01.1900"}};
    TableMemoDialog dialog;
    QVERIFY(dialog.setData(columns, rows));
    QCOMPARE(dialog.tableValue(), rows);
}

void tst_TableMemoDialog::rowsOfAnotherLength()
{
    TableMemoDialog dialog;
    dialog.setData(plainColumns(2), {QJsonArray{"a"}, QJsonArray{"b", "c", "d"}, QJsonArray()});
    QCOMPARE(dialog.tableValue(),
             QJsonArray({QJsonArray{"a", ""}, QJsonArray{"b", "c"}, QJsonArray{"", ""}}));
}

void tst_TableMemoDialog::rowsAndColumnsOfWrongShape()
{
    TableMemoDialog dialog;
    QVERIFY(dialog.setData({QJsonValue("no object"), QJsonObject()},
                           {QJsonValue("no array"), QJsonArray{5, true}}));
    QCOMPARE(tableOf(dialog)->horizontalHeaderItem(0)->text(), QString());
    QCOMPARE(dialog.tableValue(), QJsonArray({QJsonArray{"", ""}, QJsonArray{"", ""}}));
}

void tst_TableMemoDialog::typeAsNumberIsPlain()
{
    QJsonObject asNumber{{"name", "Часы"}, {"typeID", 2}};
    TableMemoDialog dialog;
    dialog.setData({asNumber, tableColumn("Часы", "2")}, oneRow(QJsonArray{"7", "7"}));
    QVERIFY(!tableOf(dialog)->cellWidget(0, 0));
    QCOMPARE(tableOf(dialog)->item(0, 0)->text(), QString("7"));
    QVERIFY(editorAt<QSpinBox>(dialog, 0, 1));
}

void tst_TableMemoDialog::columnWidths()
{
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Девять", "0", {{"edtColumnW", "9"}}),
                    tableColumn("Десять", "0", {{"edtColumnW", "10"}}),
                    tableColumn("Минус один", "0", {{"edtColumnW", "-1"}}),
                    tableColumn("Нет ключа", "0"), tableColumn("Число", "0", {{"edtColumnW", 50}}),
                    tableColumn("Пятьсот", "0", {{"edtColumnW", "500"}}), tableColumn("", "0"),
                    tableColumn("Последняя", "0", {{"edtColumnW", "33"}})},
                   {});
    dialog.resize(1400, 513);
    dialog.show();
    const QTableWidget* table = tableOf(dialog);
    QCOMPARE(table->columnWidth(0), automaticWidth(table, "Девять"));
    QCOMPARE(table->columnWidth(1), 10);
    QCOMPARE(table->columnWidth(2), automaticWidth(table, "Минус один"));
    QCOMPARE(table->columnWidth(3), automaticWidth(table, "Нет ключа"));
    QCOMPARE(table->columnWidth(4), automaticWidth(table, "Число"));
    QCOMPARE(table->columnWidth(5), 500);
    QCOMPARE(table->columnWidth(6), 10);
    QVERIFY(table->columnWidth(7) > 33);
    QCOMPARE(table->horizontalHeader()->length(), table->viewport()->width());
}

void tst_TableMemoDialog::singleColumnStretches()
{
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Одна", "0", {{"edtColumnW", "20"}})}, {});
    dialog.show();
    QCOMPARE(tableOf(dialog)->columnWidth(0), tableOf(dialog)->viewport()->width());
}

void tst_TableMemoDialog::lastColumnFitsWithoutScrolling()
{
    QJsonArray rows;
    for (int i = 0; i < 30; ++i) {
        rows.append(QJsonArray{"a", "b"});
    }
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Предмет", "0", {{"edtColumnW", "350"}}), tableColumn("Балл", "0")},
                   rows);
    dialog.show();
    const QTableWidget* table = tableOf(dialog);
    QCOMPARE(table->columnWidth(0), 350);
    QCOMPARE(table->horizontalHeader()->length(), table->viewport()->width());
}

void tst_TableMemoDialog::headingsInTheShownFont()
{
    baseStyleSheet = "QTableView { font-size: 31px; }";
    TableMemoDialog dialog;
    baseStyleSheet.clear();
    dialog.setData(plainColumns(2), {});
    dialog.show();
    const QTableWidget* table = tableOf(dialog);
    QCOMPARE(table->font().pixelSize(), 31);
    QCOMPARE(table->columnWidth(0), automaticWidth(table, "Колонка 0"));
}

void tst_TableMemoDialog::newRowStoresDefaults()
{
    TempApplication app;
    const QString list = QString::number(addList(app, {"отлично", "хорошо"}));
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Предмет", "0"), tableColumn("Оценка", "1", {{"listID", list}}),
                    tableColumn("Часы", "2"), tableColumn("Дата", "3")},
                   {});
    dialog.show();
    clickButton(&dialog, "buttonAddRow");
    QCOMPARE(dialog.tableValue(), oneRow(QJsonArray{"", "отлично", "0", today()}));
}

void tst_TableMemoDialog::everyCellIsAString()
{
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Часы", "2")}, {QJsonArray{"7"}, QJsonArray{7}, QJsonArray{"a"}});
    const QJsonArray rows = dialog.tableValue();
    QCOMPARE(rows.at(0).toArray().at(0), QJsonValue("7"));
    QCOMPARE(rows.at(1).toArray().at(0), QJsonValue("0"));
    QCOMPARE(rows.at(2).toArray().at(0), QJsonValue("0"));
}

void tst_TableMemoDialog::countersAreClamped()
{
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Часы", "2")},
                   {QJsonArray{"100000"}, QJsonArray{"-100000"}, QJsonArray{"99999"}});
    QCOMPARE(dialog.tableValue(),
             QJsonArray({QJsonArray{"99999"}, QJsonArray{"-99999"}, QJsonArray{"99999"}}));
}

void tst_TableMemoDialog::emptyListCellTakesTheFirstItem()
{
    TempApplication app;
    const QString list = QString::number(addList(app, {"отлично", "хорошо"}));
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Оценка", "1", {{"listID", list}})},
                   {QJsonArray{""}, QJsonArray{"хорошо"}});
    QCOMPARE(dialog.tableValue(), QJsonArray({QJsonArray{"отлично"}, QJsonArray{"хорошо"}}));
}

void tst_TableMemoDialog::listTakesTypedText()
{
    TempApplication app;
    const QString list = QString::number(addList(app, {"good"}));
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Оценка", "1", {{"listID", list}})}, oneRow(QJsonArray{"good"}));
    dialog.show();
    typeInto(editorAt<QComboBox>(dialog, 0, 0), "anything");
    QCOMPARE(dialog.tableValue(), oneRow(QJsonArray{"anything"}));
}

void tst_TableMemoDialog::unreadableDateKeepsTheInitialOne()
{
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Дата", "3")},
                   {QJsonArray{"2024-06-15"}, QJsonArray{""}, QJsonArray{"15.06.2024"}});
    QCOMPARE(editorAt<QDateEdit>(dialog, 0, 0)->date(), initialDate);
    QCOMPARE(dialog.tableValue(), QJsonArray({QJsonArray{"01.01.2000"}, QJsonArray{"01.01.2000"},
                                              QJsonArray{"15.06.2024"}}));
}

void tst_TableMemoDialog::typedCellsAreStored()
{
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Предмет", "0"), tableColumn("Часы", "2")},
                   oneRow(QJsonArray{"old", "1"}));
    dialog.show();
    typeIntoCell(tableOf(dialog), 0, 0, "new");
    typeInto(editorAt<QSpinBox>(dialog, 0, 1), "42");
    QCOMPARE(dialog.tableValue(), oneRow(QJsonArray{"new", "42"}));
}

void tst_TableMemoDialog::emptyRowsAreKept()
{
    TableMemoDialog dialog;
    dialog.setData(plainColumns(2), {});
    dialog.show();
    clickButton(&dialog, "buttonAddRow");
    clickButton(&dialog, "buttonAddRow");
    QCOMPARE(dialog.tableValue(), QJsonArray({QJsonArray{"", ""}, QJsonArray{"", ""}}));
    // A cell that never got an item reads as empty too.
    delete tableOf(dialog)->takeItem(0, 1);
    QCOMPARE(dialog.tableValue(), QJsonArray({QJsonArray{"", ""}, QJsonArray{"", ""}}));
}

void tst_TableMemoDialog::addsBelowTheSelection()
{
    TableMemoDialog dialog;
    dialog.setData(plainColumns(1), {QJsonArray{"a"}, QJsonArray{"b"}});
    dialog.show();
    clickButton(&dialog, "buttonAddRow");
    QCOMPARE(dialog.tableValue(), QJsonArray({QJsonArray{"a"}, QJsonArray{"b"}, QJsonArray{""}}));
    clickCell(tableOf(dialog), 0, 0);
    clickButton(&dialog, "buttonAddRow");
    QCOMPARE(dialog.tableValue(),
             QJsonArray({QJsonArray{"a"}, QJsonArray{""}, QJsonArray{"b"}, QJsonArray{""}}));
}

void tst_TableMemoDialog::removesTheSelectedRow()
{
    TableMemoDialog dialog;
    dialog.setData(plainColumns(2),
                   {QJsonArray{"a", ""}, QJsonArray{"b", ""}, QJsonArray{"c", ""}});
    dialog.show();
    clickCell(tableOf(dialog), 1, 1);
    clickButton(&dialog, "buttonRemoveRow");
    QCOMPARE(dialog.tableValue(), QJsonArray({QJsonArray{"a", ""}, QJsonArray{"c", ""}}));
}

void tst_TableMemoDialog::removesTheLastRowWithoutSelection()
{
    TableMemoDialog dialog;
    dialog.setData(plainColumns(1), {QJsonArray{"a"}, QJsonArray{"b"}});
    dialog.show();
    clickButton(&dialog, "buttonRemoveRow");
    QCOMPARE(dialog.tableValue(), oneRow(QJsonArray{"a"}));
    clickButton(&dialog, "buttonRemoveRow");
    clickButton(&dialog, "buttonRemoveRow");
    QCOMPARE(dialog.tableValue(), QJsonArray());
}

void tst_TableMemoDialog::editorOnlyRowCannotBeSelected()
{
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Часы", "2")}, {QJsonArray{"1"}, QJsonArray{"2"}, QJsonArray{"3"}});
    dialog.show();
    tableOf(dialog)->selectRow(0);
    clickButton(&dialog, "buttonRemoveRow");
    QCOMPARE(dialog.tableValue(), QJsonArray({QJsonArray{"1"}, QJsonArray{"2"}}));
    tableOf(dialog)->selectRow(0);
    clickButton(&dialog, "buttonAddRow");
    QCOMPARE(dialog.tableValue(), QJsonArray({QJsonArray{"1"}, QJsonArray{"2"}, QJsonArray{"0"}}));
}

void tst_TableMemoDialog::readOnlyLeavesACloseButton()
{
    TableMemoDialog dialog;
    dialog.setData(plainColumns(1), oneRow(QJsonArray{"a"}));
    dialog.setReadOnly(true);
    dialog.show();
    for (const char* name : {"buttonAccept", "buttonAddRow", "buttonRemoveRow"}) {
        QVERIFY(named<QPushButton>(&dialog, name)->isHidden());
    }
    QCOMPARE(named<QPushButton>(&dialog, "buttonReject")->text(), QString("Закрыть"));
    QCOMPARE(named<QLabel>(&dialog, "label")->text(), QString("Просмотр таблицы:"));

    dialog.setReadOnly(false);
    for (const char* name : {"buttonAccept", "buttonAddRow", "buttonRemoveRow"}) {
        QVERIFY(named<QPushButton>(&dialog, name)->isVisible());
    }
}

void tst_TableMemoDialog::readOnlyIgnoresTheResult()
{
    ZelvoraTableButton button;
    button.columns = plainColumns(1);
    button.value = oneRow(QJsonArray{"a"});
    ModalDriver driver;
    driver.expect<TableMemoDialog>([](TableMemoDialog* dialog) {
        typeIntoCell(named<QTableWidget>(dialog, "tableWidget"), 0, 0, "typed");
        QCOMPARE(dialog->tableValue(), oneRow(QJsonArray{"typed"}));
        dialog->accept();
    });
    runTableEditor(&button, nullptr, true);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(button.value, oneRow(QJsonArray{"a"}));
}

void tst_TableMemoDialog::listWithoutId()
{
    TempApplication app;
    LogCatcher log;
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Оценка", "1")}, {QJsonArray{"free"}, QJsonArray{""}});
    QCOMPARE(log.count("loadListValues Error: listID is empty"), 1);
    dialog.show();
    auto* combo = editorAt<QComboBox>(dialog, 1, 0);
    QCOMPARE(combo->count(), 0);
    typeInto(combo, "typed");
    QCOMPARE(dialog.tableValue(), QJsonArray({QJsonArray{"free"}, QJsonArray{"typed"}}));
}

void tst_TableMemoDialog::listIsGone()
{
    TempApplication app;
    TableMemoDialog dialog;
    ModalDriver driver;
    driver.expectMessage("Ошибка получения списка", "Список не найден, возможно он удалён");
    QVERIFY(dialog.setData({tableColumn("Оценка", "1", {{"listID", "4711"}})},
                           oneRow(QJsonArray{"отлично"})));
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(editorAt<QComboBox>(dialog, 0, 0)->count(), 0);
    QCOMPARE(dialog.tableValue(), oneRow(QJsonArray{"отлично"}));
}

void tst_TableMemoDialog::listNoticeComesOncePerRun()
{
    TempApplication app;
    const QJsonArray columns = {tableColumn("А", "1", {{"listID", "1"}}),
                                tableColumn("Б", "1", {{"listID", "2"}})};
    {
        ModalDriver driver;
        driver.expectMessage("Ошибка получения списка", "Список не найден, возможно он удалён");
        TableMemoDialog dialog;
        QVERIFY(dialog.setData(columns, {}));
        QVERIFY2(driver.finished(), driver.failures());
    }
    app.exec("DROP TABLE lists");
    ModalDriver driver; // expects nothing more, of either kind, also in another dialog
    TableMemoDialog dialog;
    QVERIFY(dialog.setData(columns, {}));
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_TableMemoDialog::listQueryFails()
{
    TempApplication app;
    app.exec("DROP TABLE lists");
    ModalDriver driver;
    driver.expectMessageStarting("Ошибка получения списка", "SqlError: no such table: lists");
    TableMemoDialog dialog;
    QCOMPARE(dialog.loadListValues("1"), QStringList());
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_TableMemoDialog::listItemsThatAreNoList()
{
    TempApplication app;
    app.exec("INSERT INTO lists (ID, LIST_ITEMS) VALUES (1, 'broken {'), (2, '[]'), "
             "(3, '{\"items\": 5}'), (4, NULL), (5, '{\"items\": [\"a\", \"a\", \"\"]}')");
    app.exec("UPDATE lists SET LIST_ITEMS = CAST(LIST_ITEMS AS BLOB) WHERE ID = 5");
    TableMemoDialog dialog;
    for (const char* id : {"1", "2", "3", "4"}) {
        QCOMPARE(dialog.loadListValues(id), QStringList());
    }
    QCOMPARE(dialog.loadListValues("5"), QStringList({"a", "a", ""}));
}

void tst_TableMemoDialog::acceptReplacesTheValue()
{
    ZelvoraTableButton button;
    button.columns = plainColumns(1);
    button.value = oneRow(QJsonArray{"a"});
    QWidget window;
    ModalDriver driver;
    driver.expect<TableMemoDialog>([&](TableMemoDialog* dialog) {
        QCOMPARE(dialog->parentWidget(), &window);
        clickButton(dialog, "buttonAddRow");
        clickButton(dialog, "buttonAccept");
    });
    runTableEditor(&button, &window);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(button.value, QJsonArray({QJsonArray{"a"}, QJsonArray{""}}));
    QCOMPARE(button.columns, plainColumns(1));
}

void tst_TableMemoDialog::cancelKeepsTheValue()
{
    ZelvoraTableButton button;
    button.columns = plainColumns(1);
    button.value = oneRow(QJsonArray{"a"});
    ModalDriver driver;
    driver.expect<TableMemoDialog>([](TableMemoDialog* dialog) {
        clickButton(dialog, "buttonRemoveRow");
        clickButton(dialog, "buttonReject");
    });
    runTableEditor(&button, nullptr);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(button.value, oneRow(QJsonArray{"a"}));
}

void tst_TableMemoDialog::wheelOverAnEditorChangesNothing()
{
    TempApplication app;
    const QString list = QString::number(addList(app, {"отлично", "хорошо", "зачтено"}));
    const QJsonArray rows = oneRow(QJsonArray{"хорошо", "5", "15.06.2024"});
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Оценка", "1", {{"listID", list}}), tableColumn("Часы", "2"),
                    tableColumn("Дата", "3")},
                   rows);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    named<QPushButton>(&dialog, "buttonAccept")->setFocus();
    for (int column = 0; column < 3; ++column) {
        wheelOver(tableOf(dialog)->cellWidget(0, column));
    }
    QCOMPARE(dialog.tableValue(), rows);
    // With the focus in it an editor takes the wheel.
    QWidget* spin = tableOf(dialog)->cellWidget(0, 1);
    spin->setFocus();
    wheelOver(spin);
    QCOMPARE(dialog.tableValue(), oneRow(QJsonArray{"хорошо", "6", "15.06.2024"}));
}

void tst_TableMemoDialog::noColumnsNoRows()
{
    TableMemoDialog dialog;
    ModalDriver driver;
    driver.expectMessage("Ошибка", "В таблице нет полей");
    QVERIFY(!dialog.setData({}, {}));
    QVERIFY2(driver.finished(), driver.failures());
    dialog.show();
    clickButton(dialog, "buttonAddRow");
    clickButton(dialog, "buttonAddRow");
    QCOMPARE(tableOf(dialog)->rowCount(), 0);
    QCOMPARE(dialog.tableValue(), QJsonArray());
}

void tst_TableMemoDialog::doubleClickRemovesOneRow()
{
    TableMemoDialog dialog;
    dialog.setData(plainColumns(1), {QJsonArray{"a"}, QJsonArray{"b"}, QJsonArray{"c"}});
    dialog.show();
    doubleClickButton(dialog, "buttonRemoveRow");
    QCOMPARE(dialog.tableValue(), QJsonArray({QJsonArray{"a"}, QJsonArray{"b"}}));
    clickButton(dialog, "buttonRemoveRow");
    clickButton(dialog, "buttonRemoveRow");
    QCOMPARE(dialog.tableValue(), QJsonArray());
}

void tst_TableMemoDialog::typedValuesReplaceTheOnesReachedByTab()
{
    TempApplication app;
    const QString list = QString::number(addList(app, {"good", "bad"}));
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Предмет", "0"), tableColumn("Оценка", "1", {{"listID", list}}),
                    tableColumn("Часы", "2"), tableColumn("Дата", "3")},
                   {QJsonArray{"old", "bad", "0", "15.06.2024"},
                    QJsonArray{"older", "good", "72", "16.06.2024"}});
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    named<QPushButton>(&dialog, "buttonReject")->setFocus();
    pressKey(Qt::Key_Tab);
    for (const char* text : {"new", "5", "144", "02", "newer", "4", "36", "03"}) {
        typeKeys(text);
        pressKey(Qt::Key_Tab);
    }
    QCOMPARE(dialog.tableValue(), QJsonArray({QJsonArray{"new", "5", "144", "02.06.2024"},
                                              QJsonArray{"newer", "4", "36", "03.06.2024"}}));
    QCOMPARE(QApplication::focusWidget(), named<QPushButton>(&dialog, "buttonAddRow"));
}

void tst_TableMemoDialog::enterGoesOnAndClosesNothing()
{
    TempApplication app;
    const QString list = QString::number(addList(app, {"good", "bad"}));
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Оценка", "1", {{"listID", list}}), tableColumn("Часы", "2"),
                    tableColumn("Дата", "3"), tableColumn("Предмет", "0")},
                   oneRow(QJsonArray{"bad", "0", "15.06.2024", "old"}));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    named<QPushButton>(&dialog, "buttonReject")->setFocus();
    pressKey(Qt::Key_Tab);
    for (const char* text : {"5", "144", "02", "new"}) {
        typeKeys(text);
        pressKey(Qt::Key_Return);
    }
    QTRY_COMPARE(dialog.tableValue(), oneRow(QJsonArray{"5", "144", "02.06.2024", "new"}));
    pressKey(Qt::Key_Return); // the closed text
    QVERIFY(dialog.isVisible());
}

void tst_TableMemoDialog::letterCaseOfAListStays_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<Qt::Key>("end");
    QTest::newRow("other case") << "Хорошо" << Qt::Key_Tab;
    QTest::newRow("beginning") << "хор" << Qt::Key_Tab;
    QTest::newRow("other case, Enter") << "Хорошо" << Qt::Key_Return;
    QTest::newRow("beginning, Enter") << "хор" << Qt::Key_Return;
}

void tst_TableMemoDialog::letterCaseOfAListStays()
{
    QFETCH(QString, typed);
    QFETCH(Qt::Key, end);
    TempApplication app;
    const QString list = QString::number(addList(app, {"отлично", "хорошо"}));
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Оценка", "1", {{"listID", list}})},
                   {QJsonArray{"ОТЛИЧНО"}, QJsonArray{"отлично"}});
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    named<QPushButton>(&dialog, "buttonReject")->setFocus();
    pressKey(Qt::Key_Tab); // what is stored is only visited
    pressKey(end);
    typeKeys(typed);
    pressKey(end);
    QVERIFY(!QApplication::activePopupWidget());
    named<QPushButton>(&dialog, "buttonAccept")->setFocus();
    QCOMPARE(dialog.tableValue(), QJsonArray({QJsonArray{"ОТЛИЧНО"}, QJsonArray{typed}}));
}

void tst_TableMemoDialog::narrowListIsSeenFromItsBeginning()
{
    TempApplication app;
    const QString list = QString::number(addList(app, {"удовлетворительно"}));
    const QString stored = "неудовлетворительно (пересдача)";
    TableMemoDialog dialog;
    dialog.setData({tableColumn("Оценка", "1", {{"listID", list}, {"edtColumnW", "60"}}),
                    tableColumn("Предмет", "0")},
                   {QJsonArray{stored, ""}, QJsonArray{"", ""}});
    dialog.show();
    for (int row = 0; row < 2; ++row) {
        QCOMPARE(editorAt<QComboBox>(dialog, row, 0)->lineEdit()->cursorPosition(), 0);
    }
    QCOMPARE(editorAt<QComboBox>(dialog, 0, 0)->currentText(), stored);
    QCOMPARE(editorAt<QComboBox>(dialog, 1, 0)->currentText(), QString("удовлетворительно"));
}

void tst_TableMemoDialog::keysOnAClosedText()
{
    TableMemoDialog dialog;
    dialog.setData(plainColumns(2), oneRow(QJsonArray{"a", "b"}));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    clickCell(tableOf(dialog), 0, 0);
    pressKey(Qt::Key_C, Qt::ControlModifier);
    pressKey(Qt::Key_Delete);
    QCOMPARE(dialog.tableValue(), oneRow(QJsonArray{"", "b"}));
    clickCell(tableOf(dialog), 0, 1);
    pressKey(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(dialog.tableValue(), oneRow(QJsonArray{"", "a"}));
}

QTEST_MAIN(tst_TableMemoDialog)
#include "tst_TableMemoDialog.moc"
