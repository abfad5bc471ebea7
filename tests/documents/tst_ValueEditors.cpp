#include <QtTest>

#include <QCalendarWidget>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QTextCharFormat>
#include <QTextEdit>

#include "DocumentFixture.h"
#include "app/AppStyle.h"
#include "documents/CellDateEdit.h"
#include "documents/DocumentContent.h"
#include "documents/TextMemoDialog.h"
#include "documents/TextValDialog.h"
#include "documents/ZelvoraTableButton.h"
#include "documents/ZelvoraTextButton.h"
#include "support/ModalDriver.h"

/// The buttons that hold a value, the editor of long texts and the prompt for one line.
class tst_ValueEditors : public QObject
{
    Q_OBJECT

private slots:
    void textPropertyIsTheValue();
    void tableButtonStartsEmpty();

    void cellCalendarComesWhenOpened();

    void memoLooks();
    void memoTakesNoBaseStyle();
    void memoGivesPlainText();
    void memoReadOnly();
    void textEditedAndAccepted();
    void textEditCancelled();
    void textViewKeepsTheText();

    void promptLooks();
    void promptAccepted();
    void promptAcceptsEmptyText();
    void promptRejected();
};

void tst_ValueEditors::textPropertyIsTheValue()
{
    QWidget parent;
    ZelvoraTextButton button(&parent);
    QCOMPARE(button.parentWidget(), &parent);
    QVERIFY(qobject_cast<QPushButton*>(static_cast<QObject*>(&button)));
    button.setText("Изменить");
    QCOMPARE(button.property("text").toString(), QString());

    QVERIFY(button.setProperty("text", "первая\nвторая"));
    QCOMPARE(button.property("text").toString(), QString("первая\nвторая"));
    QCOMPARE(button.text(), QString("Изменить"));
}

void tst_ValueEditors::tableButtonStartsEmpty()
{
    QWidget parent;
    ZelvoraTableButton button(&parent);
    QCOMPARE(button.parentWidget(), &parent);
    QVERIFY(button.columns.isEmpty());
    QVERIFY(button.value.isEmpty());
}

void tst_ValueEditors::cellCalendarComesWhenOpened()
{
    QWidget window;
    auto* edit = new CellDateEdit(&window);
    edit->setDate(QDate(2024, 6, 15));
    edit->resize(120, 30);
    window.resize(500, 400);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(!window.findChild<QCalendarWidget*>());

    QTest::mouseClick(edit, Qt::LeftButton, Qt::NoModifier, QPoint(112, 15));
    auto* calendar = window.findChild<QCalendarWidget*>();
    QVERIFY(calendar && calendar->isVisible());
    QCOMPARE(calendar->size(), QSize(400, 300));
    QCOMPARE(calendar->styleSheet(), QString("background: #B8C7FF;"));
    QCOMPARE(calendar->headerTextFormat().background().color(), QColor(Qt::lightGray));
    QCOMPARE(calendar->selectedDate(), QDate(2024, 6, 15));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(edit->date(), QDate(2024, 6, 16));
}

void tst_ValueEditors::memoLooks()
{
    TextMemoDialog dialog;
    QCOMPARE(dialog.windowTitle(), QString("Dialog"));
    QCOMPARE(dialog.size(), QSize(419, 334));
    const auto* accept = named<QPushButton>(&dialog, "buttonAccept");
    const auto* reject = named<QPushButton>(&dialog, "buttonReject");
    compareDialogButtons(dialog);
    QCOMPARE(accept->focusPolicy(), Qt::ClickFocus);
    QCOMPARE(reject->focusPolicy(), Qt::ClickFocus);
}

void tst_ValueEditors::memoTakesNoBaseStyle()
{
    baseStyleSheet = "QLabel { color: #010203; }";
    const TextMemoDialog memo;
    const TextValDialog prompt;
    baseStyleSheet.clear();
    QVERIFY(!memo.styleSheet().contains("#010203"));
    QVERIFY(prompt.styleSheet().startsWith("QLabel { color: #010203; }\r\n"));
}

