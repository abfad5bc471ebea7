#include <QtTest>

#include <QClipboard>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "app/widgets/EntryTable.h"
#include "support/Widgets.h"

namespace {

/// A line edit, a table of three rows (a text, a combo, a button behind captions) and a button.
class Form : public QWidget
{
public:
    Form()
    {
        auto* layout = new QVBoxLayout(this);
        for (QWidget* widget : {static_cast<QWidget*>(above), static_cast<QWidget*>(table),
                                static_cast<QWidget*>(below)})
        {
            layout->addWidget(widget);
        }
        table->setColumnCount(2);
        table->setRowCount(3);
        for (int row = 0; row < 3; ++row) {
            auto* caption = new QTableWidgetItem("caption");
            caption->setFlags(caption->flags() & ~Qt::ItemIsEditable);
            table->setItem(row, 0, caption);
        }
        table->setItem(0, 1, new QTableWidgetItem("text"));
        table->setCellWidget(1, 1, combo);
        table->setCellWidget(2, 1, button);
    }

    QLineEdit* above = new QLineEdit;
    EntryTable* table = new EntryTable;
    QComboBox* combo = new QComboBox;
    QPushButton* button = new QPushButton;
    QPushButton* below = new QPushButton;
};

/// A dialog with a default button below a table of one value of each kind behind captions.
class EntryDialog : public QDialog
{
public:
    EntryDialog()
    {
        auto* layout = new QVBoxLayout(this);
        for (QWidget* widget : {static_cast<QWidget*>(above), static_cast<QWidget*>(table),
                                static_cast<QWidget*>(accept)})
        {
            layout->addWidget(widget);
        }
        accept->setDefault(true);
        connect(accept, &QPushButton::clicked, this, &QDialog::accept);
        list->addItems({"good", "bad"});
        list->setEditable(true);
        list->setCurrentText("bad");
        date->setDisplayFormat("dd.MM.yyyy");
        date->setDate(QDate(2024, 6, 15));
        counter->setMaximum(1000);
        choice->addItems({"left", "right"});
        table->setColumnCount(2);
        table->setRowCount(6);
        table->setItem(0, 1, new QTableWidgetItem("first"));
        table->setItem(5, 1, new QTableWidgetItem("last"));
        int row = 1;
        for (QWidget* editor : {static_cast<QWidget*>(counter), static_cast<QWidget*>(list),
                                static_cast<QWidget*>(date), static_cast<QWidget*>(choice)})
        {
            table->setCellWidget(row++, 1, editor);
        }
        for (row = 0; row < 6; ++row) {
            auto* caption = new QTableWidgetItem("caption");
            caption->setFlags(caption->flags() & ~Qt::ItemIsEditable);
            table->setItem(row, 0, caption);
        }
        above->setFocus();
    }

    QLineEdit* above = new QLineEdit;
    EntryTable* table = new EntryTable;
    QSpinBox* counter = new QSpinBox;
    QComboBox* list = new QComboBox;
    QDateEdit* date = new QDateEdit;
    QComboBox* choice = new QComboBox;
    QPushButton* accept = new QPushButton;
};

void clickCell(QTableWidget* table, int row)
{
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                      table->visualItemRect(table->item(row, 1)).center());
}

} // namespace

/// The table that is filled in like a form.
class tst_EntryTable : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_form.reset(); }

    void tabGoesFromValueToValueAndOut();
    void shiftTabGoesBack();
    void tabEndsAnEditAndGoesOn();
    void tabBehindTheLastTextEndsTheEdit();
    void emptyTableIsPassed();
    void clickedCellIsWhereTabGoesOn();
    void clickedEditorIsWhereTabGoesOn();

    void typedValuesReplaceTheOnesReachedByTab();
    void typedValuesReplaceTheOnesReachedByEnter();
    void shiftTabSelectsToo();
    void tabFromAnOpenTextSelectsToo();
    void narrowListShowsItsBeginning();

    void enterEndsAnEntryAndGoesOn();
    void enterNeverAccepts();
    void enterStaysOnTheLastValue();

    void clipboardAndClosedTexts();
    void deleteEmptiesAClosedText();
    void pastedCellIsOneLine_data();
    void pastedCellIsOneLine();
    void keysLeaveOtherCellsAlone();

