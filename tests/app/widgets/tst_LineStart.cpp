#include <QtTest>

#include <QDateEdit>
#include <QLineEdit>
#include <QVBoxLayout>

#include "app/widgets/LineStart.h"
#include "support/Widgets.h"

namespace {

const QString longText = QString("word ").repeated(60);

class Form : public QWidget
{
public:
    Form()
    {
        auto* layout = new QVBoxLayout(this);
        for (QWidget* widget : {static_cast<QWidget*>(first), static_cast<QWidget*>(second),
                                static_cast<QWidget*>(date)})
        {
            layout->addWidget(widget);
        }
        LineStart::installAll(this);
        first->setFocus();
    }

    QLineEdit* first = new QLineEdit;
    QLineEdit* second = new QLineEdit;
    QDateEdit* date = new QDateEdit;
};

} // namespace

/// Line edits that show the beginning of their text.
class tst_LineStart : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_form = std::make_unique<Form>(); }
    void cleanup() { m_form.reset(); }

    void setTextShowsItsBeginning();
    void leftTextShowsItsBeginning();
    void typedTextGoesToTheEnd();
    void typedTextGoesWhereTheUserPutTheCursor();
    void typedTextReplacesASelection();
    void textSetWhileTypingStays();

private:
    void show()
    {
        m_form->show();
        QVERIFY(QTest::qWaitForWindowActive(m_form.get()));
    }

    std::unique_ptr<Form> m_form;
};

void tst_LineStart::setTextShowsItsBeginning()
{
    m_form->first->setText(longText);
    m_form->second->setText(longText);
    show();
    QCOMPARE(m_form->first->cursorPosition(), 0);
    QCOMPARE(m_form->second->cursorPosition(), 0);
    m_form->second->setText(longText + longText);
    QCOMPARE(m_form->second->cursorPosition(), 0);
}

void tst_LineStart::leftTextShowsItsBeginning()
{
    show();
    typeKeys(longText);
    QCOMPARE(m_form->first->text(), longText);
    QCOMPARE(m_form->first->cursorPosition(), longText.size());
    pressKey(Qt::Key_Tab);
    QCOMPARE(m_form->first->cursorPosition(), 0);
}

void tst_LineStart::typedTextGoesToTheEnd()
{
    m_form->first->setText("Sm");
    m_form->second->setText("Bl");
    show();
    typeKeys("ith");
    QCOMPARE(m_form->first->text(), QString("Smith"));
    QTest::keyClicks(m_form->second, "ack"); // sent there without the focus
    QCOMPARE(m_form->second->text(), QString("Black"));
    QTest::keyClick(m_form->second, Qt::Key_Backspace);
    QCOMPARE(m_form->second->text(), QString("Blac"));
}

void tst_LineStart::typedTextGoesWhereTheUserPutTheCursor()
{
    m_form->first->setText("mith");
    show();
    QTest::mouseClick(m_form->first, Qt::LeftButton, Qt::NoModifier, QPoint(1, 5));
    typeKeys("S");
    QCOMPARE(m_form->first->text(), QString("Smith"));
    pressKey(Qt::Key_Home);
    typeKeys("A");
    QCOMPARE(m_form->first->text(), QString("ASmith"));
}

void tst_LineStart::typedTextReplacesASelection()
{
    m_form->second->setText("old");
    show();
    pressKey(Qt::Key_Tab);
    typeKeys("new");
    QCOMPARE(m_form->second->text(), QString("new"));
    m_form->second->setText("old");
    m_form->second->selectAll();
    typeKeys("newer");
    QCOMPARE(m_form->second->text(), QString("newer"));
}

void tst_LineStart::textSetWhileTypingStays()
{
    show();
    m_form->first->setText("given");
    typeKeys("!");
    QCOMPARE(m_form->first->text(), QString("given!"));
}

QTEST_MAIN(tst_LineStart)
#include "tst_LineStart.moc"
