#include <QtTest>

#include <QComboBox>
#include <QJsonArray>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTableWidget>

#include "forms/FieldEditDlg.h"
#include "forms/TableColumFormDialog.h"
#include "support/LogCatcher.h"
#include "support/ModalDriver.h"
#include "support/TempApplication.h"
#include "support/Widgets.h"

/// The editor of one field of a form.
class tst_FieldEditDlg : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void window();
    void typesInKeyOrder();
    void stackFollowsTheType();
    void storesAStringField();
    void tagIsStoredInUpperCase();
    void wrongTagIsWarnedOfAndTaken_data();
    void wrongTagIsWarnedOfAndTaken();
    void listFieldStoresANumber();
    void deletedListStoresZero();
    void failedListSelectIsLogged();
    void dateFieldStoresAnyFormat();
    void tableFieldStoresItsColumns();
    void columnTypes();
    void numericTypeIdReadsAsString();
    void unknownColumnKeysSurvive();
    void newRowGoesBehindTheSelectedOne();
    void removesTheSelectedOrTheLastRow();
    void columnSettingsReachTheColumn();
    void cancelledColumnSettingsChangeNothing();
    void keysOfAnEarlierTypeSurvive();
    void reopenedTableStartsEmpty();
    void typeBackAndForthLosesNothing();
    void cancelKeepsTheField();

    void wheelOverATypeChangesNothing();
    void doubleClickRemovesOneColumn();
    void enterGoesOnAndAcceptsNothing();
    void keysOnAClosedText();
    void longValuesAreSeenFromTheirBeginning();

private:
    TempApplication* m_app = nullptr;
};

namespace {

void type(const QDialog& dialog, const char* edit, const QString& text)
{
    auto* line = named<QLineEdit>(dialog, edit);
    line->clear();
    QTest::keyClicks(line, text);
}

void chooseType(const QDialog& dialog, int index)
{
    auto* combo = named<QComboBox>(dialog, "typeCombo");
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Home);
    for (int i = 0; i < index; ++i) {
        QTest::keyClick(combo, Qt::Key_Down);
    }
    QCOMPARE(combo->currentIndex(), index);
}

QTableWidget* table(const QDialog& dialog)
{
    return named<QTableWidget>(dialog, "tableFieldsWidget");
}

QComboBox* columnType(const QDialog& dialog, int row)
{
    return qobject_cast<QComboBox*>(table(dialog)->cellWidget(row, 1));
}

QPushButton* columnOptions(const QDialog& dialog, int row)
{
    return qobject_cast<QPushButton*>(table(dialog)->cellWidget(row, 2));
}

/// Opens the settings of the first column, changes the width and leaves by the button.
void changeColumnWidth(const QDialog& dialog, const char* button)
{
    ModalDriver driver;
    driver.expect<TableColumFormDialog>([button](TableColumFormDialog* settings) {
        named<QSpinBox>(*settings, "spinBoxWidthInEditor")->setValue(200);
        clickButton(*settings, button);
    });
    QTest::mouseClick(columnOptions(dialog, 0), Qt::LeftButton);
    QVERIFY2(driver.finished(), driver.failures());
}

QJsonObject accepted(FieldEditDlg& dialog)
{
    dialog.show();
    clickButton(dialog, "buttonAccept");
    return dialog.field();
}

const QJsonArray gradeColumns{
    QJsonObject{{"name", "Предмет"}, {"typeID", "0"}},
    QJsonObject{{"name", "Оценка"}, {"typeID", "1"}, {"edtColumnW", "60"}, {"listID", "7"}}};

const QJsonObject gradesField{
    {"tag", "#GRADES"}, {"name", "Оценки"}, {"type", 4}, {"content", gradeColumns}};

} // namespace

void tst_FieldEditDlg::init()
{
    m_app = new TempApplication;
    m_app->exec("INSERT INTO lists (ID, LIST_NAME) VALUES (7, 'Оценки'), (9, 'Предметы')");
}