private:
    void show(QWidget& window)
    {
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
    }

    std::unique_ptr<Form> m_form;
};

void tst_EntryTable::init()
{
    m_form = std::make_unique<Form>();
    m_form->show();
    QVERIFY(QTest::qWaitForWindowActive(m_form.get()));
    m_form->above->setFocus();
}

void tst_EntryTable::tabGoesFromValueToValueAndOut()
{
    for (int round = 0; round < 2; ++round) {
        pressKey(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_form->table);
        QCOMPARE(m_form->table->currentIndex(), m_form->table->model()->index(0, 1));
        pressKey(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_form->combo);
        pressKey(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_form->button);
        QCOMPARE(m_form->table->currentRow(), 2);
        pressKey(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_form->below);
        pressKey(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_form->above);
    }
}

void tst_EntryTable::shiftTabGoesBack()
{
    m_form->below->setFocus();
    pressKey(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), m_form->button);
    pressKey(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), m_form->combo);
    pressKey(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), m_form->table);
    QCOMPARE(m_form->table->currentIndex(), m_form->table->model()->index(0, 1));
    pressKey(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), m_form->above);
}

void tst_EntryTable::tabEndsAnEditAndGoesOn()
{
    pressKey(Qt::Key_Tab);
    pressKey(Qt::Key_X); // begins an edit with this letter
    pressKey(Qt::Key_Tab);
    QCOMPARE(m_form->table->item(0, 1)->text(), QString("x"));
    QCOMPARE(QApplication::focusWidget(), m_form->combo);
}

void tst_EntryTable::tabBehindTheLastTextEndsTheEdit()
{
    m_form->table->setRowCount(1);
    pressKey(Qt::Key_Tab);
    pressKey(Qt::Key_X);
    pressKey(Qt::Key_Tab);
    QCOMPARE(m_form->table->item(0, 1)->text(), QString("x"));
    QCOMPARE(QApplication::focusWidget(), m_form->table);
    pressKey(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_form->below);
}

void tst_EntryTable::emptyTableIsPassed()
{
    m_form->table->setRowCount(0);
    pressKey(Qt::Key_Tab);
    pressKey(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_form->below);
}

void tst_EntryTable::clickedCellIsWhereTabGoesOn()
{
    QTableWidget* table = m_form->table;
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                      table->visualItemRect(table->item(1, 0)).center());
    QCOMPARE(QApplication::focusWidget(), table);
    pressKey(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_form->combo);
}

void tst_EntryTable::clickedEditorIsWhereTabGoesOn()
{
    EntryDialog dialog;
    show(dialog);
    clickCell(dialog.table, 0); // and this one stays current
    QTest::mouseClick(dialog.date, Qt::LeftButton);
    pressKey(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), dialog.list);
    QTest::mouseClick(dialog.choice, Qt::LeftButton);
    dialog.choice->hidePopup();
    pressKey(Qt::Key_Tab);
    QCOMPARE(dialog.table->currentIndex(), dialog.table->model()->index(5, 1));
}

void tst_EntryTable::typedValuesReplaceTheOnesReachedByTab()
{
    EntryDialog dialog;
    show(dialog);
    pressKey(Qt::Key_Tab);
    typeKeys("text");
    pressKey(Qt::Key_Tab);
    typeKeys("144");
    pressKey(Qt::Key_Tab);
    typeKeys("five");
    pressKey(Qt::Key_Tab);
    typeKeys("02032001"); // from the day on
    QCOMPARE(dialog.table->item(0, 1)->text(), QString("text"));
    QCOMPARE(dialog.counter->value(), 144);
    QCOMPARE(dialog.list->currentText(), QString("five"));
    QCOMPARE(dialog.date->date(), QDate(2001, 3, 2));
}

