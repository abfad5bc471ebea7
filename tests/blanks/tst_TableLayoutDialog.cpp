#include <QtTest>

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

#include "blanks/TableLayoutDialog.h"
#include "support/Widgets.h"

/// Rows and columns of a table item, edited by clicks and keys.
class tst_TableLayoutDialog : public QObject
{
    Q_OBJECT

private slots:
    void window();
    void startsWithTheFirstTenRows();
    void showsWhatItIsGiven();
    void missingAlignReadsAsLeft();
    void acceptTakesTheWidgets();
    void cancelKeepsWhatWasGiven();
    void addedRowIsEmptyAndLeft();
    void deletedRowMakesTheNextCurrent();
    void deletingNeedsACurrentRow();
    void removingAllRowsGivesEmptyArrays();
    void textsThatAreNoNumbersGiveZero();
    void openCellEditorIsTaken();
    void doubleClickDeletesOneColumn();
    void wheelOverAnAlignmentChangesNothing();
    void enterGoesOnAndAcceptsNothing();
    void keysOnAClosedText();
};

namespace {

QTableWidget* table(const QDialog& dialog)
{
    return named<QTableWidget>(dialog, "columnsTable");
}

QComboBox* align(const QDialog& dialog, int row)
{
    return qobject_cast<QComboBox*>(table(dialog)->cellWidget(row, 1));
}

void type(const QDialog& dialog, const char* edit, const QString& text)
{
    auto* line = named<QLineEdit>(dialog, edit);
    line->selectAll();
    QTest::keyClicks(line, text);
}

// Leaves the cell's editor open.
QLineEdit* typeWidth(const QDialog& dialog, int row, const QString& text)
{
    table(dialog)->setCurrentCell(row, 0);
    table(dialog)->editItem(table(dialog)->item(row, 0));
    auto* editor = table(dialog)->viewport()->findChild<QLineEdit*>();
    editor->selectAll();
    QTest::keyClicks(editor, text);
    return editor;
}

void enterWidth(const QDialog& dialog, int row, const QString& text)
{
    QTest::keyClick(typeWidth(dialog, row, text), Qt::Key_Return);
    QApplication::processEvents(); // the table takes the text when the key is done
}

} // namespace

void tst_TableLayoutDialog::window()
{
    TableLayoutDialog dialog;
    QCOMPARE(dialog.windowTitle(), QString("Колонки таблицы"));
    QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    QCOMPARE(named<QLabel>(dialog, "label")->text(), QString("Строки с "));
    QCOMPARE(named<QLabel>(dialog, "label_2")->text(), QString("по"));
    for (const char* name : {"label", "label_2"}) {
        const Qt::Alignment alignment = named<QLabel>(dialog, name)->alignment();
        QVERIFY(alignment.testFlag(Qt::AlignRight) && alignment.testFlag(Qt::AlignVCenter));
    }
    const auto* add = named<QPushButton>(dialog, "buttonAddCol");
    const auto* remove = named<QPushButton>(dialog, "buttonRemoveCol");
    QCOMPARE(add->toolTip(), QString("Добавить строку"));
    QCOMPARE(remove->toolTip(), QString("Удалить строку"));
    for (const QPushButton* button : {add, remove}) {
        QVERIFY(button->text().isEmpty());
        QVERIFY(!button->icon().isNull());
        QCOMPARE(button->iconSize(), QSize(32, 32));
    }
    QCOMPARE(table(dialog)->columnCount(), 2);
    QCOMPARE(table(dialog)->horizontalHeaderItem(0)->text(), QString("Ширина столбца"));
    QCOMPARE(table(dialog)->horizontalHeaderItem(1)->text(), QString("Выравнивание"));
    QVERIFY(table(dialog)->horizontalHeader()->stretchLastSection());
    QVERIFY(table(dialog)->verticalHeader()->isHidden());
    compareDialogButtons(dialog);
    QVERIFY(!named<QLineEdit>(dialog, "fromEdit")->validator());
    QVERIFY(!named<QLineEdit>(dialog, "toEdit")->validator());
}

void tst_TableLayoutDialog::startsWithTheFirstTenRows()
{
    TableLayoutDialog dialog;
    QCOMPARE(dialog.rowFrom(), 1);
    QCOMPARE(dialog.rowTo(), 10);
    QCOMPARE(named<QLineEdit>(dialog, "fromEdit")->text(), QString("1"));
    QCOMPARE(named<QLineEdit>(dialog, "toEdit")->text(), QString("10"));
    QVERIFY(dialog.columnsWidth().isEmpty());
    QVERIFY(dialog.columnsAlign().isEmpty());
}