void tst_FieldEditDlg::cleanup()
{
    delete m_app;
}

void tst_FieldEditDlg::window()
{
    FieldEditDlg dialog;
    dialog.show();
    QCOMPARE(dialog.windowTitle(), QString("Поле"));
    QCOMPARE(dialog.size(), QSize(491, 305));
    QCOMPARE(named<QLineEdit>(dialog, "tagEdit")->placeholderText(), QString("#TAG_NAME"));
    QCOMPARE(named<QLineEdit>(dialog, "formatEdit")->text(), QString("dd.MM.yyyy"));
    QVERIFY(!named<QStackedWidget>(dialog, "typeStack")->isVisible());
    QCOMPARE(table(dialog)->columnCount(), 3);
    QCOMPARE(table(dialog)->columnWidth(0), 270);
    QCOMPARE(named<QPushButton>(dialog, "buttonAddTableRow")->toolTip(),
             QString("Добавить поле таблицы"));
    QCOMPARE(named<QPushButton>(dialog, "buttonRemoveTableRow")->toolTip(),
             QString("Удалить поле таблицы"));
}

void tst_FieldEditDlg::typesInKeyOrder()
{
    FieldEditDlg dialog;
    const auto* combo = named<QComboBox>(dialog, "typeCombo");
    const QStringList captions{"Строка", "Список", "Счетчик", "Дата", "Таблица", "Текст"};
    QCOMPARE(combo->count(), captions.size());
    for (int i = 0; i < captions.size(); ++i) {
        QCOMPARE(combo->itemText(i), captions[i]);
        QCOMPARE(combo->itemData(i).toInt(), i);
    }
}

void tst_FieldEditDlg::stackFollowsTheType()
{
    FieldEditDlg dialog;
    dialog.show();
    const auto* stack = named<QStackedWidget>(dialog, "typeStack");
    const QMap<int, QString> pages{{1, "listPage"}, {3, "datePage"}, {4, "tablePage"}};
    for (int i = 0; i < 6; ++i) {
        chooseType(dialog, i);
        QCOMPARE(stack->isVisible(), pages.contains(i));
        if (pages.contains(i)) {
            QCOMPARE(stack->currentWidget()->objectName(), pages[i]);
        }
    }
    chooseType(dialog, 4);
    QCOMPARE(table(dialog)->minimumHeight(), 150);
    QCOMPARE(table(dialog)->columnWidth(1), 140);
}

void tst_FieldEditDlg::storesAStringField()
{
    FieldEditDlg dialog;
    dialog.show();
    type(dialog, "tagEdit", "#SPECIALTY");
    named<QLineEdit>(dialog, "nameEdit")->setText("Специальность");
    QCOMPARE(accepted(dialog),
             (QJsonObject{{"tag", "#SPECIALTY"}, {"name", "Специальность"}, {"type", 0}}));
}

void tst_FieldEditDlg::tagIsStoredInUpperCase()
{
    FieldEditDlg dialog;
    dialog.show();
    type(dialog, "tagEdit", "#abc");
    QCOMPARE(accepted(dialog)["tag"].toString(), QString("#ABC"));
}

void tst_FieldEditDlg::wrongTagIsWarnedOfAndTaken_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QString>("stored");
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("no hash") << "tag"
                             << "TAG";
    QTest::newRow("blank first") << " #TAG"
                                 << " #TAG";
}

void tst_FieldEditDlg::wrongTagIsWarnedOfAndTaken()
{
    QFETCH(QString, tag);
    QFETCH(QString, stored);
    FieldEditDlg dialog;
    dialog.setField({{"tag", tag}, {"name", "x"}, {"type", 5}});
    ModalDriver driver;
    driver.expectMessage("Предупреждение", "Не правильно указана метка поля");
    const QJsonObject field = accepted(dialog);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(field, (QJsonObject{{"tag", stored}, {"name", "x"}, {"type", 5}}));
}