void tst_EntryTable::typedValuesReplaceTheOnesReachedByEnter()
{
    EntryDialog dialog;
    show(dialog);
    pressKey(Qt::Key_Tab);
    pressKey(Qt::Key_Return); // past the closed text
    typeKeys("144");
    pressKey(Qt::Key_Enter);
    typeKeys("five");
    pressKey(Qt::Key_Return);
    typeKeys("02032001");
    pressKey(Qt::Key_Return);
    pressKey(Qt::Key_Return); // past the choice
    typeKeys("text");
    pressKey(Qt::Key_Return);
    QTRY_COMPARE(dialog.table->item(5, 1)->text(), QString("text"));
    QCOMPARE(dialog.counter->value(), 144);
    QCOMPARE(dialog.list->currentText(), QString("five"));
    QCOMPARE(dialog.date->date(), QDate(2001, 3, 2));
}

void tst_EntryTable::shiftTabSelectsToo()
{
    EntryDialog dialog;
    dialog.counter->setValue(72);
    show(dialog);
    dialog.accept->setFocus();
    for (int i = 0; i < 4; ++i) {
        pressKey(Qt::Key_Tab, Qt::ShiftModifier);
    }
    // Three sections of a plain date edit, and from its first on to the list.
    while (QApplication::focusWidget() == dialog.date) {
        pressKey(Qt::Key_Tab, Qt::ShiftModifier);
    }
    typeKeys("five");
    pressKey(Qt::Key_Tab, Qt::ShiftModifier);
    typeKeys("144");
    QCOMPARE(dialog.list->currentText(), QString("five"));
    QCOMPARE(dialog.counter->value(), 144);
}

void tst_EntryTable::tabFromAnOpenTextSelectsToo()
{
    EntryDialog dialog;
    show(dialog);
    pressKey(Qt::Key_Tab);
    pressKey(Qt::Key_F2);
    typeKeys("open");
    pressKey(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), dialog.counter);
    typeKeys("144");
    QCOMPARE(dialog.counter->value(), 144);
    QCOMPARE(dialog.table->item(0, 1)->text(), QString("open"));
}

void tst_EntryTable::narrowListShowsItsBeginning()
{
    EntryDialog dialog;
    dialog.list->setCurrentText(QString("word ").repeated(40));
    show(dialog);
    dialog.counter->setFocus();
    dialog.table->setCurrentCell(1, 1);
    pressKey(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), dialog.list);
    QCOMPARE(dialog.list->lineEdit()->cursorPosition(), 0);
    QCOMPARE(dialog.list->lineEdit()->selectedText(), dialog.list->currentText());
}

void tst_EntryTable::enterEndsAnEntryAndGoesOn()
{
    EntryDialog dialog;
    show(dialog);
    pressKey(Qt::Key_Tab);
    typeKeys("text");
    pressKey(Qt::Key_Return);
    QTRY_COMPARE(QApplication::focusWidget(), dialog.counter);
    QCOMPARE(dialog.table->item(0, 1)->text(), QString("text"));
    typeKeys("7");
    for (QWidget* next : {static_cast<QWidget*>(dialog.list), static_cast<QWidget*>(dialog.date),
                          static_cast<QWidget*>(dialog.choice)})
    {
        pressKey(Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), next);
    }
    pressKey(Qt::Key_Return);
    QCOMPARE(QApplication::focusWidget(), dialog.table);
    QCOMPARE(dialog.table->currentIndex(), dialog.table->model()->index(5, 1));
    QCOMPARE(dialog.counter->value(), 7);
    QCOMPARE(dialog.list->currentText(), QString("bad")); // and not the first item
}

