#include <QtTest>

#include <QComboBox>
#include <QPushButton>
#include <QSpinBox>

#include "forms/TableColumFormDialog.h"
#include "store/DataBase.h"
#include "support/ModalDriver.h"
#include "support/TempApplication.h"
#include "support/Widgets.h"

/// Additional settings of one column of a table field.
class tst_TableColumFormDialog : public QObject
{
    Q_OBJECT

private slots:
    void window();
    void startsFromNothing();
    void startsFromStoredSettings();
    void numbersInsteadOfStringsReadAsMissing();
    void danglingListShowsNone();
    void acceptStoresStrings();
    void noneRemovesTheList();
    void cancelKeepsTheObject();
    void failedSelectTellsTheUser();
};

namespace {

QSpinBox* widthSpin(const QDialog& dialog)
{
    return named<QSpinBox>(dialog, "spinBoxWidthInEditor");
}

QComboBox* listCombo(const QDialog& dialog)
{
    return named<QComboBox>(dialog, "comboBoxList");
}

} // namespace

void tst_TableColumFormDialog::window()
{
    TempApplication app;
    TableColumFormDialog dialog((QJsonObject()));
    dialog.show();
    QCOMPARE(dialog.windowTitle(), QString("Доп.параметры"));
    QCOMPARE(dialog.size(), QSize(317, 105));
    QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
    QCOMPARE(widthSpin(dialog)->minimum(), -1);
    QCOMPARE(widthSpin(dialog)->maximum(), 500);
    QCOMPARE(widthSpin(dialog)->toolTip(),
             QString("Ширина колонки в интерфейсе при редактировании документа"));
    QCOMPARE(listCombo(dialog)->toolTip(),
             QString("Список для выбора значения.\nИспользуется только для полей с типом "
                     "\"Список\""));
}

void tst_TableColumFormDialog::startsFromNothing()
{
    TempApplication app;
    app.exec("INSERT INTO lists (LIST_NAME) VALUES ('Оценки')");
    TableColumFormDialog dialog((QJsonObject()));
    QCOMPARE(widthSpin(dialog)->value(), -1);
    QCOMPARE(listCombo(dialog)->count(), 2);
    QCOMPARE(listCombo(dialog)->currentText(), QString("Нет"));
    QVERIFY(listCombo(dialog)->currentData().isNull());
    QCOMPARE(listCombo(dialog)->itemText(1), QString("Оценки"));
}

void tst_TableColumFormDialog::startsFromStoredSettings()
{
    TempApplication app;
    app.exec("INSERT INTO lists (ID, LIST_NAME) VALUES (7, 'Оценки'), (9, 'Предметы')");
    TableColumFormDialog dialog(QJsonObject{{"edtColumnW", "60"}, {"listID", "9"}});
    QCOMPARE(widthSpin(dialog)->value(), 60);
    QCOMPARE(listCombo(dialog)->currentText(), QString("Предметы"));
    QCOMPARE(listCombo(dialog)->currentData().toInt(), 9);
}

void tst_TableColumFormDialog::numbersInsteadOfStringsReadAsMissing()
{
    TempApplication app;
    app.exec("INSERT INTO lists (ID, LIST_NAME) VALUES (7, 'Оценки')");
    TableColumFormDialog dialog(QJsonObject{{"edtColumnW", 60}, {"listID", 7}});
    QCOMPARE(widthSpin(dialog)->value(), -1);
    QCOMPARE(listCombo(dialog)->currentText(), QString("Нет"));
}

void tst_TableColumFormDialog::danglingListShowsNone()
{
    TempApplication app;
    app.exec("INSERT INTO lists (ID, LIST_NAME) VALUES (7, 'Оценки')");
    TableColumFormDialog dialog(QJsonObject{{"listID", "8"}});
    QCOMPARE(listCombo(dialog)->currentText(), QString("Нет"));
}

void tst_TableColumFormDialog::acceptStoresStrings()
{
    TempApplication app;
    app.exec("INSERT INTO lists (ID, LIST_NAME) VALUES (7, 'Оценки')");
    TableColumFormDialog dialog(QJsonObject{{"name", "Оценка"}, {"other", 5}});
    dialog.show();
    widthSpin(dialog)->setValue(120);
    listCombo(dialog)->setFocus();
    QTest::keyClick(listCombo(dialog), Qt::Key_Down);
    clickButton(dialog, "buttonAccept");
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(
        dialog.column(),
        (QJsonObject{{"name", "Оценка"}, {"other", 5}, {"edtColumnW", "120"}, {"listID", "7"}}));
}

void tst_TableColumFormDialog::noneRemovesTheList()
{
    TempApplication app;
    app.exec("INSERT INTO lists (ID, LIST_NAME) VALUES (7, 'Оценки')");
    TableColumFormDialog dialog(QJsonObject{{"listID", "7"}});
    dialog.show();
    QTest::keyClick(listCombo(dialog), Qt::Key_Up);
    clickButton(dialog, "buttonAccept");
    QCOMPARE(dialog.column(), (QJsonObject{{"edtColumnW", "-1"}}));
}

void tst_TableColumFormDialog::cancelKeepsTheObject()
{
    TempApplication app;
    const QJsonObject column{{"edtColumnW", "60"}};
    TableColumFormDialog dialog(column);
    dialog.show();
    widthSpin(dialog)->setValue(120);
    clickButton(dialog, "buttonReject");
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(dialog.column(), column);
}

void tst_TableColumFormDialog::failedSelectTellsTheUser()
{
    TempApplication app;
    app.exec("DROP TABLE lists");
    ModalDriver driver;
    driver.expectMessageStarting("Ошибка", "Ошибка SQL (lists): no such table: lists");
    TableColumFormDialog dialog((QJsonObject()));
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(listCombo(dialog)->count(), 1);
    QCOMPARE(listCombo(dialog)->itemText(0), QString("Нет"));
}

QTEST_MAIN(tst_TableColumFormDialog)
#include "tst_TableColumFormDialog.moc"