void tst_FieldEditDlg::listFieldStoresANumber()
{
    FieldEditDlg dialog;
    dialog.setField({{"tag", "#Q"}, {"name", "Квалификация"}, {"type", 1}, {"list", 9}});
    QCOMPARE(named<QComboBox>(dialog, "listCombo")->currentText(), QString("Предметы"));
    QCOMPARE(accepted(dialog),
             (QJsonObject{{"tag", "#Q"}, {"name", "Квалификация"}, {"type", 1}, {"list", 9}}));
    QVERIFY(dialog.field()["list"].isDouble());
}

void tst_FieldEditDlg::deletedListStoresZero()
{
    FieldEditDlg dialog;
    dialog.setField({{"tag", "#Q"}, {"name", "x"}, {"type", 1}, {"list", 100}});
    QCOMPARE(named<QComboBox>(dialog, "listCombo")->currentIndex(), -1);
    QCOMPARE(accepted(dialog)["list"], QJsonValue(0));
}

void tst_FieldEditDlg::failedListSelectIsLogged()
{
    m_app->exec("DROP TABLE lists");
    LogCatcher log;
    FieldEditDlg dialog;
    QCOMPARE(log.count("Unable to execute select query"), 1);
    QVERIFY(log.contains("no such table: lists"));
    dialog.setField({{"tag", "#Q"}, {"name", "x"}, {"type", 1}, {"list", 7}});
    QCOMPARE(accepted(dialog)["list"], QJsonValue(0));
}

void tst_FieldEditDlg::dateFieldStoresAnyFormat()
{
    FieldEditDlg dialog;
    dialog.setField({{"tag", "#D"}, {"name", "x"}, {"type", 3}, {"format", "yyyy"}});
    QCOMPARE(named<QLineEdit>(dialog, "formatEdit")->text(), QString("yyyy"));
    dialog.show();
    type(dialog, "formatEdit", "what?");
    QCOMPARE(accepted(dialog)["format"].toString(), QString("what?"));
}

void tst_FieldEditDlg::tableFieldStoresItsColumns()
{
    FieldEditDlg dialog;
    dialog.setField(gradesField);
    QCOMPARE(table(dialog)->rowCount(), 2);
    QCOMPARE(table(dialog)->item(0, 0)->text(), QString("Предмет"));
    QCOMPARE(columnType(dialog, 1)->currentText(), QString("Список"));
    QCOMPARE(columnOptions(dialog, 1)->property("columnDataJs").toJsonObject(),
             gradeColumns[1].toObject());
    QCOMPARE(columnOptions(dialog, 1)->text(), QString("..."));
    QCOMPARE(columnOptions(dialog, 1)->toolTip(), QString("Доп.настройки"));
    QCOMPARE(columnOptions(dialog, 1)->minimumWidth(), 35);
    QCOMPARE(columnOptions(dialog, 1)->maximumWidth(), 35);
    QCOMPARE(accepted(dialog), gradesField);
}