void tst_TableLayoutDialog::showsWhatItIsGiven()
{
    TableLayoutDialog dialog;
    dialog.setColumns({1}, {0});
    dialog.setColumns({260, 80, 60}, {0, 2, 1});
    dialog.setRowFrom(3);
    dialog.setRowTo(25);
    QCOMPARE(table(dialog)->rowCount(), 3);
    QCOMPARE(table(dialog)->item(0, 0)->text(), QString("260"));
    QCOMPARE(table(dialog)->item(2, 0)->text(), QString("60"));
    QCOMPARE(align(dialog, 0)->currentText(), QString("Слева"));
    QCOMPARE(align(dialog, 1)->currentText(), QString("По центру"));
    QCOMPARE(align(dialog, 2)->currentText(), QString("Справа"));
    QCOMPARE(align(dialog, 0)->styleSheet(), QString("border: none"));
    QCOMPARE(named<QLineEdit>(dialog, "fromEdit")->text(), QString("3"));
    QCOMPARE(named<QLineEdit>(dialog, "toEdit")->text(), QString("25"));
}

void tst_TableLayoutDialog::missingAlignReadsAsLeft()
{
    TableLayoutDialog dialog;
    dialog.setColumns({10, 20, 30}, {2});
    QCOMPARE(align(dialog, 0)->currentIndex(), 2);
    QCOMPARE(align(dialog, 1)->currentIndex(), 0);
    QCOMPARE(align(dialog, 2)->currentIndex(), 0);
    QCOMPARE(dialog.columnsAlign(), QJsonArray{2}); // stored as given until accepted
    clickButton(dialog, "buttonAccept");
    QCOMPARE(dialog.columnsAlign(), (QJsonArray{2, 0, 0}));
}

void tst_TableLayoutDialog::acceptTakesTheWidgets()
{
    TableLayoutDialog dialog;
    dialog.setColumns({150, 40}, {0, 1});
    dialog.show();
    enterWidth(dialog, 0, "210");
    align(dialog, 1)->setFocus();
    QTest::keyClick(align(dialog, 1), Qt::Key_Down);
    type(dialog, "fromEdit", "2");
    type(dialog, "toEdit", "7");
    QCOMPARE(dialog.columnsWidth(), (QJsonArray{150, 40}));
    clickButton(dialog, "buttonAccept");
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.columnsWidth(), (QJsonArray{210, 40}));
    QCOMPARE(dialog.columnsAlign(), (QJsonArray{0, 2}));
    QCOMPARE(dialog.rowFrom(), 2);
    QCOMPARE(dialog.rowTo(), 7);
}

void tst_TableLayoutDialog::cancelKeepsWhatWasGiven()
{
    TableLayoutDialog dialog;
    dialog.setColumns({150}, {2});
    dialog.setRowFrom(4);
    dialog.setRowTo(5);
    dialog.show();
    clickButton(dialog, "buttonAddCol");
    enterWidth(dialog, 0, "99");
    type(dialog, "fromEdit", "8");
    type(dialog, "toEdit", "9");
    clickButton(dialog, "buttonReject");
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(dialog.columnsWidth(), QJsonArray{150});
    QCOMPARE(dialog.columnsAlign(), QJsonArray{2});
    QCOMPARE(dialog.rowFrom(), 4);
    QCOMPARE(dialog.rowTo(), 5);
}

void tst_TableLayoutDialog::addedRowIsEmptyAndLeft()
{
    TableLayoutDialog dialog;
    dialog.setColumns({150}, {2});
    clickButton(dialog, "buttonAddCol");
    QCOMPARE(table(dialog)->rowCount(), 2);
    QVERIFY(table(dialog)->item(1, 0)->text().isEmpty());
    QCOMPARE(align(dialog, 1)->currentText(), QString("Слева"));
    clickButton(dialog, "buttonAccept");
    QCOMPARE(dialog.columnsWidth(), (QJsonArray{150, 0}));
    QCOMPARE(dialog.columnsAlign(), (QJsonArray{2, 0}));
}

