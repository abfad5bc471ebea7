#include <QtTest>

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/widgets/EntryTable.h"

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

void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
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

private:
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
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_form->table);
        QCOMPARE(m_form->table->currentIndex(), m_form->table->model()->index(0, 1));
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_form->combo);
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_form->button);
        QCOMPARE(m_form->table->currentRow(), 2);
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_form->below);
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_form->above);
    }
}

void tst_EntryTable::shiftTabGoesBack()
{
    m_form->below->setFocus();
    press(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), m_form->button);
    press(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), m_form->combo);
    press(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), m_form->table);
    QCOMPARE(m_form->table->currentIndex(), m_form->table->model()->index(0, 1));
    press(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), m_form->above);
}

void tst_EntryTable::tabEndsAnEditAndGoesOn()
{
    press(Qt::Key_Tab);
    press(Qt::Key_X); // begins an edit with this letter
    press(Qt::Key_Tab);
    QCOMPARE(m_form->table->item(0, 1)->text(), QString("x"));
    QCOMPARE(QApplication::focusWidget(), m_form->combo);
}

void tst_EntryTable::tabBehindTheLastTextEndsTheEdit()
{
    m_form->table->setRowCount(1);
    press(Qt::Key_Tab);
    press(Qt::Key_X);
    press(Qt::Key_Tab);
    QCOMPARE(m_form->table->item(0, 1)->text(), QString("x"));
    QCOMPARE(QApplication::focusWidget(), m_form->table);
    press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_form->below);
}

void tst_EntryTable::emptyTableIsPassed()
{
    m_form->table->setRowCount(0);
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_form->below);
}

void tst_EntryTable::clickedCellIsWhereTabGoesOn()
{
    QTableWidget* table = m_form->table;
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                      table->visualItemRect(table->item(1, 0)).center());
    QCOMPARE(QApplication::focusWidget(), table);
    press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_form->combo);
}

QTEST_MAIN(tst_EntryTable)
#include "tst_EntryTable.moc"