void tst_ValueEditors::memoGivesPlainText()
{
    TextMemoDialog dialog;
    const QString text = "<b>не разметка</b>\n\nтретья строка ";
    dialog.setText(text);
    QCOMPARE(dialog.text(), text);
    auto* document = named<QTextEdit>(&dialog, "textEdit")->document();
    QCOMPARE(document->parent(), &dialog);
}

void tst_ValueEditors::memoReadOnly()
{
    TextMemoDialog dialog;
    dialog.setText("как было");
    dialog.setReadOnly(true);
    dialog.show();
    auto* edit = named<QTextEdit>(&dialog, "textEdit");
    QTest::keyClicks(edit, "x");
    QCOMPARE(dialog.text(), QString("как было"));

    dialog.setReadOnly(false);
    QTest::keyClicks(edit, "x");
    QCOMPARE(dialog.text(), QString("xкак было"));
}

void tst_ValueEditors::textEditedAndAccepted()
{
    ZelvoraTextButton button;
    button.setProperty("text", "старый");
    QWidget window;
    ModalDriver driver;
    driver.expect<TextMemoDialog>([&](TextMemoDialog* dialog) {
        QCOMPARE(dialog->parentWidget(), &window);
        QCOMPARE(dialog->text(), QString("старый"));
        auto* edit = named<QTextEdit>(dialog, "textEdit");
        QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(edit, "one");
        QTest::keyClick(edit, Qt::Key_Return);
        QTest::keyClicks(edit, "two");
        clickButton(dialog, "buttonAccept");
    });
    runTextEditor(&button, &window);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(button.property("text").toString(), QString("one\ntwo"));
}

void tst_ValueEditors::textEditCancelled()
{
    ZelvoraTextButton button;
    button.setProperty("text", "старый");
    ModalDriver driver;
    driver.expect<TextMemoDialog>([](TextMemoDialog* dialog) {
        QTest::keyClicks(named<QTextEdit>(dialog, "textEdit"), "surplus");
        clickButton(dialog, "buttonReject");
    });
    runTextEditor(&button, nullptr);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(button.property("text").toString(), QString("старый"));
}

void tst_ValueEditors::textViewKeepsTheText()
{
    ZelvoraTextButton button;
    button.setProperty("text", "строка\nстрока");
    ModalDriver driver;
    driver.expect<TextMemoDialog>([](TextMemoDialog* dialog) {
        QVERIFY(named<QTextEdit>(dialog, "textEdit")->isReadOnly());
        QTest::keyClicks(named<QTextEdit>(dialog, "textEdit"), "x");
        clickButton(dialog, "buttonAccept");
    });
    runTextEditor(&button, nullptr, true);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(button.property("text").toString(), QString("строка\nстрока"));
}

void tst_ValueEditors::promptLooks()
{
    const TextValDialog dialog;
    QCOMPARE(dialog.windowTitle(), QString("Dialog"));
    QCOMPARE(dialog.size(), QSize(401, 121));
    QCOMPARE(named<QDialogButtonBox>(&dialog, "buttonBox")->standardButtons(),
             QDialogButtonBox::StandardButtons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel));
    QCOMPARE(dialog.value(), QString());
}

void tst_ValueEditors::promptAccepted()
{
    TextValDialog dialog;
    dialog.show();
    QTest::keyClicks(named<QLineEdit>(&dialog, "valueEdit"), "name");
    QCOMPARE(dialog.value(), QString());
    QTest::keyClick(named<QLineEdit>(&dialog, "valueEdit"), Qt::Key_Return);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.value(), QString("name"));
}

void tst_ValueEditors::promptAcceptsEmptyText()
{
    TextValDialog dialog;
    dialog.show();
    QTest::mouseClick(named<QDialogButtonBox>(&dialog, "buttonBox")->button(QDialogButtonBox::Ok),
                      Qt::LeftButton);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.value(), QString());
}

void tst_ValueEditors::promptRejected()
{
    TextValDialog dialog;
    dialog.show();
    QTest::keyClicks(named<QLineEdit>(&dialog, "valueEdit"), "name");
    QTest::mouseClick(
        named<QDialogButtonBox>(&dialog, "buttonBox")->button(QDialogButtonBox::Cancel),
        Qt::LeftButton);
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(dialog.value(), QString());
}

QTEST_MAIN(tst_ValueEditors)
#include "tst_ValueEditors.moc"