void tst_FieldEditDlg::columnTypes()
{
    FieldEditDlg dialog;
    dialog.setField(gradesField);
    const QComboBox* combo = columnType(dialog, 0);
    QCOMPARE(combo->property("inTable"), QVariant(true));
    const QList<QPair<QString, int>> expected{
        {"Строка", 0}, {"Дата", 3}, {"Счетчик", 2}, {"Список", 1}};
    QCOMPARE(combo->count(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        QCOMPARE(combo->itemText(i), expected[i].first);
        QCOMPARE(combo->itemData(i).toInt(), expected[i].second);
    }
    dialog.show();
    QTest::keyClick(columnType(dialog, 0), Qt::Key_Down);
    const QJsonArray content = accepted(dialog)["content"].toArray();
    QCOMPARE(content[0].toObject()["typeID"], QJsonValue("3"));
}

void tst_FieldEditDlg::numericTypeIdReadsAsString()
{
    FieldEditDlg dialog;
    dialog.setField({{"tag", "#T"},
                     {"name", "x"},
                     {"type", 4},
                     {"content", QJsonArray{QJsonObject{{"name", "n"}, {"typeID", 2}}}}});
    QCOMPARE(columnType(dialog, 0)->currentText(), QString("Строка"));
    QCOMPARE(accepted(dialog)["content"].toArray()[0].toObject()["typeID"], QJsonValue("0"));
}

void tst_FieldEditDlg::unknownColumnKeysSurvive()
{
    FieldEditDlg dialog;
    const QJsonArray content{QJsonObject{{"name", "n"}, {"typeID", "2"}, {"extra", true}}};
    dialog.setField({{"tag", "#T"}, {"name", "x"}, {"type", 4}, {"content", content}});
    QCOMPARE(accepted(dialog)["content"].toArray(), content);
}

void tst_FieldEditDlg::newRowGoesBehindTheSelectedOne()
{
    FieldEditDlg dialog;
    dialog.setField(gradesField);
    dialog.show();
    clickButton(dialog, "buttonAddTableRow");
    QCOMPARE(table(dialog)->rowCount(), 3);
    QCOMPARE(table(dialog)->item(2, 0)->text(), QString("column_name"));
    QCOMPARE(columnType(dialog, 2)->currentData().toInt(), 0);

    const QRect cell = table(dialog)->visualItemRect(table(dialog)->item(0, 0));
    QTest::mouseClick(table(dialog)->viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
    clickButton(dialog, "buttonAddTableRow");
    QCOMPARE(table(dialog)->item(1, 0)->text(), QString("column_name"));
    QCOMPARE(table(dialog)->item(2, 0)->text(), QString("Оценка"));
    const QJsonArray content = accepted(dialog)["content"].toArray();
    QCOMPARE(content.size(), 4);
    QCOMPARE(content[1].toObject(), (QJsonObject{{"name", "column_name"}, {"typeID", "0"}}));
}

void tst_FieldEditDlg::removesTheSelectedOrTheLastRow()
{
    FieldEditDlg dialog;
    dialog.setField(gradesField);
    dialog.show();
    const QRect cell = table(dialog)->visualItemRect(table(dialog)->item(0, 0));
    QTest::mouseClick(table(dialog)->viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
    clickButton(dialog, "buttonRemoveTableRow");
    QCOMPARE(table(dialog)->rowCount(), 1);
    QCOMPARE(table(dialog)->item(0, 0)->text(), QString("Оценка"));

    dialog.setField(gradesField);
    table(dialog)->clearSelection();
    clickButton(dialog, "buttonRemoveTableRow");
    QCOMPARE(table(dialog)->rowCount(), 1);
    QCOMPARE(table(dialog)->item(0, 0)->text(), QString("Предмет"));
    clickButton(dialog, "buttonRemoveTableRow");
    clickButton(dialog, "buttonRemoveTableRow");
    QCOMPARE(table(dialog)->rowCount(), 0);
}

void tst_FieldEditDlg::columnSettingsReachTheColumn()
{
    FieldEditDlg dialog;
    dialog.setField(gradesField);
    dialog.show();
    changeColumnWidth(dialog, "buttonAccept");
    const QJsonArray content = accepted(dialog)["content"].toArray();
    QCOMPARE(content[0].toObject(),
             (QJsonObject{{"name", "Предмет"}, {"typeID", "0"}, {"edtColumnW", "200"}}));
    QCOMPARE(content[1].toObject(), gradeColumns[1].toObject());
}

void tst_FieldEditDlg::cancelledColumnSettingsChangeNothing()
{
    FieldEditDlg dialog;
    dialog.setField(gradesField);
    dialog.show();
    changeColumnWidth(dialog, "buttonReject");
    QCOMPARE(accepted(dialog), gradesField);
}

void tst_FieldEditDlg::keysOfAnEarlierTypeSurvive()
{
    FieldEditDlg dialog;
    dialog.setField({{"tag", "#Q"}, {"name", "x"}, {"type", 1}, {"list", 9}});
    dialog.show();
    chooseType(dialog, 0);
    QCOMPARE(accepted(dialog),
             (QJsonObject{{"tag", "#Q"}, {"name", "x"}, {"type", 0}, {"list", 9}}));
}

void tst_FieldEditDlg::reopenedTableStartsEmpty()
{
    FieldEditDlg first;
    first.setField(gradesField);
    first.show();
    chooseType(first, 0);
    const QJsonObject asString = accepted(first);
    QCOMPARE(asString["type"], QJsonValue(0));
    QCOMPARE(asString["content"].toArray(), gradeColumns);

    FieldEditDlg second;
    second.setField(asString);
    second.show();
    chooseType(second, 4);
    QCOMPARE(table(second)->rowCount(), 0);
    QCOMPARE(accepted(second)["content"], QJsonValue(QJsonArray()));
}

void tst_FieldEditDlg::typeBackAndForthLosesNothing()
{
    FieldEditDlg dialog;
    dialog.setField(gradesField);
    dialog.show();
    chooseType(dialog, 0);
    chooseType(dialog, 4);
    QCOMPARE(accepted(dialog), gradesField);
}

void tst_FieldEditDlg::cancelKeepsTheField()
{
    FieldEditDlg dialog;
    dialog.setField(gradesField);
    dialog.show();
    type(dialog, "tagEdit", "#OTHER");
    chooseType(dialog, 5);
    clickButton(dialog, "buttonReject");
    QCOMPARE(dialog.field(), gradesField);
}

void tst_FieldEditDlg::wheelOverATypeChangesNothing()
{
    FieldEditDlg dialog;
    dialog.setField(gradesField);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    wheelOver(columnType(dialog, 0));
    wheelOver(columnType(dialog, 1));
    wheelOver(named<QComboBox>(dialog, "typeCombo"));
    QCOMPARE(accepted(dialog), gradesField);

    FieldEditDlg list;
    list.setField({{"tag", "#Q"}, {"name", "x"}, {"type", 1}, {"list", 9}});
    list.show();
    wheelOver(named<QComboBox>(list, "listCombo"));
    QCOMPARE(accepted(list)["list"], QJsonValue(9));
}

void tst_FieldEditDlg::doubleClickRemovesOneColumn()
{
    FieldEditDlg dialog;
    dialog.setField(gradesField);
    dialog.show();
    doubleClickButton(dialog, "buttonRemoveTableRow");
    QCOMPARE(table(dialog)->rowCount(), 1);
    clickButton(dialog, "buttonRemoveTableRow");
    QCOMPARE(table(dialog)->rowCount(), 0);
}

void tst_FieldEditDlg::enterGoesOnAndAcceptsNothing()
{
    FieldEditDlg dialog;
    dialog.setField(gradesField);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    clickRow(table(dialog), 0);
    typeKeys("Subject");
    pressKey(Qt::Key_Return);
    QTRY_COMPARE(QApplication::focusWidget(), columnType(dialog, 0));
    QCOMPARE(table(dialog)->item(0, 0)->text(), QString("Subject"));
    pressKey(Qt::Key_Return);
    QCOMPARE(QApplication::focusWidget(), columnOptions(dialog, 0));
    QVERIFY(dialog.isVisible());
}

void tst_FieldEditDlg::keysOnAClosedText()
{
    FieldEditDlg dialog;
    dialog.setField(gradesField);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    moveClosedText(table(dialog));
    QCOMPARE(columnTexts(table(dialog), 0), QStringList({"", "Предмет"}));
}

void tst_FieldEditDlg::longValuesAreSeenFromTheirBeginning()
{
    FieldEditDlg dialog;
    const QString longText = QString("слово ").repeated(60);
    dialog.setField({{"tag", "#" + longText}, {"name", longText}, {"type", 0}});
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    for (const char* name : {"tagEdit", "nameEdit"}) {
        QCOMPARE(named<QLineEdit>(dialog, name)->cursorPosition(), 0);
    }
}

QTEST_MAIN(tst_FieldEditDlg)
#include "tst_FieldEditDlg.moc"