void tst_TableLayoutDialog::deletedRowMakesTheNextCurrent()
{
    TableLayoutDialog dialog;
    dialog.setColumns({10, 20, 30}, {0, 1, 2});
    table(dialog)->setCurrentCell(1, 0);
    clickButton(dialog, "buttonRemoveCol");
    QCOMPARE(table(dialog)->currentRow(), 1);
    QCOMPARE(table(dialog)->currentColumn(), 0);
    QCOMPARE(table(dialog)->currentItem()->text(), QString("30"));
    clickButton(dialog, "buttonAccept");
    QCOMPARE(dialog.columnsWidth(), (QJsonArray{10, 30}));
    QCOMPARE(dialog.columnsAlign(), (QJsonArray{0, 2}));
}

void tst_TableLayoutDialog::deletingNeedsACurrentRow()
{
    TableLayoutDialog dialog;
    dialog.setColumns({10}, {0});
    table(dialog)->setCurrentCell(-1, -1);
    clickButton(dialog, "buttonRemoveCol");
    QCOMPARE(table(dialog)->rowCount(), 1);
}

void tst_TableLayoutDialog::removingAllRowsGivesEmptyArrays()
{
    TableLayoutDialog dialog;
    dialog.setColumns({10, 20}, {0, 1});
    table(dialog)->setCurrentCell(0, 0);
    clickButton(dialog, "buttonRemoveCol");
    clickButton(dialog, "buttonRemoveCol");
    QCOMPARE(table(dialog)->rowCount(), 0);
    clickButton(dialog, "buttonAccept");
    QCOMPARE(dialog.columnsWidth(), QJsonArray());
    QCOMPARE(dialog.columnsAlign(), QJsonArray());
}

void tst_TableLayoutDialog::textsThatAreNoNumbersGiveZero()
{
    TableLayoutDialog dialog;
    dialog.setColumns({150}, {0});
    dialog.show();
    enterWidth(dialog, 0, "wide");
    type(dialog, "fromEdit", "abc");
    type(dialog, "toEdit", "1.5");
    clickButton(dialog, "buttonAccept");
    QCOMPARE(dialog.columnsWidth(), QJsonArray{0});
    QCOMPARE(dialog.rowFrom(), 0);
    QCOMPARE(dialog.rowTo(), 0);
}

void tst_TableLayoutDialog::openCellEditorIsTaken()
{
    TableLayoutDialog dialog;
    dialog.setColumns({150}, {0});
    dialog.show();
    dialog.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    typeWidth(dialog, 0, "77");
    clickButton(dialog, "buttonAccept");
    QCOMPARE(dialog.columnsWidth(), QJsonArray{77});
}

void tst_TableLayoutDialog::doubleClickDeletesOneColumn()
{
    TableLayoutDialog dialog;
    dialog.setColumns({10, 20, 30}, {0, 1, 2});
    dialog.show();
    table(dialog)->setCurrentCell(0, 0);
    doubleClickButton(dialog, "buttonRemoveCol");
    QCOMPARE(columnTexts(table(dialog), 0), QStringList({"20", "30"}));
    clickButton(dialog, "buttonRemoveCol");
    QCOMPARE(columnTexts(table(dialog), 0), QStringList("30"));
}

void tst_TableLayoutDialog::wheelOverAnAlignmentChangesNothing()
{
    TableLayoutDialog dialog;
    dialog.setColumns({10}, {1});
    dialog.show();
    wheelOver(align(dialog, 0));
    QCOMPARE(align(dialog, 0)->currentIndex(), 1);
}

void tst_TableLayoutDialog::enterGoesOnAndAcceptsNothing()
{
    TableLayoutDialog dialog;
    dialog.setColumns({10, 20}, {0, 1});
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    clickRow(table(dialog), 0);
    typeKeys("150");
    pressKey(Qt::Key_Return);
    QTRY_COMPARE(QApplication::focusWidget(), align(dialog, 0));
    pressKey(Qt::Key_Return);
    typeKeys("60");
    pressKey(Qt::Key_Return);
    QTRY_COMPARE(QApplication::focusWidget(), align(dialog, 1));
    pressKey(Qt::Key_Return);
    QVERIFY(dialog.isVisible());
    QCOMPARE(columnTexts(table(dialog), 0), QStringList({"150", "60"}));
}

void tst_TableLayoutDialog::keysOnAClosedText()
{
    TableLayoutDialog dialog;
    dialog.setColumns({10, 20}, {0, 1});
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    moveClosedText(table(dialog));
    QCOMPARE(columnTexts(table(dialog), 0), QStringList({"", "10"}));
}

QTEST_MAIN(tst_TableLayoutDialog)
#include "tst_TableLayoutDialog.moc"