void tst_EntryTable::enterNeverAccepts()
{
    EntryDialog dialog;
    show(dialog);
    clickCell(dialog.table, 0);
    for (int i = 0; i < 20; ++i) {
        pressKey(i % 2 ? Qt::Key_Return : Qt::Key_Enter);
    }
    QTest::mouseClick(dialog.table->viewport(), Qt::LeftButton, Qt::NoModifier,
                      dialog.table->visualItemRect(dialog.table->item(5, 0)).center());
    pressKey(Qt::Key_Return); // a caption is no value
    QVERIFY(dialog.isVisible());
    // Outside of the table the key is what it was.
    dialog.above->setFocus();
    pressKey(Qt::Key_Return);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void tst_EntryTable::enterStaysOnTheLastValue()
{
    EntryDialog dialog;
    dialog.table->setRowCount(2);
    show(dialog);
    QTest::mouseClick(dialog.counter, Qt::LeftButton);
    typeKeys("14");
    pressKey(Qt::Key_Return);
    QCOMPARE(QApplication::focusWidget(), dialog.counter);
    typeKeys("25");
    QCOMPARE(dialog.counter->value(), 25);
    pressKey(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), dialog.accept);
}

void tst_EntryTable::clipboardAndClosedTexts()
{
    EntryDialog dialog;
    show(dialog);
    QClipboard* clipboard = QApplication::clipboard();
    clickCell(dialog.table, 0);
    pressKey(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(clipboard->text(), QString("first"));
    clickCell(dialog.table, 5);
    pressKey(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(dialog.table->item(5, 1)->text(), QString("first"));
    clipboard->setText("other");
    pressKey(Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(clipboard->text(), QString("first"));
    QCOMPARE(dialog.table->item(5, 1)->text(), QString());
    QCOMPARE(QApplication::focusWidget(), dialog.table); // nothing was opened
    clipboard->clear();
    clickCell(dialog.table, 0);
    pressKey(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(dialog.table->item(0, 1)->text(), QString("first"));
}

void tst_EntryTable::deleteEmptiesAClosedText()
{
    EntryDialog dialog;
    show(dialog);
    clickCell(dialog.table, 0);
    pressKey(Qt::Key_Delete);
    QCOMPARE(dialog.table->item(0, 1)->text(), QString());
    QCOMPARE(QApplication::focusWidget(), dialog.table);
    // In an open text the key takes a letter.
    clickCell(dialog.table, 5);
    pressKey(Qt::Key_F2);
    pressKey(Qt::Key_Home);
    pressKey(Qt::Key_Delete);
    pressKey(Qt::Key_Tab);
    QCOMPARE(dialog.table->item(5, 1)->text(), QString("ast"));
}

void tst_EntryTable::pastedCellIsOneLine_data()
{
    QTest::addColumn<QString>("clipboard");
    QTest::addColumn<QString>("pasted");
    QTest::newRow("cell of a spreadsheet") << "cell\r\n"
                                           << "cell";
    QTest::newRow("two lines") << "one\r\ntwo\n"
                               << "one two";
    QTest::newRow("two cells") << "one\ttwo"
                               << "one two";
    QTest::newRow("blanks stay") << " one  two "
                                 << " one  two ";
}

void tst_EntryTable::pastedCellIsOneLine()
{
    QFETCH(QString, clipboard);
    QFETCH(QString, pasted);
    EntryDialog dialog;
    show(dialog);
    QApplication::clipboard()->setText(clipboard);
    clickCell(dialog.table, 0);
    pressKey(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(dialog.table->item(0, 1)->text(), pasted);
}

void tst_EntryTable::keysLeaveOtherCellsAlone()
{
    EntryDialog dialog;
    show(dialog);
    QApplication::clipboard()->setText("pasted");
    clickCell(dialog.table, 0); // current, but the keyboard goes elsewhere
    QTest::mouseClick(dialog.choice, Qt::LeftButton);
    dialog.choice->hidePopup();
    pressKey(Qt::Key_Delete);
    pressKey(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(dialog.table->item(0, 1)->text(), QString("first"));

    QTableWidgetItem* caption = dialog.table->item(0, 0);
    QTest::mouseClick(dialog.table->viewport(), Qt::LeftButton, Qt::NoModifier,
                      dialog.table->visualItemRect(caption).center());
    pressKey(Qt::Key_Delete);
    pressKey(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(caption->text(), QString("caption"));
}

QTEST_MAIN(tst_EntryTable)
#include "tst_EntryTable.moc"
