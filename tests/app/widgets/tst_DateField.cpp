#include <QtTest>

#include <QLineEdit>
#include <QVBoxLayout>

#include "app/widgets/DateField.h"
#include "support/Widgets.h"

namespace {

class Form : public QWidget
{
public:
    Form()
    {
        auto* layout = new QVBoxLayout(this);
        for (QWidget* widget : {static_cast<QWidget*>(above), static_cast<QWidget*>(date),
                                static_cast<QWidget*>(below)})
        {
            layout->addWidget(widget);
        }
        date->setDisplayFormat("dd-MM-yyyy");
        date->setDate(QDate(2024, 6, 15));
    }

    QLineEdit* above = new QLineEdit;
    DateField* date = new DateField;
    QLineEdit* below = new QLineEdit;
};

} // namespace

/// The date edit that is one stop for Tab.
class tst_DateField : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_form.reset(); }

    void oneTabForADate();
    void shiftTabBeginsWithTheDayToo();
    void arrowsGoFromSectionToSection();
    void arrowsStopAtTheEnds();
    void separatorsStayInside();

private:
    std::unique_ptr<Form> m_form;
};

void tst_DateField::init()
{
    m_form = std::make_unique<Form>();
    m_form->show();
    QVERIFY(QTest::qWaitForWindowActive(m_form.get()));
    m_form->above->setFocus();
}

void tst_DateField::oneTabForADate()
{
    pressKey(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_form->date);
    pressKey(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_form->below);
    pressKey(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), m_form->date);
    pressKey(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), m_form->above);
}

void tst_DateField::shiftTabBeginsWithTheDayToo()
{
    m_form->below->setFocus();
    pressKey(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(m_form->date->currentSection(), QDateTimeEdit::DaySection);
    typeKeys("02032001");
    QCOMPARE(m_form->date->date(), QDate(2001, 3, 2));
}

void tst_DateField::arrowsGoFromSectionToSection()
{
    pressKey(Qt::Key_Tab);
    pressKey(Qt::Key_Right);
    QCOMPARE(m_form->date->currentSection(), QDateTimeEdit::MonthSection);
    typeKeys("11"); // two figures end a month, and the year is next
    QCOMPARE(m_form->date->currentSection(), QDateTimeEdit::YearSection);
    pressKey(Qt::Key_Left);
    pressKey(Qt::Key_Left);
    QCOMPARE(m_form->date->currentSection(), QDateTimeEdit::DaySection);
    typeKeys("03");
    QCOMPARE(m_form->date->date(), QDate(2024, 11, 3));
}

void tst_DateField::arrowsStopAtTheEnds()
{
    pressKey(Qt::Key_Tab);
    for (int i = 0; i < 6; ++i) {
        pressKey(Qt::Key_Right);
    }
    QCOMPARE(m_form->date->currentSection(), QDateTimeEdit::YearSection);
    for (int i = 0; i < 16; ++i) {
        pressKey(Qt::Key_Left);
    }
    QCOMPARE(m_form->date->currentSection(), QDateTimeEdit::DaySection);
    QCOMPARE(QApplication::focusWidget(), m_form->date);
    QCOMPARE(m_form->date->date(), QDate(2024, 6, 15));
}

void tst_DateField::separatorsStayInside()
{
    pressKey(Qt::Key_Tab);
    typeKeys("2-3-2001");
    QCOMPARE(QApplication::focusWidget(), m_form->date);
    QCOMPARE(m_form->date->date(), QDate(2001, 3, 2));
    for (const char* typed : {"04-05-2002", "04-5-2002", "4-05-2002", "04052002"}) {
        m_form->above->setFocus();
        m_form->date->setDate(QDate(2024, 11, 30));
        pressKey(Qt::Key_Tab);
        typeKeys(typed);
        QCOMPARE(m_form->date->date(), QDate(2002, 5, 4));
    }
    m_form->date->setDisplayFormat("dd.MM.yyyy");
    m_form->above->setFocus();
    pressKey(Qt::Key_Tab);
    typeKeys("17.12.1999");
    QCOMPARE(m_form->date->date(), QDate(1999, 12, 17));
}

QTEST_MAIN(tst_DateField)
#include "tst_DateField.moc"
